#include "imaging/SxImageRgbaFloat.h"
#include "imaging/SxImageRgbaBytes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

SxImageRgbaFloat::SxImageRgbaFloat(int w, int h)
    : width(std::max(0, w)), height(std::max(0, h))
{
    pixels = new float[std::max<size_t>(floatCount(), 1)]();
}

SxImageRgbaFloat::SxImageRgbaFloat(const SxImageRgbaFloat& other)
    : SxSmartPtr(other), width(other.width), height(other.height)
{
    pixels = new float[std::max<size_t>(floatCount(), 1)];
    std::memcpy(pixels, other.pixels, floatCount() * sizeof(float));
}

SxImageRgbaFloat::~SxImageRgbaFloat()
{
    delete[] pixels;
}

SxImageRgbaFloat* SxImageRgbaFloat::clone() const
{
    return new SxImageRgbaFloat(*this);
}

SxImageRgbaFloat* SxImageRgbaFloat::fromBytes(const SxImageRgbaBytes& source)
{
    auto* image = new SxImageRgbaFloat(source.width, source.height);
    for (size_t i = 0, n = image->floatCount(); i < n; ++i)
        image->pixels[i] = source.pixels[i] * (1.0f / 255.0f);
    return image;
}

SxImageRgbaBytes* SxImageRgbaFloat::toBytes() const
{
    auto* image = new SxImageRgbaBytes(width, height);
    for (size_t i = 0, n = floatCount(); i < n; ++i)
        image->pixels[i] = (uint8_t) std::lround(std::clamp(pixels[i], 0.0f, 1.0f) * 255.0f);
    return image;
}
