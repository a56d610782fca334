// The straight line blur of the strokes.

#include "gpu/FilterChain.h"
#include "gpu/GPUImageMotionBlur.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
constexpr double pi = 3.14159265358979323846;

SxImageRgbaBytes blurred(const SxImageRgbaBytes& image, float length, float angle, int passes)
{
    SxImageRgbaBytes out(image);
    FilterChain chain;
    auto* blur = chain.make<GPUImageMotionBlur>();
    blur->useProgramCache = true;
    blur->compareProgramSource = true;
    EXPECT_TRUE(blur->initFilter(length, 0));
    blur->setAngle(angle);
    blur->setPasses(passes);
    TiledRunner::run(out, *blur, *blur, 0);
    return out;
}

SxImageRgbaBytes dotImage(int size)
{
    SxImageRgbaBytes image(size, size);
    for (int i = 0; i < size * size; ++i)
    {
        image.pixels[i * 4] = 255;
        image.pixels[i * 4 + 1] = image.pixels[i * 4 + 2] = image.pixels[i * 4 + 3] = 0;
    }
    image.pixelAt(size / 2, size / 2)[1] = 255;
    return image;
}
} // namespace

TEST(MotionBlur, DotBecomesSymmetricLineOfTheLengthAndAngle)
{
    ScopedGLContext scoped;
    const float length = 20.0f;
    for (double degrees : { 0.0, 30.0, 45.0, 90.0, 125.0 })
    {
        const auto angle = (float) (degrees * pi / 180.0);
        const auto out = blurred(dotImage(64), length, angle, 1);
        const double c = std::cos(angle), s = std::sin(angle);

        double along = 0.0, across = 0.0;
        int asymmetry = 0;
        long total = 0;
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
            {
                const int value = out.pixelAt(x, y)[1];
                total += value;
                // The mirror of (x, y) through the dot at (32, 32); row and column 0 have none.
                if (x > 0 && y > 0)
                    asymmetry = std::max(asymmetry, std::abs(value - out.pixelAt(64 - x, 64 - y)[1]));
                if (value == 0)
                    continue;
                const double dx = x - 32, dy = y - 32;
                along = std::max(along, std::abs(dx * c + dy * s));
                across = std::max(across, std::abs(-dx * s + dy * c));
            }
        // Half the length on each side; a bilinear tap touches one more pixel at each end.
        EXPECT_GE(along, length / 2 - 1.5) << degrees;
        EXPECT_LE(along, length / 2 + 1.5) << degrees;
        EXPECT_LE(across, 1.5) << degrees;
        EXPECT_LE(asymmetry, 1) << degrees;
        // An average keeps the dot's light, up to the rounding of each byte.
        EXPECT_NEAR((double) total, 255.0, 40.0) << degrees;
        // The light is spread out, not kept on the dot.
        EXPECT_LT(out.pixelAt(32, 32)[1], 40) << degrees;
    }
}

TEST(MotionBlur, FlatStaysFlatAndPassesRepeatTheBlur)
{
    ScopedGLContext scoped;
    SxImageRgbaBytes flat(48, 40);
    for (int i = 0; i < 48 * 40; ++i)
    {
        flat.pixels[i * 4] = 255;
        flat.pixels[i * 4 + 1] = 180;
        flat.pixels[i * 4 + 2] = 60;
        flat.pixels[i * 4 + 3] = 7;
    }
    EXPECT_LE(TestImages::maxDifference(blurred(flat, 15.0f, 0.7f, 2), flat), 1);

    // Three passes spread the dot along a longer line than one.
    const auto once = blurred(dotImage(64), 10.0f, 0.0f, 1);
    const auto thrice = blurred(dotImage(64), 10.0f, 0.0f, 3);
    EXPECT_EQ(once.pixelAt(32 + 9, 32)[1], 0);
    EXPECT_GT(thrice.pixelAt(32 + 9, 32)[1], 0);

    // Zero length leaves the picture alone; only type 0 exists.
    SxImageRgbaBytes noise(32, 32);
    TestImages::fillRandom(noise);
    EXPECT_LE(TestImages::maxDifference(blurred(noise, 0.0f, 1.0f, 1), noise), 1);
    GPUImageMotionBlur other;
    EXPECT_FALSE(other.initFilter(10.0f, 1));
}
