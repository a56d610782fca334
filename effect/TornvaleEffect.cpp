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
    static_cast<EffectParameters&>(*this) = EffectParameters();
}

void TornvaleEffect::randomize()
{
    randomize(juce::Random::getSystemRandom());
}

void TornvaleEffect::randomize(juce::Random& random)
{
    randomizeValues(random);
    setNeedsRender(true);
    updateControls();
}

float TornvaleEffect::strokeAngle(int pass)
{
    return ((float) pass / 12.0f + 0.041666668f) * 3.1415927f - 1.5707964f;
}

TornvaleEffect::ChainSettings TornvaleEffect::chainSettings(const EffectParameters& p, float s)
{
    ChainSettings c {};
    c.tensorBlur = p.smoothing * 30.0f;
    c.preSharpenRadius = s * (p.preSharpenSize == 0 ? 7.0f : p.preSharpenSize == 1 ? 15.0f : 45.0f);
    // Detail sharpens lightness; Colorize sharpens the two colour axes.
    c.preSharpenLightness = (p.preSharpen * 0.9f + 0.1f) * 3.0f;
    c.preSharpenColour = p.colorizeEdges * 5.0f;
    // The smear's length is counted in direction-field steps, which the flow walk scales itself.
    c.smoothLength = (p.smoothing * 0.9f + 0.1f) * 10.0f;
    c.blurLength = (p.strokeLength * 0.95f + 0.05f) * 25.0f * s;
    c.sharpenRadius = s * 1.5f;
    c.sharpenAmount = (p.strokeLength * 0.7f + 0.3f) * (p.sharpen * 0.8f + 0.2f) * (1.0f - p.preSharpen * 0.6f) * 6.0f;
    c.lightRadius = s * 7.5f;
    c.lightAmount = (p.brightenLight * 0.75f + 0.0f) * 2.0f;
    c.finishSaturation = p.saturation * 1.8f + 0.2f + 1.0f;
    c.finishUnsharpRadius = s * 1.5f;
    return c;
}

//==============================================================================
void TornvaleEffect::saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const
{
    Layer::saveToDictionary(set, options);
    saveTo(set);
}

void TornvaleEffect::restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions& options)
{
    Layer::restoreFromDictionary(set, options);
    readFrom(set);
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

void TornvaleEffect::setOwnMask(SxImageAlphaByte* mask)
{
    ownMask = SxRef<SxImageAlphaByte>::share(mask);
}

//==============================================================================
void TornvaleEffect::renderLayer(LayerRenderParameters& parameters)
{
    if (parameters.image == nullptr || parameters.image->width <= 0 || parameters.image->height <= 0)
        return;

    std::lock_guard<std::mutex> renderSection(effectRenderLock());
    const SxImageRgbaBytes& input = *parameters.image;
    const float s = parameters.scale;
    // One copy for the whole render: the panel writes the fields on the message thread.
    const EffectParameters settings = currentParameters();
    const ChainSettings chain = chainSettings(settings, s);

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
    EffectOperations::computeTensorField(*tensors, 1.0f, chain.tensorBlur, parameters.fullSizeTensors);

    SxImageRgbaBytes& image = *outputImage;
    image.copyFrom(input);

    EffectOperations::applyLabSharpen(image, chain.preSharpenRadius, chain.preSharpenLightness, chain.preSharpenColour,
                                      chain.preSharpenColour);

    // Dark style: the maximum below becomes a minimum of the photo, so the strokes turn black.
    if (settings.strokeStyle == 1)
        invertColours(image);

    // The twelve copies, merged by their maximum: drawn as one stack, so each tile is uploaded and
    // read back once and the copies never leave the GPU.
    std::vector<float> angles;
    for (int i = 1; i <= 12; ++i)
        angles.push_back(strokeAngle(i));
    // Then the dark style's inversion back, the colour step and the last sharpen, in the same
    // chain, so the merged copies are rounded to bytes once.
    EffectOperations::StrokeFinish finish;
    finish.invert = settings.strokeStyle == 1;
    finish.saturation = chain.finishSaturation;
    finish.contrast = settings.contrast;
    std::copy(std::begin(luminanceWeights), std::end(luminanceWeights), finish.luminanceWeights.begin());
    finish.unsharpRadius = chain.finishUnsharpRadius;
    finish.unsharpAmount = settings.postSharpen;
    EffectOperations::renderStrokeStack(*effectResult, image, *tensors, chain.smoothLength, chain.blurLength, angles,
                                        chain.sharpenRadius, chain.sharpenAmount, chain.lightRadius, chain.lightAmount, s, &finish);
    tensors.reset();

    if (originalImageHadAlpha)
        copyAlpha(*effectResult, input);

    if (!parameters.highQuality)
    {
        // Interactive: keep the finished art and the adjusted photo, so that a brush stroke only
        // recomposes its rectangle; getRenderedImage fills the layer's image.
        adjustedOriginal = new SxImageRgbaBytes(input);
        // No 1.2 base here: the photo under the mask stays closer to the original than the art.
        EffectOperations::applySaturateContrastGamma(*adjustedOriginal, settings.saturation + settings.saturation, settings.contrast, 0.0f,
                                                    luminanceWeights);
        image.clear();
    }
    else
    {
        image.copyFrom(*effectResult);
        effectResult->copyFrom(input);
        EffectOperations::applySaturateContrastGamma(*effectResult, settings.saturation + settings.saturation, settings.contrast, 0.0f,
                                                    luminanceWeights);
        if (const auto* mask = maskForRender())
            image.compositeWithMask(*effectResult, *mask);
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
        const auto* mask = maskForRender();
        if (mask != nullptr && adjustedOriginal != nullptr)
            outputImage->compositeWithMask(*adjustedOriginal, *mask, area);
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
