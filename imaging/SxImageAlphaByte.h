#pragma once
// One byte a pixel: the brush mask and other coverage maps.

#include "imaging/SxSmartPtr.h"

#include <juce_graphics/juce_graphics.h>

#include <cstddef>
#include <cstdint>

class SxBrush;
struct SxBrushPoint;

class SxImageAlphaByte : public SxSmartPtr
{
public:
    SxImageAlphaByte(int width, int height);
    SxImageAlphaByte(const SxImageAlphaByte& other);
    SxImageAlphaByte& operator=(const SxImageAlphaByte&) = delete;
    ~SxImageAlphaByte() override;

    virtual SxImageAlphaByte* clone() const;

    size_t byteCount() const { return (size_t) width * (size_t) height; }
    uint8_t* pixelAt(int x, int y) { return pixels + (size_t) y * (size_t) width + (size_t) x; }
    const uint8_t* pixelAt(int x, int y) const { return pixels + (size_t) y * (size_t) width + (size_t) x; }

    /** Takes over another mask's size and bytes, keeping this object. */
    void assign(const SxImageAlphaByte& other);

    void fill(uint8_t value);
    void clear() { fill(0); }
    void invert();

    /** Resamples to a new size in place (bilinear when enlarging, area average when reducing),
        keeping the object so that holders of the pointer see the new buffer. */
    void resample(int newWidth, int newHeight);

    // The two brush stamps (with the brush, in brush/SxBrushStamps.cpp). Both touch only the
    // dab's square clipped to the mask, and skip the dab's zero bytes.
    /** Takes coverage × strength × point.strength away from each byte, linearly, down to 0. */
    void paintOnDab(const SxBrushPoint& point, SxBrush& brush, float strength);
    /** Lays the dab over the mask like paint over paper: each byte approaches 255 without
        passing it, by an amount cut to whole bytes twice on the way. */
    void paintOffDab(const SxBrushPoint& point, std::uint8_t opacityByte, SxBrush& brush, float scale);

    uint8_t* pixels = nullptr;
    int32_t width = 0;
    int32_t height = 0;
};
