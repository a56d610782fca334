#pragma once
// The box of GPUImageBox4BlurFilter with 12 linear fetches per pass besides the centre.

#include "gpu/GPUImageBox4BlurFilter.h"

class GPUImageBox12BlurFilter : public GPUImageBox4BlurFilter
{
public:
    GPUImageBox12BlurFilter();
    int tapCount() const override { return 12; }
};
