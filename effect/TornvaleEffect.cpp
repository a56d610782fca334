#include "effect/TornvaleEffect.h"
#include "document/LayerManager.h"
#include "document/SxPropertySet.h"
#include "effect/ColourOperations.h"
#include "effect/TensorOperations.h"
#include "gpu/GPUImageOpenGLESContext.h"

#include <mutex>
#include <vector>

SxImageAlphaByte* TornvaleEffect::brushMask = nullptr;
SxImageAlphaByte* TornvaleEffect::paintedMask = nullptr;

namespace
{
// One GL context serves the whole program: effect renders take turns.
std::mutex& effectRenderLock()
{
    static std::mutex lock;
    return lock;
}

// Luminance weights in the stored channel order alpha, red, green, blue.
constexpr float luminanceWeights[4] = { 0.0f, 0.2125f, 0.7154f, 0.0721f };

void invertColours(SxImageRgbaBytes& image)
{
    uint8_t* p = image.pixels;
    for (size_t i = 0, n = image.byteCount(); i < n; i += 4)
    {
        p[i + 1] = (uint8_t) (255 - p[i + 1]);
        p[i + 2] = (uint8_t) (255 - p[i + 2]);
        p[i + 3] = (uint8_t) (255 - p[i + 3]);
    }
}

void copyAlpha(SxImageRgbaBytes& destination, const SxImageRgbaBytes& source)
{
    if (destination.width != source.width || destination.height != source.height)
        return;
    for (size_t i = 0, n = destination.byteCount(); i < n; i += 4)
        destination.pixels[i] = source.pixels[i];
}

// A random number in [0, 1) the way the sliders' ranges were tuned: the upper 32 bits of the
// generator's step as a fraction, kept below 1.
float nextUnit(juce::Random& random)
{
    return juce::jmin(0.9999999f, (float) (uint32_t) random.nextInt() * 2.3283064e-10f);
}
} // namespace

TornvaleEffect::TornvaleEffect()
{
    setDefaults();
    randomize();
}

TornvaleEffect::TornvaleEffect(DefaultsOnly)
{
    setDefaults();
}

TornvaleEffect::~TornvaleEffect()
{
    deleteCachedImages();
}

void TornvaleEffect::setDefaults()
{
    preSharpen = 0.25f;
    preSharpenSize = 0;
    colorizeEdges = 0.25f;
    strokeLength = 0.5f;
    sharpen = 0.25f;
    brightenLight = 0.125f;
    smoothing = 0.25f;
    postSharpen = 0.25f;
    saturation = 0.25f;
    contrast = 0.25f;
    strokeStyle = 0;
}

void TornvaleEffect::randomize()
{
    randomize(juce::Random::getSystemRandom());
}

void TornvaleEffect::randomize(juce::Random& random)
{
    // One draw per field, in field order, so that a given generator state gives one look.
    preSharpen = 0.1f + 0.25f * nextUnit(random);
    preSharpenSize = (int) (3.0f * nextUnit(random));
    colorizeEdges = 0.2f * nextUnit(random);
    strokeLength = 0.1f + 0.25f * nextUnit(random);
    sharpen = 0.1f + 0.35f * nextUnit(random);
    brightenLight = 0.1f + 0.45f * nextUnit(random);
    smoothing = 0.1f + 0.35f * nextUnit(random);
    postSharpen = 0.3f + 0.35f * nextUnit(random);
    saturation = 0.2f + 0.35f * nextUnit(random);
    contrast = 0.1f + 0.35f * nextUnit(random);
    setNeedsRender(true);
    updateControls();
}

float TornvaleEffect::strokeAngle(int pass)
{
    return ((float) pass / 12.0f + 0.041666668f) * 3.1415927f - 1.5707964f;
}

//==============================================================================
void TornvaleEffect::saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const
{
    Layer::saveToDictionary(set, options);
    set.setFloat("preSharpen", preSharpen);
    set.setInt("preSharpenSize", preSharpenSize);
    set.setFloat("colorizeEdges", colorizeEdges);
    set.setFloat("strokeLength", strokeLength);
    set.setFloat("sharpen", sharpen);
    set.setFloat("brightenLight", brightenLight);
    set.setFloat("smoothing", smoothing);
    set.setFloat("postSharpen", postSharpen);
    set.setFloat("saturation", saturation);
    set.setFloat("contrast", contrast);
    set.setInt("strokeStyle", strokeStyle);
}

void TornvaleEffect::restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions& options)
{
    Layer::restoreFromDictionary(set, options);
    // Missing keys keep the present value, so older files load; values are kept in range so a
    // damaged file cannot drive the chain outside what it was tuned for.
    auto unit = [&set](const char* key, float current) { return juce::jlimit(0.0f, 1.0f, set.getFloatValue(key, current)); };
    preSharpen = unit("preSharpen", preSharpen);
    preSharpenSize = juce::jlimit(0, 2, set.getIntValue("preSharpenSize", preSharpenSize));
    colorizeEdges = unit("colorizeEdges", colorizeEdges);
    strokeLength = unit("strokeLength", strokeLength);
    sharpen = unit("sharpen", sharpen);
    brightenLight = unit("brightenLight", brightenLight);
    smoothing = unit("smoothing", smoothing);
    postSharpen = unit("postSharpen", postSharpen);
    saturation = unit("saturation", saturation);
    contrast = unit("contrast", contrast);
    strokeStyle = juce::jlimit(0, 1, set.getIntValue("strokeStyle", strokeStyle));
    setNeedsRender(true);
    updateControls();
}

//==============================================================================
void TornvaleEffect::deleteCachedImages()
{
    if (effectResult != nullptr)
        effectResult->release();
    if (adjustedOriginal != nullptr)
        adjustedOriginal->release();
    effectResult = adjustedOriginal = nullptr;
}

void TornvaleEffect::clearCachedImages()
{
    Layer::clearCachedImages();
    deleteCachedImages();
}

void TornvaleEffect::resetImage(SxImageRgbaBytes* image)
{
    Layer::resetImage(image);
    deleteCachedImages();
    if (image != nullptr)
        createEffectMask(*image);
}

void TornvaleEffect::onImageSizeChanged(const LayerRect& region, SxImageRgbaBytes* image)
{
    Layer::onImageSizeChanged(region, image);
    if (image != nullptr)
        resizeEffectMask(*image);
}

void TornvaleEffect::resizeBrushMask(SxImageRgbaBytes* image)
{
    if (image != nullptr)
        resizeEffectMask(*image);
}

void TornvaleEffect::createEffectMask(const SxImageRgbaBytes& image)
{
    deleteBrushMask();
    brushMask = new SxImageAlphaByte(image.width, image.height);
}

void TornvaleEffect::resizeEffectMask(const SxImageRgbaBytes& image)
{
    if (brushMask == nullptr || (brushMask->width == image.width && brushMask->height == image.height))
        return;
    if (paintedMask != nullptr && paintedMask->width == image.width && paintedMask->height == image.height)
    {
        brushMask->assign(*paintedMask);
    }
    else
    {
        // Only an enlargement comes back: the full-size render is the one that asks for it.
        const bool enlarging = image.width > brushMask->width || image.height > brushMask->height;
        if (paintedMask != nullptr)
            paintedMask->release();
        paintedMask = enlarging ? brushMask->clone() : nullptr;
        brushMask->resample(image.width, image.height);
        return;
    }
    paintedMask->release();
    paintedMask = nullptr;
}

void TornvaleEffect::loadEffectMask(const SxImageAlphaByte& painted, const SxImageRgbaBytes& image)
{
    deleteBrushMask();
    brushMask = painted.clone();
    if (brushMask->width != image.width || brushMask->height != image.height)
        brushMask->resample(image.width, image.height);
}

void TornvaleEffect::deleteBrushMask()
{
    if (brushMask != nullptr)
        brushMask->release();
    if (paintedMask != nullptr)
        paintedMask->release();
    brushMask = paintedMask = nullptr;
}

//==============================================================================
void TornvaleEffect::renderLayer(LayerRenderParameters& parameters)
{
    if (parameters.image == nullptr || parameters.image->width <= 0 || parameters.image->height <= 0)
        return;

    std::lock_guard<std::mutex> renderSection(effectRenderLock());
    const SxImageRgbaBytes& input = *parameters.image;
    const float s = parameters.scale;

    Layer::renderLayer(parameters);
    allocateOutput(parameters);
    if (effectResult == nullptr || effectResult->width != input.width || effectResult->height != input.height)
    {
        if (effectResult != nullptr)
            effectResult->release();
        effectResult = new SxImageRgbaBytes(input.width, input.height);
    }
    if (adjustedOriginal != nullptr)
    {
        adjustedOriginal->release();
        adjustedOriginal = nullptr;
    }

    // The direction field: computed once, shared by the twelve passes.
    auto tensors = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(input));
    EffectOperations::computeTensorField(*tensors, 1.0f, smoothing * 30.0f, parameters.fullSizeTensors);

    SxImageRgbaBytes& image = *outputImage;
    image.copyFrom(input);

    // Detail sharpens lightness; Colorize sharpens the two colour axes.
    const float radius = s * (preSharpenSize == 0 ? 7.0f : preSharpenSize == 1 ? 15.0f : 45.0f);
    EffectOperations::applyLabSharpen(image, radius, (preSharpen * 0.9f + 0.1f) * 3.0f, colorizeEdges * 5.0f, colorizeEdges * 5.0f);

    // Dark style: the maximum below becomes a minimum of the photo, so the strokes turn black.
    if (strokeStyle == 1)
        invertColours(image);

    const float smoothLength = (smoothing * 0.9f + 0.1f) * 10.0f;
    const float blurLength = (strokeLength * 0.95f + 0.05f) * 25.0f * s;
    const float sharpenAmount = (strokeLength * 0.7f + 0.3f) * (sharpen * 0.8f + 0.2f) * (1.0f - preSharpen * 0.6f) * 6.0f;
    const float lightAmount = (brightenLight * 0.75f + 0.0f) * 2.0f;
    // The twelve copies, merged by their maximum: drawn as one stack, so each tile is uploaded and
    // read back once and the copies never leave the GPU.
    std::vector<float> angles;
    for (int i = 1; i <= 12; ++i)
        angles.push_back(strokeAngle(i));
    // Then the dark style's inversion back, the colour step and the last sharpen, in the same
    // chain, so the merged copies are rounded to bytes once.
    EffectOperations::StrokeFinish finish;
    finish.invert = strokeStyle == 1;
    finish.saturation = saturation * 1.8f + 0.2f + 1.0f;
    finish.contrast = contrast;
    std::copy(std::begin(luminanceWeights), std::end(luminanceWeights), finish.luminanceWeights.begin());
    finish.unsharpRadius = s * 1.5f;
    finish.unsharpAmount = postSharpen;
    EffectOperations::renderStrokeStack(*effectResult, image, *tensors, smoothLength, blurLength, angles, s * 1.5f,
                                        sharpenAmount, s * 7.5f, lightAmount, s, &finish);
    tensors.reset();

    if (originalImageHadAlpha)
        copyAlpha(*effectResult, input);

    if (!parameters.highQuality)
    {
        // Interactive: keep the finished art and the adjusted photo, so that a brush stroke only
        // recomposes its rectangle; getRenderedImage fills the layer's image.
        adjustedOriginal = new SxImageRgbaBytes(input);
        // No 1.2 base here: the photo under the mask stays closer to the original than the art.
        EffectOperations::applySaturateContrastGamma(*adjustedOriginal, saturation + saturation, contrast, 0.0f, luminanceWeights);
        image.clear();
    }
    else
    {
        image.copyFrom(*effectResult);
        effectResult->copyFrom(input);
        EffectOperations::applySaturateContrastGamma(*effectResult, saturation + saturation, contrast, 0.0f, luminanceWeights);
        if (brushMask != nullptr)
            image.compositeWithMask(*effectResult, *brushMask);
        effectResult->release();
        effectResult = nullptr;
    }

    // Hand the context back whatever nesting is left, so that another thread may take it.
    GPUImageOpenGLESContext::sharedImageProcessingContext().resetContext();
}

SxImageRgbaBytes* TornvaleEffect::getRenderedImage(LayerRenderParameters& parameters)
{
    if (parameters.image == nullptr)
        return outputImage;
    if (getNeedsRender() || outputImage == nullptr || outputImage->width != parameters.image->width
        || outputImage->height != parameters.image->height)
    {
        // Cleared before the work, so a change made while a render thread runs stays pending.
        needsRender = false;
        renderLayer(parameters);
    }

    if (!parameters.highQuality && outputImage != nullptr)
    {
        juce::Rectangle<int> area = outputImage->bounds();
        if (!parameters.dirtyRect.meansWholePicture())
            area = parameters.dirtyRect.pixelsIn(*outputImage);
        if (effectResult != nullptr)
            outputImage->copyRect(*effectResult, area, area);
        if (brushMask != nullptr && adjustedOriginal != nullptr)
            outputImage->compositeWithMask(*adjustedOriginal, *brushMask, area);
    }
    return outputImage;
}

void registerTornvaleEffect()
{
    static bool registered = false;
    if (!registered)
    {
        LayerManager::addEffectPrototype(new TornvaleEffect(TornvaleEffect::DefaultsOnly {}));
        registered = true;
    }
}
