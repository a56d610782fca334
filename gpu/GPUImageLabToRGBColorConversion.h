#pragma once
// Lab as written by GPUImageRGBToLabColorConversion back to RGB; alpha unchanged.

#include "gpu/GPUImageColorConversion.h"

class GPUImageLabToRGBColorConversion : public GPUImageColorConversion
{
protected:
    juce::String fragmentBody() const override;
};
