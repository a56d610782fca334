#pragma once
// The effect's colour and sharpening operations. Each wires a filter chain and runs it tile by
// tile, overwriting its image argument; the padding of each is as wide as its blur reaches.

#include "imaging/SxImageRgbaBytes.h"

namespace EffectOperations
{
/** Unsharp mask in Lab: intensityL sharpens lightness, intensityA and intensityB the two colour
    axes. radius is the blur's argument in pixels. */
void applyLabSharpen(SxImageRgbaBytes& image, float radius, float intensityL, float intensityA, float intensityB);

/** base = per-channel maximum of base and overlay × strength (see GPUImageLightenMode). The
    overlay is cut in step with base; it has base's size or the same aspect ratio. */
void lightenCombine(SxImageRgbaBytes& base, const SxImageRgbaBytes& overlay, float strength);

/** Saturation, contrast and gamma (neutral: 1, 0, 0). weights: the luminance weights in the
    stored channel order alpha, red, green, blue. */
void applySaturateContrastGamma(SxImageRgbaBytes& image, float saturation, float contrast, float gamma, const float weights[4]);

/** Plain unsharp mask on RGB; radius is the blur's argument in pixels. */
void applyUnsharp(SxImageRgbaBytes& image, float radius, float intensity);
} // namespace EffectOperations
