#pragma once
// The head of a chain: uploads CPU pixels (alpha, red, green, blue bytes, unchanged) into a
// texture and tells its targets a frame is ready.

#include "gpu/GPUImageOutput.h"

#include <cstdint>

class GPUImageRawDataInput : public GPUImageOutput
{
public:
    void uploadBytes(const uint8_t* pixels, GPUImageSize size);
    void processData();

    GPUImageSize uploadedImageSize;
};
