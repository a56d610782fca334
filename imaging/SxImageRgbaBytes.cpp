#include "imaging/SxImageRgbaBytes.h"
#include "imaging/ImageScaling.h"
#include "imaging/SxImageAlphaByte.h"

#include <algorithm>
#include <cstring>
#include <memory>

SxImageRgbaBytes::SxImageRgbaBytes(int w, int h)
    : width(std::max(0, w)), height(std::max(0, h))
{
    pixels = new uint8_t[std::max<size_t>(byteCount(), 1)]();
}

SxImageRgbaBytes::SxImageRgbaBytes(const SxImageRgbaBytes& other)
    : SxSmartPtr(other), width(other.width), height(other.height), name(other.name)
{
    pixels = new uint8_t[std::max<size_t>(byteCount(), 1)];
    std::memcpy(pixels, other.pixels, byteCount());
}

SxImageRgbaBytes::~SxImageRgbaBytes()
{
    delete[] pixels;
}

SxImageRgbaBytes* SxImageRgbaBytes::clone() const
{
    return new SxImageRgbaBytes(*this);
}

void SxImageRgbaBytes::clear()
{
    std::memset(pixels, 0, byteCount());
}

void SxImageRgbaBytes::copyFrom(const SxImageRgbaBytes& other)
{
    if (other.width == width && other.height == height && &other != this)
        std::memcpy(pixels, other.pixels, byteCount());
}

void SxImageRgbaBytes::copyRect(const SxImageRgbaBytes& source, juce::Rectangle<int> sourceRect, juce::Rectangle<int> destRect)
{
    // Work in destination coordinates: the offset maps a destination pixel to its source pixel.
    const int dx = sourceRect.getX() - destRect.getX();
    const int dy = sourceRect.getY() - destRect.getY();
    const auto region = destRect.withSize(std::min(sourceRect.getWidth(), destRect.getWidth()),
                                          std::min(sourceRect.getHeight(), destRect.getHeight()))
                            .getIntersection(bounds())
                            .getIntersection(source.bounds().translated(-dx, -dy));
    if (region.isEmpty())
        return;

    const size_t rowLength = (size_t) region.getWidth() * 4;
    for (int y = region.getY(); y < region.getBottom(); ++y)
        std::memmove(pixelAt(region.getX(), y), source.pixelAt(region.getX() + dx, y + dy), rowLength);
}

void SxImageRgbaBytes::copyOutRect(const SxImageRgbaBytes& source, juce::Rectangle<int> destRect, juce::Rectangle<int> sourceRect)
{
    copyRect(source, sourceRect, destRect);
}

void SxImageRgbaBytes::resize(int newWidth, int newHeight, int quality)
{
    if (quality == 4)
        quality = width > newWidth ? 3 : 1;

    auto scaled = std::make_unique<SxImageRgbaBytes>(newWidth, newHeight);
    if (quality != 50)
        scaled->scaleInto(*this, scaled->bounds(), bounds(), quality);

    delete[] pixels;
    pixels = std::exchange(scaled->pixels, nullptr);
    width = scaled->width;
    height = scaled->height;
}

void SxImageRgbaBytes::scaleInto(const SxImageRgbaBytes& source, juce::Rectangle<int> destRect, juce::Rectangle<int> sourceRect, int quality)
{
    if (destRect.getWidth() == sourceRect.getWidth() && destRect.getHeight() == sourceRect.getHeight())
    {
        copyRect(source, sourceRect, destRect);
        return;
    }

    sourceRect = sourceRect.getIntersection(source.bounds());
    if (sourceRect.isEmpty() || destRect.isEmpty() || destRect.getIntersection(bounds()).isEmpty())
        return;

    const ImageScaling::ConstPlane in { source.pixelAt(sourceRect.getX(), sourceRect.getY()), sourceRect.getWidth(),
                                        sourceRect.getHeight(), source.rowBytes(), 4 };

    // A destination that lies wholly inside this image is written in place; otherwise the scaled
    // rectangle is made aside and only its visible part is copied in.
    std::unique_ptr<SxImageRgbaBytes> aside;
    ImageScaling::Plane out;
    if (bounds().contains(destRect))
        out = { pixelAt(destRect.getX(), destRect.getY()), destRect.getWidth(), destRect.getHeight(), rowBytes(), 4 };
    else
    {
        aside = std::make_unique<SxImageRgbaBytes>(destRect.getWidth(), destRect.getHeight());
        out = { aside->pixels, aside->width, aside->height, aside->rowBytes(), 4 };
    }

    switch (quality)
    {
        case 0: ImageScaling::nearest(in, out); break;
        case 3: ImageScaling::areaAverage(in, out); break;
        default: ImageScaling::bilinear(in, out); break;
    }

    if (aside != nullptr)
        copyRect(*aside, aside->bounds(), destRect);
}

void SxImageRgbaBytes::compositeOver(const SxImageRgbaBytes& source, juce::Rectangle<int> rect)
{
    rect = rect.getIntersection(bounds()).getIntersection(source.bounds());
    for (int y = rect.getY(); y < rect.getBottom(); ++y)
    {
        const uint8_t* s = source.pixelAt(rect.getX(), y);
        uint8_t* d = pixelAt(rect.getX(), y);
        for (int x = 0; x < rect.getWidth(); ++x, s += 4, d += 4)
        {
            const uint32_t sA = s[0];
            if (sA == 0)
                continue;
            if (sA == 255)
            {
                std::memcpy(d, s, 4);
                continue;
            }
            // (255 - sA) * dA / 255, rounded, without a division.
            const uint32_t t = (255 - sA) * d[0] + 128;
            const uint32_t a2 = (t + (t >> 8)) >> 8;
            const uint32_t outA = a2 + sA;
            for (int c = 1; c < 4; ++c)
                d[c] = (uint8_t) ((double) (s[c] * sA + d[c] * a2) / (double) outA);
            d[0] = (uint8_t) outA;
        }
    }
}

void SxImageRgbaBytes::compositeWithMask(const SxImageRgbaBytes& source, const SxImageAlphaByte& mask, juce::Rectangle<int> rect)
{
    if (rect.isEmpty())
        rect = bounds();
    rect = rect.getIntersection(bounds()).getIntersection(source.bounds()).getIntersection({ 0, 0, mask.width, mask.height });
    for (int y = rect.getY(); y < rect.getBottom(); ++y)
    {
        const uint8_t* s = source.pixelAt(rect.getX(), y);
        const uint8_t* m = mask.pixelAt(rect.getX(), y);
        uint8_t* d = pixelAt(rect.getX(), y);
        for (int x = 0; x < rect.getWidth(); ++x, s += 4, d += 4, ++m)
        {
            const int u = (*m * s[0]) / 255; // the source's coverage through the mask
            if (u == 0)
                continue;
            const double a = (double) ((255 - d[0]) * u) / 255.0 + d[0];
            const double rest = a - u;
            for (int c = 1; c < 4; ++c)
                d[c] = (uint8_t) ((s[c] * u + d[c] * rest) / a + 0.5);
            d[0] = (uint8_t) a;
        }
    }
}
