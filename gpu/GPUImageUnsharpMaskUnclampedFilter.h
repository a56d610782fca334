#pragma once
// Unsharp mask kept beyond 0..1. Sharpening is a convolution, so it commutes with the line blurs
// of the stroke copies: sharpened once before them, the twelve copies need no blur of their own,
// and the clamp that follows the line blur gives the same colours as a sharpen after it. The
// result, −amount .. 1 + amount, is stored in bytes with an ordered dither (the program says how),
// so that the line blurs read it on the same exact grid of weights as every byte texture.

#include "gpu/GPUImageUnsharpMaskFilter.h"

class GPUImageUnsharpMaskUnclampedFilter : public GPUImageUnsharpMaskFilter
{
public:
    /** As GPUImageUnsharpMaskFilter::init; amounts below 0 count as 0. */
    bool init(float radius, float intensity) override;
    juce::String mixerFragmentText() const override;

    /** How a picture sharpened by `amount` is stored: value = stored / scale + low. The result
        lies within −amount .. 1 + amount whatever the picture; readers decode with the same two. */
    struct Encoding
    {
        float low = 0.0f, scale = 1.0f;
    };
    static Encoding encodingFor(float amount);
    juce::String mixerProgramKey() const override { return "GPUImageUnsharpMaskUnclampedFilter.mix"; }
};
