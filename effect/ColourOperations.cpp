#include "effect/ColourOperations.h"
#include "gpu/FilterChain.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/GPUImageLightenMode.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/GPUImageSaturateContrastGamma.h"
#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageUnsharpMaskFilter.h"
#include "gpu/TiledRunner.h"

#include <algorithm>

namespace EffectOperations
{
namespace
{
bool isEmpty(const SxImageRgbaBytes& image)
{
    return image.width <= 0 || image.height <= 0;
}
} // namespace

void applyLabSharpen(SxImageRgbaBytes& image, float radius, float intensityL, float intensityA, float intensityB)
{
    if (isEmpty(image))
        return;
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;
    FilterChain chain;
    auto* toLab = chain.make<GPUImageRGBToLabColorConversion>();
    auto* sharpen = chain.make<GPUImageUnsharpMaskChannelFilter>();
    auto* toRgb = chain.make<GPUImageLabToRGBColorConversion>();
    if (!toLab->init() || !sharpen->init(radius, intensityL, intensityA, intensityB) || !toRgb->init())
        return;
    FilterChain::wire({ toLab, sharpen, toRgb });
    // The blur's two passes reach about half the radius each; where the taps of the box chosen
    // reach a pixel further, the padding follows them, so tiles join without seams.
    TiledRunner::run(image, *toLab, *toRgb, (float) std::max((int) radius, GPUImageGaussianBlur::reachFor(radius, 2)));
}

void lightenCombine(SxImageRgbaBytes& base, const SxImageRgbaBytes& overlay, float strength)
{
    if (isEmpty(base) || isEmpty(overlay))
        return;
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;
    // A per-pixel operation: no padding, and the overlay's tile is uploaded with each base tile.
    auto chain = std::make_shared<FilterChain>();
    TiledRunner::runWithSecondImage(base, overlay, 0.0f, [&chain, strength](const SxImageRgbaBytes& overlayTile, const TiledRunner::SecondTileMapping&) {
        // Overlays have the base's size, so the cut lies exactly under the tile.
        auto* lighten = chain->make<GPUImageLightenMode>();
        lighten->init();
        lighten->setStrength(strength);
        lighten->setSourceImage(&overlayTile);
        return TiledRunner::TileChain { lighten, lighten, [chain] { chain->release(); } };
    });
}

void applySaturateContrastGamma(SxImageRgbaBytes& image, float saturation, float contrast, float gamma, const float weights[4])
{
    if (isEmpty(image))
        return;
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;
    FilterChain chain;
    auto* filter = chain.make<GPUImageSaturateContrastGamma>();
    if (!filter->init())
        return;
    filter->setConversionWeights(weights);
    filter->setSaturate(saturation);
    filter->setContrast(contrast);
    filter->setGamma(gamma);
    TiledRunner::run(image, *filter, *filter, 0.0f);
}

void applyUnsharp(SxImageRgbaBytes& image, float radius, float intensity)
{
    if (isEmpty(image))
        return;
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;
    FilterChain chain;
    auto* sharpen = chain.make<GPUImageUnsharpMaskFilter>();
    if (!sharpen->init(radius, intensity))
        return;
    TiledRunner::run(image, *sharpen, *sharpen, std::max(2.0f * radius, (float) GPUImageGaussianBlur::reachFor(radius, 2)));
}
} // namespace EffectOperations
