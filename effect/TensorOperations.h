#pragma once
// The effect's direction-field operations: computing the field from a photo, and one stroke pass
// that smears a photo along it. Each wires a filter chain and runs it tile by tile, overwriting
// its image argument.

#include "imaging/SxImageRgbaBytes.h"

#include <array>
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
    as renderStrokePass per angle followed by lightenCombine of the copies, to the rounding of
    the steps in between (a level or so on average); but each tile is uploaded and read back once
    for all copies, the smear along the field and the sharpening are drawn once (sharpening
    commutes with the line blurs), the copies are merged on the GPU, the Lab conversions share
    draws, and a wide light blur is taken at a reduced size. With `finish`, the steps that follow
    the merge run in the same chain. */
struct StrokeFinish;
void renderStrokeStack(SxImageRgbaBytes& result, const SxImageRgbaBytes& source, const SxImageRgbaBytes& tensors,
                       float smoothLength, float blurLength, const std::vector<float>& angles, float sharpenRadius,
                       float sharpenAmount, float lightRadius, float lightAmount, float scale, const StrokeFinish* finish = nullptr);

/** What the effect does to the merged copies before they are done: the dark style's inversion
    back, a saturation / contrast / gamma step (GPUImageSaturateContrastGamma's amounts) and an
    unsharp mask (skipped at an amount of 0). Given to renderStrokeStack, these run in the stack's
    own tile chain after the last copy, which spares three uploads and read-backs of the whole
    picture; the result equals running them one by one afterwards (the inversion may round a tie
    the other way). */
struct StrokeFinish
{
    bool invert = false;
    float saturation = 1.0f, contrast = 0.0f, gamma = 0.0f;
    std::array<float, 4> luminanceWeights { 0.0f, 0.2125f, 0.7154f, 0.0721f };
    float unsharpRadius = 0.0f, unsharpAmount = 0.0f;
};
} // namespace EffectOperations
