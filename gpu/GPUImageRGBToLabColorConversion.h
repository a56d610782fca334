#pragma once
// RGB to CIE Lab (D65, sRGB primaries), stored in 8 bits: L in red (0..1 for L* 0..100), a and b in
// green and blue around 0.5; alpha unchanged. The inverse is GPUImageLabToRGBColorConversion.

#include "gpu/GPUImageColorConversion.h"

class GPUImageRGBToLabColorConversion : public GPUImageColorConversion
{
protected:
    juce::String fragmentBody() const override;
};
