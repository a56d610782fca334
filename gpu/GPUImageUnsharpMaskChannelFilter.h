#pragma once
// Unsharp mask with one intensity per colour channel. Run on Lab images (see
// GPUImageRGBToLabColorConversion), the three intensities act on lightness and the two colour axes.

#include "gpu/GPUImageFilterGroup.h"

class GPUImageGaussianBlur;
class GPUImageTwoInputFilter;

class GPUImageUnsharpMaskChannelFilter : public GPUImageFilterGroup
{
public:
    /** Builds the blur (radius as the argument of GPUImageGaussianBlur::init, two passes) and the
        mixing filter; the GL context must be current. Returns false when a program fails. */
    virtual bool init(float radius, float intensityRed, float intensityGreen, float intensityBlue);
    void setIntensities(float red, float green, float blue);

    GPUImageGaussianBlur* blurFilter = nullptr;
    GPUImageTwoInputFilter* unsharpFilter = nullptr;
    float blurRadius = 0.0f;
    float intensityRed = 0.0f, intensityGreen = 0.0f, intensityBlue = 0.0f;
};
