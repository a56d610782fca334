// The straight line blur of the strokes.

#include "gpu/FilterChain.h"
#include "gpu/GPUImageMotionBlur.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{
constexpr double pi = 3.14159265358979323846;

SxImageRgbaBytes blurred(const SxImageRgbaBytes& image, float length, float angle, int passes,
                         int twoLevelFromTaps = GPUImageMotionBlur::defaultTwoLevelFromTaps)
{
    SxImageRgbaBytes out(image);
    FilterChain chain;
    auto* blur = chain.make<GPUImageMotionBlur>();
    blur->useProgramCache = true;
    blur->compareProgramSource = true;
    blur->twoLevelFromTaps = twoLevelFromTaps;
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

TEST(MotionBlur, LongBoxesSplitIntoTwoLevelsThatVisitEveryTap)
{
    for (float length = 0.0f; length <= 240.0f; length += 0.37f)
    {
        const auto levels = GPUImageMotionBlur::levelsFor(length);
        const int needed = (int) std::ceil(std::max(0.5f * length, 1.0f));
        // Never sparser than a tap a pixel, and a split only ever adds a few taps.
        EXPECT_GE(levels.gaps, needed - 1) << length;
        if (!levels.isTwoLevel())
        {
            EXPECT_EQ(levels.firstTaps, levels.gaps + 1) << length;
            EXPECT_LT(levels.gaps + 1, GPUImageMotionBlur::defaultTwoLevelFromTaps + 1) << length;
            continue;
        }
        EXPECT_GE(levels.gaps + 1, GPUImageMotionBlur::defaultTwoLevelFromTaps) << length;
        EXPECT_EQ(levels.firstTaps * levels.secondTaps, levels.gaps + 1) << length;
        EXPECT_LE(levels.gaps + 1, needed + 1 + (needed + 1) / 8) << length;
        EXPECT_LE(levels.fetches(), (needed + 1) / 2 + 1) << length;
    }
    // The split can be turned off, and short boxes never split.
    EXPECT_FALSE(GPUImageMotionBlur::levelsFor(80.0f, 1000).isTwoLevel());
    EXPECT_TRUE(GPUImageMotionBlur::levelsFor(80.0f).isTwoLevel());
    EXPECT_FALSE(GPUImageMotionBlur::levelsFor(20.0f).isTwoLevel());
}

TEST(MotionBlur, TwoLevelLineMatchesTheOneLevelLine)
{
    ScopedGLContext scoped;
    const float length = 78.0f; // the strokes of a 6000-pixel picture
    ASSERT_TRUE(GPUImageMotionBlur::levelsFor(length).isTwoLevel());
    for (double degrees : { 7.5, 37.5, 90.0, 142.5 })
    {
        const auto angle = (float) (degrees * pi / 180.0);
        // A dot becomes the same line: as long, as thin, as bright in all.
        const auto split = blurred(dotImage(128), length, angle, 1);
        const auto whole = blurred(dotImage(128), length, angle, 1, 1000);
        const double c = std::cos(angle), s = std::sin(angle);
        double along = 0.0, across = 0.0, spread = 0.0, wholeSpread = 0.0;
        long total = 0, wholeTotal = 0;
        for (int y = 0; y < 128; ++y)
            for (int x = 0; x < 128; ++x)
            {
                const int value = split.pixelAt(x, y)[1], reference = whole.pixelAt(x, y)[1];
                const double dx = x - 64, dy = y - 64, a = dx * c + dy * s, b = -dx * s + dy * c;
                total += value;
                wholeTotal += reference;
                spread += value * b * b;
                wholeSpread += reference * b * b;
                if (value > 0)
                {
                    along = std::max(along, std::abs(a));
                    across = std::max(across, std::abs(b));
                }
            }
        // The tent of two boxes reaches the full length; bytes round the faint ends away.
        EXPECT_GE(along, length * 0.5 - 12.0) << degrees;
        EXPECT_LE(along, length * 0.5 + 2.0) << degrees;
        EXPECT_LE(across, 2.5) << degrees;
        EXPECT_NEAR((double) total, (double) wholeTotal, 0.25 * wholeTotal) << degrees;
        // Reading the first level between texels widens the line by a fraction of a pixel only.
        EXPECT_LT(std::sqrt(spread / std::max(1L, total)), std::sqrt(wholeSpread / std::max(1L, wholeTotal)) + 0.5) << degrees;
    }

    // On a photo the two differ by rounding and that softening only.
    auto photo = TestImages::photo("coffee.png");
    ASSERT_NE(photo.get(), nullptr);
    SxImageRgbaBytes picture(*photo);
    picture.resize(400, 300, 1);
    const auto split = blurred(picture, length, 0.65f, 1);
    const auto whole = blurred(picture, length, 0.65f, 1, 1000);
    double sum = 0.0;
    for (int i = 0; i < picture.width * picture.height; ++i)
        for (int ch = 1; ch < 4; ++ch)
            sum += std::abs(split.pixels[i * 4 + ch] - whole.pixels[i * 4 + ch]);
    // Measured: mean 0.24, largest 11, at edges along the line where a photo this small is sharp.
    EXPECT_LT(sum / (picture.width * picture.height * 3.0), 0.5);
    EXPECT_LE(TestImages::maxDifference(split, whole), 16);
}
