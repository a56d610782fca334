// The direction field filters (tensors, their blur, the angle) and the walk along the field.

#include "GPUTestImages.h"
#include "gpu/GPUImageAnisotropicSmooth.h"
#include "gpu/GPUImageBlurTensors.h"
#include "gpu/GPUImageGetTensors.h"
#include "gpu/GPUImageGetTensorsAngle.h"

#include <cmath>

namespace
{
using namespace GPUTestImages;
constexpr double pi = 3.14159265358979323846;

/** Grey sine stripes whose brightness changes along gradientAngle (so they run across it),
    period 8 pixels; only the pixels with x < stripedWidth are striped, the rest mid grey. */
void stripes(SxImageRgbaBytes& image, double gradientAngle, int stripedWidth)
{
    const double c = std::cos(gradientAngle), s = std::sin(gradientAngle);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
        {
            const double phase = 2.0 * pi * (x * c + y * s) / 8.0;
            const auto grey = (uint8_t) std::lround(x < stripedWidth ? 127.5 + 90.0 * std::sin(phase) : 128.0);
            auto* p = image.pixelAt(x, y);
            p[0] = 255;
            p[1] = p[2] = p[3] = grey;
        }
}

/** Runs tensors, blur and angle over image in place. */
void directionField(SxImageRgbaBytes& image, float spread, int passes)
{
    FilterChain chain;
    auto* tensors = chain.make<GPUImageGetTensors>();
    auto* blur = chain.make<GPUImageBlurTensors>();
    auto* angle = chain.make<GPUImageGetTensorsAngle>();
    ASSERT_TRUE(tensors->init() && blur->init() && angle->init());
    blur->setBlurSpread(spread);
    blur->setPasses(passes);
    FilterChain::wire({ tensors, blur, angle });
    TiledRunner::run(image, *tensors, *angle, 0);
}

bool allPixelsEqual(const SxImageRgbaBytes& image)
{
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if (std::memcmp(image.pixelAt(x, y), image.pixelAt(0, 0), 4) != 0)
                return false;
    return true;
}

// Difference between two undirected angles, in degrees, 0..90.
double orientationError(double a, double b)
{
    double d = std::fmod(std::abs(a - b), pi);
    return std::min(d, pi - d) * 180.0 / pi;
}
} // namespace

TEST(DirectionField, FlatImageStaysFlatThroughEveryStage)
{
    ScopedGLContext scoped;
    const auto flatImage = flat(96, 64, 255, 200, 90, 30);
    SxImageRgbaBytes tensors(flatImage);
    runFilter<GPUImageGetTensors>(tensors, [](auto& f) { return f.init(); });
    EXPECT_TRUE(allPixelsEqual(tensors));
    // No gradient: both squares zero, the signed product at its exact centre byte.
    EXPECT_EQ(tensors.pixelAt(10, 10)[0], 0);
    EXPECT_EQ(tensors.pixelAt(10, 10)[1], 0);
    EXPECT_EQ(tensors.pixelAt(10, 10)[2], 128);

    SxImageRgbaBytes blurred(tensors);
    runFilter<GPUImageBlurTensors>(blurred, [](auto& f) { return f.init() && (f.setBlurSpread(1.5f), f.setPasses(3), true); });
    EXPECT_EQ(TestImages::maxDifference(blurred, tensors), 0);

    SxImageRgbaBytes field(flatImage);
    directionField(field, 1.0f, 1);
    EXPECT_TRUE(allPixelsEqual(field));
    const auto uv = GPUImageGetTensorsAngle::decode(field.pixelAt(5, 5));
    // One byte step of the encoding is 4 / 255.
    EXPECT_LE(std::hypot(uv.x, uv.y), 4.0f / 255.0f);

    // The walk on a flat field takes one step: the picture comes back unchanged.
    SxImageRgbaBytes smoothed(flatImage);
    runFilter<GPUImageAnisotropicSmooth>(smoothed, [&](auto& f) { return f.init(&field, 10.0f, 1.0); });
    EXPECT_EQ(TestImages::maxDifference(smoothed, flatImage), 0);
}

TEST(DirectionField, RunsAlongStripesAndVanishesOnFlatAreas)
{
    ScopedGLContext scoped;
    for (double degrees : { 0.0, 20.0, 45.0, 70.0, 90.0, 135.0, 160.0 })
    {
        const double gradient = degrees * pi / 180.0;
        SxImageRgbaBytes field(128, 96);
        stripes(field, gradient, 64);
        directionField(field, 1.0f, 1);

        // Inside the striped half, away from the image border and the flat half.
        double worst = 0.0;
        float weakest = 10.0f;
        for (int y = 16; y < 80; y += 3)
            for (int x = 12; x < 48; x += 3)
            {
                const auto uv = GPUImageGetTensorsAngle::decode(field.pixelAt(x, y));
                worst = std::max(worst, orientationError(std::atan2(uv.y, uv.x), gradient + pi / 2.0));
                weakest = std::min(weakest, std::hypot(uv.x, uv.y));
            }
        EXPECT_LT(worst, 4.0) << "stripes across " << degrees << " degrees";
        EXPECT_GT(weakest, 0.5f) << degrees;

        // The flat half, beyond the reach of gradient and blur (about 5 pixels).
        float strongestFlat = 0.0f;
        for (int y = 0; y < 96; y += 2)
            for (int x = 72; x < 128; x += 2)
            {
                const auto uv = GPUImageGetTensorsAngle::decode(field.pixelAt(x, y));
                strongestFlat = std::max(strongestFlat, std::hypot(uv.x, uv.y));
            }
        EXPECT_LE(strongestFlat, 4.0f / 255.0f) << degrees;
    }
}

TEST(DirectionField, RepeatedTensorBlurReachesFurther)
{
    ScopedGLContext scoped;
    // One bright dot: its tensors cover the 3 × 3 around it before the blur.
    auto tensors = dot(64);
    runFilter<GPUImageGetTensors>(tensors, [](auto& f) { return f.init(); });

    auto reach = [&](int passes) {
        SxImageRgbaBytes blurred(tensors);
        runFilter<GPUImageBlurTensors>(blurred, [&](auto& f) { return f.init() && (f.setBlurSpread(1.0f), f.setPasses(passes), true); });
        int farthest = 0;
        for (int x = 32; x < 64; ++x)
            if (blurred.pixelAt(x, 32)[0] > 0) // Jxx
                farthest = x - 32;
        return farthest;
    };
    // Seven taps reach 3 pixels a pass: 1 + 3 once, 1 + 9 after three pairs (a little less where
    // the far taps' weights round away).
    const int once = reach(1), thrice = reach(3);
    EXPECT_EQ(once, 4);
    EXPECT_GE(thrice, 8);
    EXPECT_LE(thrice, 10);
}

TEST(AnisotropicSmooth, WalksAlongTheFieldAndOnlyAsFarAsTheLengthAllows)
{
    ScopedGLContext scoped;
    const double gradient = 30.0 * pi / 180.0;
    SxImageRgbaBytes striped(128, 96);
    stripes(striped, gradient, 128);
    SxImageRgbaBytes field(striped);
    directionField(field, 1.0f, 1);

    SxImageRgbaBytes noise(128, 96);
    TestImages::fillRandom(noise, 7);
    for (int i = 0; i < noise.width * noise.height; ++i)
        noise.pixels[i * 4] = 255;

    auto smoothed = [&](const SxImageRgbaBytes& picture, float length) {
        SxImageRgbaBytes out(picture);
        runFilter<GPUImageAnisotropicSmooth>(out, [&](auto& f) {
            f.useProgramCache = f.compareProgramSource = true;
            return f.init(&field, length, 1.0);
        });
        return out;
    };
    auto innerDifference = [](const SxImageRgbaBytes& a, const SxImageRgbaBytes& b) {
        int worst = 0;
        for (int y = 16; y < 80; ++y)
            for (int x = 16; x < 112; ++x)
                for (int c = 1; c < 4; ++c)
                    worst = std::max(worst, std::abs(a.pixelAt(x, y)[c] - b.pixelAt(x, y)[c]));
        return worst;
    };

    // A length under one is a walk of one step: nothing moves, however strong the field.
    EXPECT_EQ(TestImages::maxDifference(smoothed(noise, 0.4f), noise), 0);

    // Along the stripes the brightness does not change, so a long walk keeps them; the same walk
    // over noise averages eight different pixels.
    EXPECT_LE(innerDifference(smoothed(striped, 8.0f), striped), 12);
    const auto smoothNoise = smoothed(noise, 8.0f);
    EXPECT_GT(innerDifference(smoothNoise, noise), 60);
    // Alpha is written opaque.
    EXPECT_EQ(smoothNoise.pixelAt(3, 3)[0], 255);
}
