#include "imaging/SxImageRgbaBytes.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

namespace
{
SxImageRgbaBytes flat(int w, int h, uint8_t a, uint8_t r, uint8_t g, uint8_t b)
{
    SxImageRgbaBytes image(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            uint8_t* p = image.pixelAt(x, y);
            p[0] = a; p[1] = r; p[2] = g; p[3] = b;
        }
    return image;
}
} // namespace

TEST(ImageScaling, FlatImagesStayFlatAtEveryQuality)
{
    for (int quality : { 0, 1, 3, 4 })
        for (auto size : { juce::Point<int>(13, 7), juce::Point<int>(301, 190) })
        {
            auto image = flat(97, 61, 17, 200, 3, 99);
            image.resize(size.x, size.y, quality);
            ASSERT_EQ(image.width, size.x);
            for (int y = 0; y < image.height; ++y)
                for (int x = 0; x < image.width; ++x)
                    ASSERT_EQ(std::vector<uint8_t>(image.pixelAt(x, y), image.pixelAt(x, y) + 4),
                              (std::vector<uint8_t> { 17, 200, 3, 99 })) << quality;
        }
}

TEST(ImageScaling, ReductionAveragesTheCoveredArea)
{
    // A 2 × 2 checker of 0 and 200 in every channel halves to its mean, 100, at quality 3 and 4.
    for (int quality : { 3, 4 })
    {
        SxImageRgbaBytes image(64, 32);
        for (int y = 0; y < 32; ++y)
            for (int x = 0; x < 64; ++x)
                std::memset(image.pixelAt(x, y), ((x + y) & 1) ? 200 : 0, 4);
        image.resize(32, 16, quality);
        for (size_t i = 0; i < image.byteCount(); ++i)
            ASSERT_EQ(image.pixels[i], 100) << quality;
    }
}

TEST(ImageScaling, NearestPicksSourcePixelsAndInterpolationStaysWithinNeighbours)
{
    SxImageRgbaBytes image(20, 10);
    TestImages::fillRandom(image);
    SxImageRgbaBytes original(image);

    SxImageRgbaBytes nearest(image);
    nearest.resize(10, 5, 0);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 10; ++x)
            ASSERT_EQ(0, std::memcmp(nearest.pixelAt(x, y), original.pixelAt(2 * x, 2 * y), 4));

    // Enlarging by interpolation never leaves the range of the 2 × 2 source neighbourhood.
    image.resize(57, 31, 1);
    for (int y = 0; y < 31; ++y)
        for (int x = 0; x < 57; ++x)
        {
            const double sx = std::clamp((x + 0.5) * 20 / 57 - 0.5, 0.0, 19.0);
            const double sy = std::clamp((y + 0.5) * 10 / 31 - 0.5, 0.0, 9.0);
            const int x0 = (int) sx, y0 = (int) sy, x1 = std::min(x0 + 1, 19), y1 = std::min(y0 + 1, 9);
            for (int c = 0; c < 4; ++c)
            {
                const int v[4] = { original.pixelAt(x0, y0)[c], original.pixelAt(x1, y0)[c], original.pixelAt(x0, y1)[c],
                                   original.pixelAt(x1, y1)[c] };
                const int lo = *std::min_element(v, v + 4), hi = *std::max_element(v, v + 4);
                ASSERT_GE(image.pixelAt(x, y)[c], lo);
                ASSERT_LE(image.pixelAt(x, y)[c], hi);
            }
        }
}

TEST(ImageScaling, ScaleIntoADestinationThatLeavesTheImageWritesOnlyTheVisiblePart)
{
    auto source = flat(10, 10, 255, 9, 8, 7);
    SxImageRgbaBytes dest(8, 8);
    dest.scaleInto(source, { 4, 4, 20, 20 }, source.bounds(), 1);
    EXPECT_EQ(dest.pixelAt(3, 3)[0], 0);
    EXPECT_EQ(dest.pixelAt(4, 4)[1], 9);
    EXPECT_EQ(dest.pixelAt(7, 7)[3], 7);
}
