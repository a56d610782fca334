#pragma once
// Last stage of the direction field: turns blurred structure tensors into the field vector (u, v)
// along the direction of least change, its length the strength of the structure.

#include "gpu/GPUImageTextureSamplingFilter.h"

class GPUImageGetTensorsAngle : public GPUImageTextureSamplingFilter
{
public:
    bool init();

    /** The field vector of one pixel of a direction field image, in texels per step. */
    static juce::Point<float> decode(const uint8_t* pixel)
    {
        return { ((float) pixel[0] / 255.0f - 0.5f) * 4.0f, ((float) pixel[1] / 255.0f - 0.5f) * 4.0f };
    }
};
