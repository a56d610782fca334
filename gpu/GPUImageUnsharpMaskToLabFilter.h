#pragma once
// Unsharp mask on RGB whose mixing draw also converts to Lab: the sharpen and the conversion that
// a stroke copy runs one after the other, in one draw.

#include "gpu/GPUImageUnsharpMaskFilter.h"

class GPUImageUnsharpMaskToLabFilter : public GPUImageUnsharpMaskFilter
{
public:
    juce::String mixerFragmentText() const override;
    juce::String mixerProgramKey() const override { return "GPUImageUnsharpMaskToLabFilter.mix"; }
};
