// The blur and sharpen filters: the box family (GPUImageBoxBlur and its fixed-size relatives), the
// Gaussian built from it, and the unsharp masks.

#include "gpu/FilterChain.h"
#include "gpu/GPUImageBox12BlurFilter.h"
#include "gpu/GPUImageBox4BlurFilter.h"
#include "gpu/GPUImageBox8BlurFilter.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/GPUImageFractionalBoxBlurFilter.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageUnsharpMaskFilter.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
using Maker = std::function<GPUImageOutput*(FilterChain&)>;

/** Builds a node with the maker and runs the image through it in place. */
void runNode(SxImageRgbaBytes& image, const Maker& make, float padding = 0.0f)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* node = make(chain);
    ASSERT_NE(node, nullptr);
    TiledRunner::run(image, *node, *node, padding);
}

Maker gaussian(float argument, int passes = 1, bool preserveAlpha = false)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* blur = chain.make<GPUImageGaussianBlur>();
        blur->preserveAlpha = preserveAlpha;
        return blur->init(argument, passes) ? blur : nullptr;
    };
}

Maker boxBlur(float radius, int passes = 1, bool preserveAlpha = false)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* blur = chain.make<GPUImageBoxBlur>(radius);
        blur->setPasses(passes);
        return blur->initFilter(preserveAlpha) ? blur : nullptr;
    };
}

template <typename Box>
Maker fixedBox(float spread, int passes, bool preserveAlpha = false)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* blur = chain.make<Box>();
        blur->setBlurSpread(spread);
        blur->setPasses(passes);
        return blur->initFilter(preserveAlpha) ? blur : nullptr;
    };
}

Maker fractional(float size, int passes = 1, bool preserveAlpha = false)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* blur = chain.make<GPUImageFractionalBoxBlurFilter>();
        blur->setBlurSize(size);
        blur->setPasses(passes);
        return blur->initFilter(preserveAlpha) ? blur : nullptr;
    };
}

Maker unsharp(float radius, float intensity)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* group = chain.make<GPUImageUnsharpMaskFilter>();
        return group->init(radius, intensity) ? group : nullptr;
    };
}

Maker unsharpChannels(float radius, float r, float g, float b)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* group = chain.make<GPUImageUnsharpMaskChannelFilter>();
        return group->init(radius, r, g, b) ? group : nullptr;
    };
}

SxImageRgbaBytes flatImage(int width, int height, uint8_t a, uint8_t r, uint8_t g, uint8_t b)
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

/** A photo scaled down to keep the tests quick. */
SxImageRgbaBytes smallPhoto(int width, int height)
{
    auto photo = TestImages::photo("chelsea.png");
    SxImageRgbaBytes image(*photo);
    image.resize(width, height, 1);
    return image;
}

/** Sum of absolute differences between horizontal neighbours in the red channel: local contrast. */
double horizontalDetail(const SxImageRgbaBytes& image)
{
    double sum = 0.0;
    for (int y = 0; y < image.height; ++y)
        for (int x = 1; x < image.width; ++x)
        {
            const size_t i = ((size_t) y * (size_t) image.width + (size_t) x) * 4 + 1;
            sum += std::abs((int) image.pixels[i] - (int) image.pixels[i - 4]);
        }
    return sum;
}

/** The horizontal spread (variance in pixels²) a blur adds to a wide vertical bar: blurring
    convolves, and convolution adds variances, so the bar's own variance is subtracted. */
double addedHorizontalVariance(const Maker& blur)
{
    constexpr int width = 240, height = 8, barLeft = 112, barWidth = 16;
    SxImageRgbaBytes image = flatImage(width, height, 255, 0, 0, 0);
    for (int y = 0; y < height; ++y)
        for (int x = barLeft; x < barLeft + barWidth; ++x)
            image.pixels[((size_t) y * width + (size_t) x) * 4 + 1] = 255;
    runNode(image, blur);

    const int y = height / 2;
    double mass = 0.0, first = 0.0, second = 0.0;
    for (int x = 0; x < width; ++x)
    {
        const double v = image.pixels[((size_t) y * width + (size_t) x) * 4 + 1];
        mass += v;
        first += v * x;
        second += v * x * x;
    }
    const double mean = first / mass;
    const double barVariance = (barWidth * barWidth - 1) / 12.0;
    return second / mass - mean * mean - barVariance;
}
} // namespace

TEST(BoxBlurFamily, FlatImagesStayFlatThroughEveryBlurAndSharpener)
{
    const std::vector<std::pair<const char*, Maker>> filters = {
        { "fractional", fractional(1.2f, 2) },
        { "fractional alpha", fractional(1.2f, 1, true) },
        { "box radius 5", boxBlur(5.0f, 2) },
        { "box radius 7.3 alpha", boxBlur(7.3f, 1, true) },
        { "box4 spread 2.5", fixedBox<GPUImageBox4BlurFilter>(2.5f, 3) },
        { "box8 spread 1.7", fixedBox<GPUImageBox8BlurFilter>(1.7f, 2) },
        { "box12 alpha", fixedBox<GPUImageBox12BlurFilter>(1.0f, 2, true) },
        { "gaussian 3", gaussian(3.0f, 2) },
        { "gaussian 60", gaussian(60.0f, 2) },
        { "gaussian 200", gaussian(200.0f, 1) },
        { "unsharp", unsharp(9.0f, 3.0f) },
        { "unsharp channels", unsharpChannels(9.0f, 3.0f, 1.0f, 0.5f) },
    };
    const auto flat = flatImage(90, 70, 200, 180, 91, 33);
    for (const auto& [label, make] : filters)
    {
        SxImageRgbaBytes image(flat);
        runNode(image, make);
        EXPECT_LE(TestImages::maxDifference(image, flat), 1) << label;
    }
}

TEST(BoxBlurFamily, GaussianChoiceFollowsTheRadiusTable)
{
    using C = GPUImageGaussianBlur::Choice;
    EXPECT_EQ(GPUImageGaussianBlur::choiceFor(3.0f), C::fractionalBox); // r = 1.5
    EXPECT_EQ(GPUImageGaussianBlur::choiceFor(3.1f), C::generatedBox);
    EXPECT_EQ(GPUImageGaussianBlur::choiceFor(24.0f), C::generatedBox); // r = 12
    EXPECT_EQ(GPUImageGaussianBlur::choiceFor(24.1f), C::twoBox8);
    EXPECT_EQ(GPUImageGaussianBlur::choiceFor(175.0f), C::twoBox8); // r = 87.5
    EXPECT_EQ(GPUImageGaussianBlur::choiceFor(175.2f), C::box8ThenBox12);

    // The members built match the choice, and the widest one repeats its passes to round the box.
    ScopedGLContext scoped;
    FilterChain chain;
    auto* wide = chain.make<GPUImageGaussianBlur>();
    ASSERT_TRUE(wide->init(175.2f, 2));
    ASSERT_EQ(wide->filters.size(), 2u);
    auto* first = dynamic_cast<GPUImageBox8BlurFilter*>(wide->filters[0]);
    auto* second = dynamic_cast<GPUImageBox12BlurFilter*>(wide->filters[1]);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->passes, 4);
    EXPECT_EQ(second->passes, 3);
    EXPECT_FLOAT_EQ(first->blurSpread, 87.6f / 10.0f * 0.7f);

    auto* last = chain.make<GPUImageGaussianBlur>();
    ASSERT_TRUE(last->init(175.0f, 2));
    ASSERT_EQ(last->filters.size(), 2u);
    EXPECT_NE(dynamic_cast<GPUImageBox8BlurFilter*>(last->filters[1]), nullptr);
    EXPECT_FLOAT_EQ(static_cast<GPUImageBox8BlurFilter*>(last->filters[0])->blurSpread, 8.75f);
}

TEST(BoxBlurFamily, GaussianWidthGrowsSmoothlyAcrossTheFirstTwoChoices)
{
    // Where the table switches filters the blur may not jump: the spread just below and just
    // above each of the first two edges agrees within a fifth.
    for (const auto& [below, above] : { std::pair { 3.0f, 3.1f }, std::pair { 24.0f, 24.1f } })
    {
        const double v1 = addedHorizontalVariance(gaussian(below));
        const double v2 = addedHorizontalVariance(gaussian(above));
        EXPECT_GT(v1, 0.5) << below;
        EXPECT_NEAR(v2 / v1, 1.0, 0.2) << below << " " << v1 << " " << v2;
    }
    // And it grows with the argument throughout.
    double previous = 0.0;
    for (float argument : { 2.0f, 3.0f, 6.0f, 12.0f, 24.0f, 60.0f, 120.0f })
    {
        const double v = addedHorizontalVariance(gaussian(argument));
        EXPECT_GT(v, previous) << argument;
        previous = v;
    }
}

TEST(BoxBlurFamily, BoxBlurRadiusIsCappedAtTwelve)
{
    EXPECT_EQ(GPUImageBoxBlur::fragmentText(20.0f, false), GPUImageBoxBlur::fragmentText(12.0f, false));
    EXPECT_EQ(GPUImageBoxBlur::fragmentText(20.0f, true), GPUImageBoxBlur::fragmentText(12.0f, true));
    EXPECT_EQ(GPUImageBoxBlur::fetchesPerPass(20.0f), 13);

    const auto photo = smallPhoto(120, 80);
    SxImageRgbaBytes twenty(photo), twelve(photo), eleven(photo);
    runNode(twenty, boxBlur(20.0f));
    runNode(twelve, boxBlur(12.0f));
    runNode(eleven, boxBlur(11.0f));
    EXPECT_EQ(TestImages::maxDifference(twenty, twelve), 0);
    EXPECT_GT(TestImages::maxDifference(eleven, twelve), 0);
}

TEST(BoxBlurFamily, BoxBlurOfAWholeFractionWeighsItsLastPairFully)
{
    // Radius 4: two full pairs; the text must not carry a fractional factor for the last pair,
    // and its normaliser is the plain count 0.5 + 2 × 2.
    const auto text = GPUImageBoxBlur::fragmentText(4.0f, false);
    EXPECT_FALSE(text.contains(")) * "));
    EXPECT_TRUE(text.contains("fragmentColor/4.5"));
    // Radius 3: the last pair covers half of its reach.
    EXPECT_TRUE(GPUImageBoxBlur::fragmentText(3.0f, false).contains(")) * 0.5"));
}

TEST(BoxBlurFamily, RepeatedPassesEqualRunningTheFilterAgain)
{
    const auto photo = smallPhoto(100, 70);
    SxImageRgbaBytes twice(photo), repeated(photo);
    runNode(twice, fixedBox<GPUImageBox4BlurFilter>(1.5f, 1));
    runNode(twice, fixedBox<GPUImageBox4BlurFilter>(1.5f, 1));
    runNode(repeated, fixedBox<GPUImageBox4BlurFilter>(1.5f, 2));
    EXPECT_LE(TestImages::maxDifference(twice, repeated), 1);
    EXPECT_GT(TestImages::maxDifference(photo, repeated), 10);
}

TEST(BoxBlurFamily, AlphaPreservingBlurKeepsAlphaAndIgnoresHiddenColour)
{
    // Left half opaque red; right half fully transparent, its hidden colour green.
    SxImageRgbaBytes image = flatImage(64, 16, 255, 255, 0, 0);
    for (int y = 0; y < image.height; ++y)
        for (int x = 32; x < image.width; ++x)
        {
            auto* p = image.pixels + ((size_t) y * image.width + (size_t) x) * 4;
            p[0] = 0, p[1] = 0, p[2] = 255, p[3] = 0;
        }
    for (const auto& make : { boxBlur(6.0f, 2, true), fractional(1.4f, 2, true), fixedBox<GPUImageBox8BlurFilter>(1.0f, 1, true) })
    {
        SxImageRgbaBytes blurred(image);
        runNode(blurred, make);
        for (int x = 0; x < 32; ++x)
        {
            const auto* p = blurred.pixels + ((size_t) 8 * image.width + (size_t) x) * 4;
            EXPECT_EQ(p[0], 255) << x;
            EXPECT_GE(p[1], 254) << x; // no green bled into the visible red
            EXPECT_LE(p[2], 1) << x;
        }
        for (int x = 32; x < image.width; ++x)
            EXPECT_EQ(blurred.pixels[((size_t) 8 * image.width + (size_t) x) * 4], 0) << x;
    }
}

TEST(UnsharpMask, ZeroIntensityReproducesTheInputAndMoreSharpens)
{
    const auto photo = smallPhoto(150, 100);
    SxImageRgbaBytes plain(photo), channels(photo);
    runNode(plain, unsharp(8.0f, 0.0f));
    runNode(channels, unsharpChannels(8.0f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(TestImages::maxDifference(plain, photo), 0);
    EXPECT_EQ(TestImages::maxDifference(channels, photo), 0);

    SxImageRgbaBytes sharper(photo);
    runNode(sharper, unsharp(8.0f, 1.5f));
    EXPECT_GT(horizontalDetail(sharper), horizontalDetail(photo) * 1.3);

    // Per channel: a red-only intensity leaves green and blue and alpha alone.
    SxImageRgbaBytes redOnly(photo);
    runNode(redOnly, unsharpChannels(8.0f, 2.0f, 0.0f, 0.0f));
    int otherChannels = 0, red = 0;
    for (size_t i = 0; i < photo.byteCount(); ++i)
    {
        const int d = std::abs((int) redOnly.pixels[i] - (int) photo.pixels[i]);
        (i % 4 == 1 ? red : otherChannels) = std::max(i % 4 == 1 ? red : otherChannels, d);
    }
    EXPECT_EQ(otherChannels, 0);
    EXPECT_GT(red, 10);
}
