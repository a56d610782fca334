#pragma once
// Four floats a pixel, in the same channel order as SxImageRgbaBytes, for work that needs
// more than 8 bits between steps.

#include "imaging/SxSmartPtr.h"

#include <cstddef>
#include <cstdint>

class SxImageRgbaBytes;

class SxImageRgbaFloat : public SxSmartPtr
{
public:
    SxImageRgbaFloat(int width, int height);
    SxImageRgbaFloat(const SxImageRgbaFloat& other);
    SxImageRgbaFloat& operator=(const SxImageRgbaFloat&) = delete;
    ~SxImageRgbaFloat() override;

    virtual SxImageRgbaFloat* clone() const;

    /** Bytes 0..255 become floats 0..1, channel for channel. */
    static SxImageRgbaFloat* fromBytes(const SxImageRgbaBytes& source);
    /** Floats are clamped to 0..1 and rounded to the nearest byte. */
    SxImageRgbaBytes* toBytes() const;

    size_t floatCount() const { return (size_t) width * (size_t) height * 4; }
    float* pixelAt(int x, int y) { return pixels + ((size_t) y * (size_t) width + (size_t) x) * 4; }

    float* pixels = nullptr;
    int32_t width = 0;
    int32_t height = 0;
};
