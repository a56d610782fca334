#pragma once
// Width and height of a texture or frame, as the filter chain passes them around.

struct GPUImageSize
{
    float width = 0.0f;
    float height = 0.0f;

    bool isEmpty() const { return width <= 0.0f || height <= 0.0f; }
    bool operator==(const GPUImageSize& o) const { return width == o.width && height == o.height; }
    bool operator!=(const GPUImageSize& o) const { return !(*this == o); }
};
