#pragma once
// Sharpening by unsharp mask: the input minus its Gaussian blur, scaled by the intensity, is added
// back to the input. The group's input reaches both the blur and the mixing filter; the frame is
// driven through the blur, so the mixing filter draws once, after the blur.

#include "gpu/GPUImageFilterGroup.h"

class GPUImageGaussianBlur;
class GPUImageTwoInputFilter;

class GPUImageUnsharpMaskFilter : public GPUImageFilterGroup
{
public:
    /** Builds the blur (radius as the argument of GPUImageGaussianBlur::init, two passes) and the
        mixing filter; the GL context must be current. Returns false when a program fails. */
    virtual bool init(float radius, float intensity);
    void setIntensity(float value);

    /** The mixing filter's program and its key in the program cache; a subclass that mixes into
        another form of output replaces both. */
    virtual juce::String mixerFragmentText() const;
    virtual juce::String mixerProgramKey() const { return "GPUImageUnsharpMaskFilter.mix"; }

    GPUImageGaussianBlur* blurFilter = nullptr;
    GPUImageTwoInputFilter* unsharpFilter = nullptr;
    float blurRadius = 0.0f;
    float intensity = 0.0f;
};
