// The fused stages of the stroke stack: the Lab sharpen that converts back and keeps the running
// maximum, and the line blur of a picture sharpened before it, kept in an encoding beyond 0..1.
// Each must give what the separate filters give.

#include "GPUTestImages.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageLabSharpenLightenFilter.h"
#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/GPUImageMotionBlur.h"
#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageUnsharpMaskFilter.h"
#include "gpu/GPUImageMotionBlurToLab.h"
#include "gpu/GPUImageUnsharpMaskUnclampedFilter.h"

#include <cmath>

namespace
{
using namespace GPUTestImages;

SxImageRgbaBytes photo()
{
    return photoAt("coffee.png", 300, 200, 4);
}

// The separate filters: sharpen, to Lab, Lab sharpen, back to RGB.
SxImageRgbaBytes separately(const SxImageRgbaBytes& image, float radius, float amount, float lightRadius, float lightAmount)
{
    SxImageRgbaBytes out(image);
    FilterChain chain;
    auto* sharpen = chain.make<GPUImageUnsharpMaskFilter>();
    auto* toLab = chain.make<GPUImageRGBToLabColorConversion>();
    auto* light = chain.make<GPUImageUnsharpMaskChannelFilter>();
    auto* toRgb = chain.make<GPUImageLabToRGBColorConversion>();
    EXPECT_TRUE(sharpen->init(radius, amount) && toLab->init() && light->init(lightRadius, lightAmount, 0.0f, 0.0f) && toRgb->init());
    FilterChain::wire({ sharpen, toLab, light, toRgb });
    TiledRunner::run(out, *sharpen, *toRgb, 0.0f);
    return out;
}

SxImageRgbaBytes fused(const SxImageRgbaBytes& image, float radius, float amount, float lightRadius, float lightAmount)
{
    SxImageRgbaBytes out(image);
    FilterChain chain;
    auto* sharpen = chain.make<GPUImageUnsharpMaskFilter>();
    auto* toLab = chain.make<GPUImageRGBToLabColorConversion>();
    auto* light = chain.make<GPUImageLabSharpenLightenFilter>();
    EXPECT_TRUE(sharpen->init(radius, amount) && toLab->init() && light->init(lightRadius, lightAmount, 0.0f, 0.0f));
    FilterChain::wire({ sharpen, toLab, light });
    TiledRunner::run(out, *sharpen, *light, 0.0f);
    return out;
}

} // namespace

TEST(LabSharpenLighten, FusedStagesGiveWhatTheSeparateFiltersGive)
{
    ScopedGLContext scoped;
    const auto image = photo();
    // A light blur taken at full size, at half (a preview's and a larger one) and at a quarter,
    // with the strongest lighting the effect's slider gives.
    for (float lightRadius : { 9.0f, 11.0f, 22.0f, 44.0f })
    {
        const auto expected = separately(image, 2.2f, 1.33f, lightRadius, 1.5f);
        const auto got = fused(image, 2.2f, 1.33f, lightRadius, 1.5f);
        const auto d = sortedDifferences(expected, got);
        // The fused draws round where bytes were stored, but the GL's own rounding of a stored
        // byte may land on the other level, and a sharpen by 1.5 scales such a level up
        // (measured: 99th percentile 3 or 4, largest 6 at full size; shrunk, the small blur's
        // shape adds a few isolated levels: up to 13, and 17 at a preview's radius).
        const bool shrunk = GPUImageLabSharpenLightenFilter::reductionFor(lightRadius) > 1;
        EXPECT_LE(d[d.size() * 99 / 100], 4) << lightRadius;
        EXPECT_LE(d[d.size() * 999 / 1000], 6) << lightRadius;
        EXPECT_LE(d.back(), shrunk ? 20 : 8) << lightRadius;
        // And it is a sharpen: the picture changed.
        EXPECT_GT(TestImages::maxDifference(got, image), 20) << lightRadius;
    }
    EXPECT_EQ(GPUImageLabSharpenLightenFilter::reductionFor(9.0f), 1);
    EXPECT_EQ(GPUImageLabSharpenLightenFilter::reductionFor(11.0f), 2);
    EXPECT_EQ(GPUImageLabSharpenLightenFilter::reductionFor(22.0f), 2);
    EXPECT_EQ(GPUImageLabSharpenLightenFilter::reductionFor(44.0f), 4);
    // The blur at the small size spreads as far as the full-size one.
    for (float radius : { 11.0f, 22.0f, 44.0f, 90.0f })
    {
        const int k = GPUImageLabSharpenLightenFilter::reductionFor(radius);
        const double full = GPUImageGaussianBlur::varianceFor(radius, 2);
        const double shrunk = GPUImageGaussianBlur::varianceFor(GPUImageLabSharpenLightenFilter::reducedArgument(radius, k), 2) * k * k + k * k / 4.0;
        EXPECT_NEAR(shrunk, full, 0.01 * full) << radius;
    }
}

TEST(LabSharpenLighten, KeepsTheMaximumOfItsRunsUntilANewStack)
{
    ScopedGLContext scoped;
    const auto image = photo();
    // Two pictures, each brighter than the other in one channel.
    SxImageRgbaBytes redder(image), greener(image);
    for (int i = 0; i < image.width * image.height; ++i)
    {
        uint8_t* r = redder.pixels + i * 4;
        uint8_t* g = greener.pixels + i * 4;
        r[1] = (uint8_t) std::min(255, r[1] + 50);
        r[2] = (uint8_t) std::max(0, r[2] - 50);
        g[1] = (uint8_t) std::max(0, g[1] - 50);
        g[2] = (uint8_t) std::min(255, g[2] + 50);
    }

    // The same chain fed two pictures in turn, as a stack of copies is: the result is their
    // per-channel maximum, whichever comes first; startStack forgets the first.
    FilterChain chain;
    auto* toLab = chain.make<GPUImageRGBToLabColorConversion>();
    auto* light = chain.make<GPUImageLabSharpenLightenFilter>();
    ASSERT_TRUE(toLab->init() && light->init(4.0f, 0.0f, 0.0f, 0.0f));
    FilterChain::wire({ toLab, light });
    auto feed = [&](const SxImageRgbaBytes& picture) {
        SxImageRgbaBytes out(picture);
        TiledRunner::run(out, *toLab, *light, 0.0f);
        return out;
    };
    light->startStack();
    const auto alone = feed(redder);
    const auto both = feed(greener);
    light->startStack();
    const auto restarted = feed(greener);

    int wrong = 0;
    for (int i = 0; i < image.width * image.height; ++i)
        for (int c = 1; c < 4; ++c)
            wrong += std::abs(both.pixels[i * 4 + c] - std::max(alone.pixels[i * 4 + c], restarted.pixels[i * 4 + c])) > 0;
    EXPECT_EQ(wrong, 0);
    // The round trip through Lab keeps the picture (to the levels that L and a, b steps of a byte
    // are in dark colours), and the maximum differs from each of the two.
    EXPECT_LE(TestImages::maxDifference(alone, redder), 6);
    EXPECT_LE(TestImages::maxDifference(restarted, greener), 6);
    EXPECT_GT(TestImages::maxDifference(both, alone), 30);
    EXPECT_GT(TestImages::maxDifference(both, restarted), 30);
}

TEST(LabSharpenLighten, EncodedSharpenThroughALineBlurIsTheSharpenInLab)
{
    ScopedGLContext scoped;
    const auto image = photo();
    // A line of no length fetches the pixel itself, so sharpen -> encode -> line blur -> decode
    // -> Lab must be the plain sharpen converted to Lab, to the encoding's step; a line of some
    // length must be the line blur of that, as the two commute.
    for (float amount : { 0.0f, 1.33f, 6.0f })
        for (float length : { 0.0f, 12.0f })
        {
            SxImageRgbaBytes expected(image), got(image);
            {
                FilterChain chain;
                auto* line = chain.make<GPUImageMotionBlur>();
                auto* sharpen = chain.make<GPUImageUnsharpMaskFilter>();
                auto* toLab = chain.make<GPUImageRGBToLabColorConversion>();
                ASSERT_TRUE(line->initFilter(length, 0) && sharpen->init(2.2f, amount) && toLab->init());
                line->setAngle(0.6f);
                FilterChain::wire({ line, sharpen, toLab });
                TiledRunner::run(expected, *line, *toLab, 0.0f);
            }
            {
                FilterChain chain;
                auto* sharpen = chain.make<GPUImageUnsharpMaskUnclampedFilter>();
                auto* line = chain.make<GPUImageMotionBlurToLab>();
                ASSERT_TRUE(sharpen->init(2.2f, amount) && line->initFilter(length, 0));
                line->setEncodedRange(amount);
                line->setAngle(0.6f);
                FilterChain::wire({ sharpen, line });
                TiledRunner::run(got, *sharpen, *line, 0.0f);
            }
            // One step of the encoding is 1 + 2 amount levels, and the dither moves a byte by up
            // to half a step; the comparison is in stored Lab, where a level of a dark colour can
            // be several of L, and the separate filters round their own bytes before sharpening
            // scales them up (measured at amounts 0 / 1.33 / 6: 99th percentile 1 / 2 to 4 / 8 to
            // 11, largest 2 / 8 / 31, mean 0.05 to 0.2 / 0.6 to 0.8 / 2.1 to 2.4).
            const auto d = sortedDifferences(expected, got);
            const double step = 1.0 + 2.0 * amount;
            const double mean = meanDifference(expected, got);
            EXPECT_LE(d[d.size() * 99 / 100], 2.0 + step) << amount << " " << length;
            EXPECT_LE(d.back(), 4.0 + 2.5 * step) << amount << " " << length;
            EXPECT_LE(mean, 0.3 + 0.25 * step) << amount << " " << length;
            EXPECT_GT(TestImages::maxDifference(got, image), 20) << amount << " " << length;
        }
}
