#include "imaging/SxImageAlphaByte.h"
#include "imaging/ImageScaling.h"

#include <algorithm>
#include <cstring>

SxImageAlphaByte::SxImageAlphaByte(int w, int h)
    : width(std::max(0, w)), height(std::max(0, h))
{
    pixels = new uint8_t[std::max<size_t>(byteCount(), 1)]();
}

SxImageAlphaByte::SxImageAlphaByte(const SxImageAlphaByte& other)
    : SxSmartPtr(other), width(other.width), height(other.height)
{
    pixels = new uint8_t[std::max<size_t>(byteCount(), 1)];
    std::memcpy(pixels, other.pixels, byteCount());
}

SxImageAlphaByte::~SxImageAlphaByte()
{
    delete[] pixels;
}

SxImageAlphaByte* SxImageAlphaByte::clone() const
{
    return new SxImageAlphaByte(*this);
}

void SxImageAlphaByte::assign(const SxImageAlphaByte& other)
{
    if (&other == this)
        return;
    if (other.byteCount() != byteCount())
    {
        delete[] pixels;
        pixels = new uint8_t[std::max<size_t>(other.byteCount(), 1)];
    }
    width = other.width;
    height = other.height;
    std::memcpy(pixels, other.pixels, byteCount());
}

void SxImageAlphaByte::fill(uint8_t value)
{
    std::memset(pixels, value, byteCount());
}

void SxImageAlphaByte::invert()
{
    for (size_t i = 0, n = byteCount(); i < n; ++i)
        pixels[i] = (uint8_t) (255 - pixels[i]);
}

void SxImageAlphaByte::resample(int newWidth, int newHeight)
{
    newWidth = std::max(0, newWidth);
    newHeight = std::max(0, newHeight);
    auto* scaled = new uint8_t[std::max<size_t>((size_t) newWidth * (size_t) newHeight, 1)]();
    ImageScaling::areaAverage({ pixels, width, height, (size_t) width, 1 }, { scaled, newWidth, newHeight, (size_t) newWidth, 1 });
    delete[] pixels;
    pixels = scaled;
    width = newWidth;
    height = newHeight;
}
