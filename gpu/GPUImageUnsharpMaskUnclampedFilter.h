#pragma once
// Unsharp mask into a half-float texture, kept beyond 0..1. Sharpening is a convolution, so it
// commutes with the line blurs of the stroke copies: sharpened once before them, the twelve copies
// need no blur of their own, and the clamp that follows the line blur gives the same colours as a
// sharpen after it.

#include "gpu/GPUImageUnsharpMaskFilter.h"

class GPUImageUnsharpMaskUnclampedFilter : public GPUImageUnsharpMaskFilter
{
public:
    /** As GPUImageUnsharpMaskFilter::init; the context must support half-float targets. */
    bool init(float radius, float intensity) override;
    juce::String mixerFragmentText() const override;
    juce::String mixerProgramKey() const override { return "GPUImageUnsharpMaskUnclampedFilter.mix"; }
};
