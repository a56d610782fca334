#pragma once
// The box of GPUImageBox4BlurFilter with 8 linear fetches per pass besides the centre.

#include "gpu/GPUImageBox4BlurFilter.h"

class GPUImageBox8BlurFilter : public GPUImageBox4BlurFilter
{
public:
    GPUImageBox8BlurFilter();
    int tapCount() const override { return 8; }
};
