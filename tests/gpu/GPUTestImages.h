#pragma once
// Pictures, measures and a one-filter runner that the filter and effect tests share, on top of the
// photos and comparisons of support/TestImages.h.

#include "gpu/FilterChain.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace GPUTestImages
{
/** A sample photo scaled to width × height (height 0 keeps its shape); the resize quality is
    part of what a test measured its tolerances on. */
inline SxImageRgbaBytes photoAt(const char* name, int width, int height, int quality)
{
    auto photo = TestImages::photo(name);
    if (photo == nullptr)
    {
        ADD_FAILURE() << name << " is missing from samples/";
        return SxImageRgbaBytes(1, 1);
    }
    SxImageRgbaBytes image(*photo);
    image.resize(width, height > 0 ? height : photo->height * width / photo->width, quality);
    return image;
}

/** One colour everywhere, bytes in memory order alpha, red, green, blue. */
inline SxImageRgbaBytes flat(int width, int height, uint8_t a, uint8_t r, uint8_t g, uint8_t b)
{
    SxImageRgbaBytes image(width, height);
    for (size_t i = 0; i < image.byteCount(); i += 4)
    {
        image.pixels[i] = a;
        image.pixels[i + 1] = r;
        image.pixels[i + 2] = g;
        image.pixels[i + 3] = b;
    }
    return image;
}

/** Opaque black with one full red pixel in the middle. */
inline SxImageRgbaBytes dot(int size)
{
    auto image = flat(size, size, 255, 0, 0, 0);
    image.pixelAt(size / 2, size / 2)[1] = 255;
    return image;
}

/** Sorted differences of the colour bytes: rounding shows as a few scattered levels, a fault as
    many pixels or large ones. */
inline std::vector<int> sortedDifferences(const SxImageRgbaBytes& a, const SxImageRgbaBytes& b)
{
    std::vector<int> d;
    for (int i = 0; i < a.width * a.height; ++i)
        for (int c = 1; c < 4; ++c)
            d.push_back(std::abs(a.pixels[i * 4 + c] - b.pixels[i * 4 + c]));
    std::sort(d.begin(), d.end());
    return d;
}

/** Mean difference of the colour bytes. */
inline double meanDifference(const SxImageRgbaBytes& a, const SxImageRgbaBytes& b)
{
    const auto d = sortedDifferences(a, b);
    return std::accumulate(d.begin(), d.end(), 0.0) / (double) d.size();
}

/** Makes one Filter, lets setup initialise it (it returns whether that worked) and runs the image
    through it in place, untiled unless a test lowers the tile limit. */
template <typename Filter, typename Setup>
void runFilter(SxImageRgbaBytes& image, Setup setup)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* filter = chain.make<Filter>();
    ASSERT_TRUE(setup(*filter));
    TiledRunner::run(image, *filter, *filter, 0.0f);
}
} // namespace GPUTestImages
