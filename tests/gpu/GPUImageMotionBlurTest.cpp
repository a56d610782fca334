// The straight line blur of the strokes.

#include "GPUTestImages.h"
#include "gpu/GPUImageMotionBlur.h"

#include <algorithm>
#include <cmath>

namespace
{
using namespace GPUTestImages;
constexpr double pi = 3.14159265358979323846;

SxImageRgbaBytes blurred(const SxImageRgbaBytes& image, float length, float angle, int passes,
                         int twoLevelFromTaps = GPUImageMotionBlur::defaultTwoLevelFromTaps)
{
    SxImageRgbaBytes out(image);
    runFilter<GPUImageMotionBlur>(out, [&](GPUImageMotionBlur& blur) {
        blur.useProgramCache = blur.compareProgramSource = true;
        blur.twoLevelFromTaps = twoLevelFromTaps;
        const bool ok = blur.initFilter(length, 0);
        blur.setAngle(angle);
        blur.setPasses(passes);
        return ok;
    });
    return out;
}

struct LineShape
{
    double along = 0.0, across = 0.0; // the farthest lit pixel from the middle, along and across
    double spread = 0.0;              // the light's second moment across the line
    long total = 0;                   // all the light
};

// The shape of a dot in the middle of a square picture after a line blur at angle.
LineShape shapeOf(const SxImageRgbaBytes& image, float angle)
{
    const double c = std::cos(angle), s = std::sin(angle), middle = image.width / 2;
    LineShape shape;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
        {
            const int value = image.pixelAt(x, y)[1];
            const double dx = x - middle, dy = y - middle, a = dx * c + dy * s, b = -dx * s + dy * c;
            shape.total += value;
            shape.spread += value * b * b;
            if (value > 0)
                shape.along = std::max(shape.along, std::abs(a)), shape.across = std::max(shape.across, std::abs(b));
        }
    return shape;
}
} // namespace

TEST(MotionBlur, DotBecomesSymmetricLineOfTheLengthAndAngle)
{
    ScopedGLContext scoped;
    const float length = 20.0f;
    for (double degrees : { 0.0, 30.0, 45.0, 90.0, 125.0 })
    {
        const auto angle = (float) (degrees * pi / 180.0);
        const auto out = blurred(dot(64), length, angle, 1);
        const auto [along, across, spread, total] = shapeOf(out, angle);
        int asymmetry = 0;
        // The mirror of (x, y) through the dot at (32, 32); row and column 0 have none.
        for (int y = 1; y < 64; ++y)
            for (int x = 1; x < 64; ++x)
                asymmetry = std::max(asymmetry, std::abs(out.pixelAt(x, y)[1] - out.pixelAt(64 - x, 64 - y)[1]));
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
    const auto flatImage = flat(48, 40, 255, 180, 60, 7);
    EXPECT_LE(TestImages::maxDifference(blurred(flatImage, 15.0f, 0.7f, 2), flatImage), 1);

    // Three passes spread the dot along a longer line than one.
    const auto once = blurred(dot(64), 10.0f, 0.0f, 1);
    const auto thrice = blurred(dot(64), 10.0f, 0.0f, 3);
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
        const auto split = blurred(dot(128), length, angle, 1);
        const auto whole = blurred(dot(128), length, angle, 1, 1000);
        const auto [along, across, spread, total] = shapeOf(split, angle);
        const auto reference = shapeOf(whole, angle);
        // The tent of two boxes reaches the full length; bytes round the faint ends away.
        EXPECT_GE(along, length * 0.5 - 12.0) << degrees;
        EXPECT_LE(along, length * 0.5 + 2.0) << degrees;
        EXPECT_LE(across, 2.5) << degrees;
        EXPECT_NEAR((double) total, (double) reference.total, 0.25 * reference.total) << degrees;
        // Reading the first level between texels widens the line by a fraction of a pixel only.
        EXPECT_LT(std::sqrt(spread / std::max(1L, total)), std::sqrt(reference.spread / std::max(1L, reference.total)) + 0.5) << degrees;
    }

    // On a photo the two differ by rounding and that softening only.
    const auto picture = photoAt("coffee.png", 400, 300, 1);
    const auto split = blurred(picture, length, 0.65f, 1);
    const auto whole = blurred(picture, length, 0.65f, 1, 1000);
    // Measured: mean 0.24, largest 11, at edges along the line where a photo this small is sharp.
    EXPECT_LT(meanDifference(split, whole), 0.5);
    EXPECT_LE(TestImages::maxDifference(split, whole), 16);
}
