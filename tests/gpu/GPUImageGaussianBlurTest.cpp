// The blur and sharpen filters: the box family (GPUImageBoxBlur and its fixed-size relatives), the
// Gaussian built from it, and the unsharp masks.

#include "GPUTestImages.h"
#include "gpu/GPUImageBox12BlurFilter.h"
#include "gpu/GPUImageBox4BlurFilter.h"
#include "gpu/GPUImageBox8BlurFilter.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/GPUImageFractionalBoxBlurFilter.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageUnsharpMaskFilter.h"

#include <functional>
#include <map>

namespace
{
using namespace GPUTestImages;
using Maker = std::function<GPUImageOutput*(FilterChain&)>;

/** Builds a node with the maker and runs the image through it in place. */
void runNode(SxImageRgbaBytes& image, const Maker& make)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* node = make(chain);
    ASSERT_NE(node, nullptr);
    TiledRunner::run(image, *node, *node, 0.0f);
}

/** A maker of one Filter (made with args), which setup initialises and reports on. */
template <typename Filter, typename Setup, typename... Args>
Maker maker(Setup setup, Args... args)
{
    return [=](FilterChain& chain) -> GPUImageOutput* {
        auto* filter = chain.make<Filter>(args...);
        return setup(*filter) ? filter : nullptr;
    };
}

Maker gaussian(float argument, int passes = 1, bool preserveAlpha = false)
{
    return maker<GPUImageGaussianBlur>([=](auto& f) { f.preserveAlpha = preserveAlpha; return f.init(argument, passes); });
}

Maker boxBlur(float radius, int passes = 1, bool preserveAlpha = false)
{
    return maker<GPUImageBoxBlur>([=](auto& f) { f.setPasses(passes); return f.initFilter(preserveAlpha); }, radius);
}

template <typename Box>
Maker fixedBox(float spread, int passes, bool preserveAlpha = false)
{
    return maker<Box>([=](auto& f) { f.setBlurSpread(spread), f.setPasses(passes); return f.initFilter(preserveAlpha); });
}

Maker fractional(float size, int passes = 1, bool preserveAlpha = false)
{
    return maker<GPUImageFractionalBoxBlurFilter>([=](auto& f) { f.setBlurSize(size), f.setPasses(passes); return f.initFilter(preserveAlpha); });
}

Maker unsharp(float radius, float intensity)
{
    return maker<GPUImageUnsharpMaskFilter>([=](auto& f) { return f.init(radius, intensity); });
}

Maker unsharpChannels(float radius, float r, float g, float b)
{
    return maker<GPUImageUnsharpMaskChannelFilter>([=](auto& f) { return f.init(radius, r, g, b); });
}

SxImageRgbaBytes smallPhoto(int width, int height)
{
    return photoAt("chelsea.png", width, height, 1);
}

/** Sum of absolute differences between horizontal neighbours in the red channel: local contrast. */
double horizontalDetail(const SxImageRgbaBytes& image)
{
    double sum = 0.0;
    for (int y = 0; y < image.height; ++y)
        for (int x = 1; x < image.width; ++x)
            sum += std::abs(image.pixelAt(x, y)[1] - image.pixelAt(x - 1, y)[1]);
    return sum;
}

/** The horizontal spread (variance in pixels²) a blur adds to a wide vertical bar: blurring
    convolves, and convolution adds variances, so the bar's own variance is subtracted. The picture
    is wide enough for the widest blur's tails. */
double addedHorizontalVariance(const Maker& blur)
{
    constexpr int width = 1600, height = 8, barLeft = 792, barWidth = 16;
    SxImageRgbaBytes image = flat(width, height, 255, 0, 0, 0);
    for (int y = 0; y < height; ++y)
        for (int x = barLeft; x < barLeft + barWidth; ++x)
            image.pixelAt(x, y)[1] = 255;
    runNode(image, blur);

    double mass = 0.0, first = 0.0, second = 0.0;
    for (int x = 0; x < width; ++x)
    {
        const double v = image.pixelAt(x, height / 2)[1];
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
    const auto flatImage = flat(90, 70, 200, 180, 91, 33);
    for (const auto& [label, make] : filters)
    {
        SxImageRgbaBytes image(flatImage);
        runNode(image, make);
        EXPECT_LE(TestImages::maxDifference(image, flatImage), 1) << label;
    }
}

TEST(BoxBlurFamily, GaussianSpreadIsTheModelledOneAndGrowsSmoothly)
{
    // The Lab sharpen shrinks its light blur by the modelled variance, so every member the table
    // picks must spread as much as varianceFor says, a radius of whole pairs (8) and repeated
    // passes included (measured within 3%: bytes round the faint tails of the bar).
    std::map<float, double> once;
    for (float argument : { 2.0f, 3.0f, 3.1f, 6.0f, 8.0f, 12.0f, 24.0f, 24.1f, 60.0f, 120.0f, 175.0f, 175.2f })
        for (int passes : { 1, 2 })
        {
            const double v = addedHorizontalVariance(gaussian(argument, passes));
            EXPECT_NEAR(v / GPUImageGaussianBlur::varianceFor(argument, passes), 1.0, 0.04) << argument << " x" << passes;
            if (passes == 1)
                once[argument] = v;
        }
    // Where the table switches filters the blur may not jump: just below and just above each of
    // the first two edges the spread agrees within a fifth.
    for (const auto& [below, above] : { std::pair { 3.0f, 3.1f }, std::pair { 24.0f, 24.1f } })
        EXPECT_NEAR(once[above] / once[below], 1.0, 0.2) << below;
    // And it grows with the argument throughout.
    double previous = 0.0;
    for (float argument : { 2.0f, 3.0f, 6.0f, 12.0f, 24.0f, 60.0f, 120.0f })
    {
        EXPECT_GT(once[argument], previous) << argument;
        previous = once[argument];
    }
}

TEST(BoxBlurFamily, BoxBlurRadiusIsCappedAtTwelve)
{
    EXPECT_EQ(GPUImageBoxBlur::fragmentText(20.0f, true), GPUImageBoxBlur::fragmentText(12.0f, true));
    const auto photo = smallPhoto(120, 80);
    SxImageRgbaBytes twenty(photo), twelve(photo), eleven(photo);
    runNode(twenty, boxBlur(20.0f));
    runNode(twelve, boxBlur(12.0f));
    runNode(eleven, boxBlur(11.0f));
    EXPECT_EQ(TestImages::maxDifference(twenty, twelve), 0);
    EXPECT_GT(TestImages::maxDifference(eleven, twelve), 0);
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
    SxImageRgbaBytes image = flat(64, 16, 255, 255, 0, 0);
    for (int y = 0; y < image.height; ++y)
        for (int x = 32; x < image.width; ++x)
        {
            auto* p = image.pixelAt(x, y);
            p[0] = 0, p[1] = 0, p[2] = 255, p[3] = 0;
        }
    for (const auto& make : { boxBlur(6.0f, 2, true), fractional(1.4f, 2, true), fixedBox<GPUImageBox8BlurFilter>(1.0f, 1, true) })
    {
        SxImageRgbaBytes blurred(image);
        runNode(blurred, make);
        for (int x = 0; x < 32; ++x)
        {
            const auto* p = blurred.pixelAt(x, 8);
            EXPECT_EQ(p[0], 255) << x;
            EXPECT_GE(p[1], 254) << x; // no green bled into the visible red
            EXPECT_LE(p[2], 1) << x;
        }
        for (int x = 32; x < image.width; ++x)
            EXPECT_EQ(blurred.pixelAt(x, 8)[0], 0) << x;
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
