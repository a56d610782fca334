#pragma once
// The effect's direction-field operations: computing the field from a photo, and one stroke pass
// that smears a photo along it. Each wires a filter chain and runs it tile by tile, overwriting
// its image argument.

#include "imaging/SxImageRgbaBytes.h"

#include <vector>

namespace EffectOperations
{
/** The size the field is computed at: the image fitted into 1000 × 1000 with its aspect ratio
    (enlarged when smaller, for the field's blur radii are tuned to that size). */
juce::Point<int> tensorFieldSize(int width, int height);

/** Replaces image by its direction field (GPUImageGetTensorsAngle's encoding). Unless
    keepFullSize, the field is computed at tensorFieldSize(). preBlurSigma > 0 blurs the photo
    first; tensorBlur widens the neighbourhood whose orientation each pixel takes. */
void computeTensorField(SxImageRgbaBytes& image, float preBlurSigma, float tensorBlur, bool keepFullSize);

/** One stroke copy: source smeared along the field `tensors` (any size with the source's aspect
    ratio), blurred along a line at `angle`, sharpened, and re-lit in Lab. Lengths are pixels of
    source; smoothLength is in field steps and is scaled by `scale` like the rest. The result is
    written into result, which must have source's size. */
void renderStrokePass(SxImageRgbaBytes& result, const SxImageRgbaBytes& source, const SxImageRgbaBytes& tensors,
                      float smoothLength, float blurLength, float angle, float sharpenRadius, float sharpenAmount,
                      float lightRadius, float lightAmount, float scale);

/** The stack of stroke copies: one copy for each of `angles` (with the other arguments of
    renderStrokePass), merged by the per-channel maximum, written into result. The same picture
    as renderStrokePass per angle followed by lightenCombine of the copies, to a level or two of
    rounding; but each tile is uploaded and read back once for all copies, the smear along the
    field is drawn once, the copies are merged on the GPU, the sharpen and the Lab conversions
    share draws, and a wide light blur is taken at a reduced size. */
void renderStrokeStack(SxImageRgbaBytes& result, const SxImageRgbaBytes& source, const SxImageRgbaBytes& tensors,
                       float smoothLength, float blurLength, const std::vector<float>& angles, float sharpenRadius,
                       float sharpenAmount, float lightRadius, float lightAmount, float scale);
} // namespace EffectOperations
