#pragma once
// First stage of the direction field: the structure tensor of each pixel from its colour gradient.

#include "gpu/GPUImageTextureSamplingFilter.h"

class GPUImageGetTensors : public GPUImageTextureSamplingFilter
{
public:
    /** Builds the program; set useProgramCache before. */
    bool init();
};
