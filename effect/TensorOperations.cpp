#include "effect/TensorOperations.h"
#include "gpu/FilterChain.h"
#include "gpu/GPUImageAnisotropicSmooth.h"
#include "gpu/GPUImageBlurTensors.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageGetTensors.h"
#include "gpu/GPUImageGetTensorsAngle.h"
#include "gpu/GPUImageLabSharpenLightenFilter.h"
#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/GPUImageMotionBlur.h"
#include "gpu/GPUImageMotionBlurToLab.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/GPUImageSaturateContrastGamma.h"
#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageUnsharpMaskFilter.h"
#include "gpu/GPUImageUnsharpMaskUnclampedFilter.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/TiledRunner.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

namespace EffectOperations
{
juce::Point<int> tensorFieldSize(int width, int height)
{
    // Fitted in integers against 999 and then one added, so the long side is always 1000.
    constexpr int fit = 999;
    if (width <= 0 || height <= 0)
        return { 0, 0 };
    if (width >= height)
        return { fit + 1, (int) ((int64_t) height * fit / width) + 1 };
    return { (int) ((int64_t) width * fit / height) + 1, fit + 1 };
}

void computeTensorField(SxImageRgbaBytes& image, float preBlurSigma, float tensorBlur, bool keepFullSize)
{
    if (image.width <= 0 || image.height <= 0)
        return;
    if (!keepFullSize)
    {
        const auto size = tensorFieldSize(image.width, image.height);
        if (size.x != image.width || size.y != image.height)
            image.resize(size.x, size.y, 1);
    }
    const float sizeFactor = (float) std::max(image.width, image.height) * 0.0009765625f;

    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;
    FilterChain chain;
    std::vector<GPUImageOutput*> sequence;

    if (preBlurSigma > 0.0f)
    {
        auto* blur = chain.make<GPUImageGaussianBlur>();
        if (!blur->init(preBlurSigma, 2))
            return;
        sequence.push_back(blur);
    }

    auto* tensors = chain.make<GPUImageGetTensors>();
    tensors->useProgramCache = true;
    auto* blurTensors = chain.make<GPUImageBlurTensors>();
    blurTensors->useProgramCache = true;
    auto* angle = chain.make<GPUImageGetTensorsAngle>();
    if (!tensors->init() || !blurTensors->init() || !angle->init())
        return;
    if (tensorBlur <= 12.0f)
    {
        blurTensors->setBlurSpread(tensorBlur * 0.125f);
        blurTensors->setPasses(1);
    }
    else
    {
        // Beyond twelve the taps would spread too far apart; repeats widen the blur instead.
        blurTensors->setBlurSpread(tensorBlur / 20.0f);
        blurTensors->setPasses((int) (tensorBlur / 10.0f + 1.0f));
    }
    sequence.push_back(tensors);
    sequence.push_back(blurTensors);
    sequence.push_back(angle);

    for (size_t i = 0; i + 1 < sequence.size(); ++i)
        sequence[i]->addTarget(dynamic_cast<GPUImageInput*>(sequence[i + 1]), 0);
    TiledRunner::run(image, *sequence.front(), *sequence.back(), (2.0f * tensorBlur + 5.0f) * sizeFactor);
}

namespace
{
/** Checks the sizes, starts the result as a copy of the source and gives the tile padding of
    one stroke copy; a negative padding means there is nothing to draw. */
float prepareStrokeResult(SxImageRgbaBytes& result, const SxImageRgbaBytes& source, const SxImageRgbaBytes& tensors,
                          float smoothLength, float blurLength, float sharpenRadius, float lightRadius, float scale)
{
    if (source.width <= 0 || source.height <= 0 || tensors.width <= 0 || result.width != source.width
        || result.height != source.height)
        return -1.0f;
    if (result.pixels != source.pixels)
        std::memcpy(result.pixels, source.pixels, source.byteCount());
    // A copy is a chain of several filters, which reaches further than its longest member; 2.1
    // covers the sum. Each copy starts from the source, so one copy's reach is the padding.
    return 2.1f * std::max({ blurLength, sharpenRadius, lightRadius, smoothLength * scale });
}

/** Turns a filter's drawing off or on, every member of a group included. */
void setRenderingPrevented(GPUImageOutput& node, bool prevented)
{
    if (auto* filter = dynamic_cast<GPUImageFilter*>(&node))
        filter->preventRendering = prevented;
    else if (auto* group = dynamic_cast<GPUImageFilterGroup*>(&node))
        for (auto* member : group->filters)
            setRenderingPrevented(*member, prevented);
}

/** A filter whose program text depends on its arguments: cached, and rebuilt when the text
    differs from the cached one. */
template <typename Filter>
Filter* makeCached(FilterChain& chain)
{
    auto* filter = chain.make<Filter>();
    filter->useProgramCache = true;
    filter->compareProgramSource = true;
    return filter;
}

/** The steps that follow the stack's maximum, in order; empty when a program fails. */
std::vector<GPUImageOutput*> makeFinish(FilterChain& chain, const StrokeFinish& finish)
{
    auto* colour = chain.make<GPUImageSaturateContrastGamma>();
    if (!colour->init())
        return {};
    colour->setConversionWeights(finish.luminanceWeights.data());
    colour->setSaturate(finish.saturation);
    colour->setContrast(finish.contrast);
    colour->setGamma(finish.gamma);
    if (finish.unsharpAmount == 0.0f)
        return { colour };
    auto* unsharp = chain.make<GPUImageUnsharpMaskFilter>();
    if (!unsharp->init(finish.unsharpRadius, finish.unsharpAmount))
        return {};
    FilterChain::wire({ colour, unsharp });
    return { colour, unsharp };
}
/** Runs a chain built anew for each tile (the field is cut for every tile) over result; `build`
    makes the nodes in the chain it is given and says where the tile enters and leaves. The chain
    lives until the tile is read back. */
void runStrokeChain(SxImageRgbaBytes& result, const SxImageRgbaBytes& tensors, float padding,
                    const std::function<void(FilterChain&, const SxImageRgbaBytes&, const TiledRunner::SecondTileMapping&,
                                             TiledRunner::TileChain&)>& build)
{
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;
    std::unique_ptr<FilterChain> chain;
    TiledRunner::runWithSecondImage(result, tensors, padding, [&](const SxImageRgbaBytes& tensorTile, const TiledRunner::SecondTileMapping& mapping) {
        chain = std::make_unique<FilterChain>();
        TiledRunner::TileChain built;
        built.finished = [&chain] { chain.reset(); };
        build(*chain, tensorTile, mapping, built);
        return built;
    });
}
} // namespace

void renderStrokePass(SxImageRgbaBytes& result, const SxImageRgbaBytes& source, const SxImageRgbaBytes& tensors,
                      float smoothLength, float blurLength, float angle, float sharpenRadius, float sharpenAmount,
                      float lightRadius, float lightAmount, float scale)
{
    const float padding = prepareStrokeResult(result, source, tensors, smoothLength, blurLength, sharpenRadius, lightRadius, scale);
    if (padding < 0.0f)
        return;

    runStrokeChain(result, tensors, padding, [&](FilterChain& chain, const SxImageRgbaBytes& tensorTile,
                                                 const TiledRunner::SecondTileMapping& mapping, TiledRunner::TileChain& built) {
        auto* smooth = makeCached<GPUImageAnisotropicSmooth>(chain);
        auto* lineBlur = makeCached<GPUImageMotionBlur>(chain);
        auto* sharpen = chain.make<GPUImageUnsharpMaskFilter>();
        sharpen->name = "unSharpMaskFilter1";
        auto* toLab = chain.make<GPUImageRGBToLabColorConversion>();
        toLab->useProgramCache = true;
        auto* light = chain.make<GPUImageUnsharpMaskChannelFilter>();
        light->name = "unSharpMaskFilter2";
        auto* toRgb = chain.make<GPUImageLabToRGBColorConversion>();
        toRgb->useProgramCache = true;

        if (!smooth->init(&tensorTile, smoothLength, scale) || !lineBlur->initFilter(blurLength, 0)
            || !sharpen->init(sharpenRadius, sharpenAmount) || !toLab->init()
            || !light->init(lightRadius, lightAmount, 0.0f, 0.0f) || !toRgb->init())
            return;
        smooth->setTensorMapping(mapping.tileOrigin, mapping.ratio, mapping.secondOrigin);
        lineBlur->setAngle(angle);
        lineBlur->setPasses(1);

        FilterChain::wire({ smooth, lineBlur, sharpen, toLab, light, toRgb });
        built.first = smooth;
        built.last = toRgb;
    });
}

void renderStrokeStack(SxImageRgbaBytes& result, const SxImageRgbaBytes& source, const SxImageRgbaBytes& tensors,
                       float smoothLength, float blurLength, const std::vector<float>& angles, float sharpenRadius,
                       float sharpenAmount, float lightRadius, float lightAmount, float scale, const StrokeFinish* finish)
{
    float padding = angles.empty() ? -1.0f
                                   : prepareStrokeResult(result, source, tensors, smoothLength, blurLength, sharpenRadius, lightRadius, scale);
    if (padding < 0.0f)
        return;
    if (finish != nullptr && finish->unsharpAmount != 0.0f)
        padding += std::max(2.0f * finish->unsharpRadius, (float) GPUImageGaussianBlur::reachFor(finish->unsharpRadius, 2));

    // Sharpening is linear, so it commutes with the line blur: the smeared picture is sharpened
    // once per tile (kept beyond 0..1 in an encoding) and each copy only blurs along its line,
    // clamps and converts to Lab in the line blur's last draw.
    runStrokeChain(result, tensors, padding, [&](FilterChain& chain, const SxImageRgbaBytes& tensorTile,
                                                 const TiledRunner::SecondTileMapping& mapping, TiledRunner::TileChain& built) {
        // Only the line blur's angle differs between the copies, so one chain draws them all.
        auto* smooth = makeCached<GPUImageAnisotropicSmooth>(chain);
        auto* sharpen = chain.make<GPUImageUnsharpMaskUnclampedFilter>();
        sharpen->name = "unSharpMaskFilter1";
        auto* lineBlur = makeCached<GPUImageMotionBlurToLab>(chain);
        auto* light = chain.make<GPUImageLabSharpenLightenFilter>();
        light->name = "unSharpMaskFilter2";

        if (!smooth->init(&tensorTile, smoothLength, scale) || !sharpen->init(sharpenRadius, sharpenAmount)
            || !lineBlur->initFilter(blurLength, 0) || !light->init(lightRadius, lightAmount, 0.0f, 0.0f))
            return;
        smooth->setTensorMapping(mapping.tileOrigin, mapping.ratio, mapping.secondOrigin);
        lineBlur->setEncodedRange(sharpenAmount);
        lineBlur->setPasses(1);

        FilterChain::wire({ smooth, sharpen, lineBlur, light });
        built.first = smooth;
        built.last = light;
        built.runs = (int) angles.size();
        // What does not depend on the angle is drawn once per tile.
        built.repeatFrom = sharpen->unsharpFilter;

        // The finishing steps follow the maximum and draw only after the last copy.
        std::vector<GPUImageOutput*> finishing;
        if (finish != nullptr)
        {
            finishing = makeFinish(chain, *finish);
            if (finishing.empty())
            {
                built.first = nullptr;
                return;
            }
            light->accumulator->setInvertedStack(finish->invert);
            FilterChain::wire({ light, finishing.front() });
            built.last = finishing.back();
        }

        built.beforeRun = [lineBlur, light, finishing, &angles](int run) {
            if (run == 0)
                light->startStack();
            lineBlur->setAngle(angles[(size_t) run]);
            for (auto* node : finishing)
                setRenderingPrevented(*node, run + 1 < (int) angles.size());
        };
    });
}
} // namespace EffectOperations
