// The colour filters (GPUImageColorConversion and its Lab pair, saturation / contrast / gamma) and
// the lighten merge.

#include "gpu/FilterChain.h"
#include "gpu/GPUImageColorConversion.h"
#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/GPUImageLightenMode.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/GPUImageSaturateContrastGamma.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
const float lumaWeights[4] = { 0.0f, 0.2125f, 0.7154f, 0.0721f };

template <typename Conversion>
void convert(SxImageRgbaBytes& image)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* filter = chain.make<Conversion>();
    ASSERT_TRUE(filter->init());
    TiledRunner::run(image, *filter, *filter, 0.0f);
}

void adjust(SxImageRgbaBytes& image, float saturation, float contrast, float gamma)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* filter = chain.make<GPUImageSaturateContrastGamma>();
    ASSERT_TRUE(filter->init());
    filter->setConversionWeights(lumaWeights);
    filter->setSaturate(saturation);
    filter->setContrast(contrast);
    filter->setGamma(gamma);
    TiledRunner::run(image, *filter, *filter, 0.0f);
}

void lighten(SxImageRgbaBytes& base, const SxImageRgbaBytes& overlay, float strength)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* filter = chain.make<GPUImageLightenMode>();
    ASSERT_TRUE(filter->init());
    filter->setStrength(strength);
    filter->setSourceImage(&overlay);
    TiledRunner::run(base, *filter, *filter, 0.0f);
}

uint8_t* pixelAt(SxImageRgbaBytes& image, int x, int y)
{
    return image.pixels + ((size_t) y * (size_t) image.width + (size_t) x) * 4;
}

/** Every 8-bit colour on a grid of 17 steps per channel, with opaque alpha. */
SxImageRgbaBytes colourCube()
{
    SxImageRgbaBytes image(64, 64);
    int n = 0;
    for (int r = 0; r < 16; ++r)
        for (int g = 0; g < 16; ++g)
            for (int b = 0; b < 16; ++b, ++n)
            {
                auto* p = image.pixels + (size_t) n * 4;
                p[0] = 255, p[1] = (uint8_t) (r * 17), p[2] = (uint8_t) (g * 17), p[3] = (uint8_t) (b * 17);
            }
    return image;
}

/** Grey levels 0..255 across, with the row index as alpha. */
SxImageRgbaBytes greyRamp()
{
    SxImageRgbaBytes image(256, 8);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
        {
            auto* p = pixelAt(image, x, y);
            p[0] = (uint8_t) (255 - y * 20), p[1] = p[2] = p[3] = (uint8_t) x;
        }
    return image;
}

std::vector<uint8_t> alphaOf(const SxImageRgbaBytes& image)
{
    std::vector<uint8_t> alpha;
    for (size_t i = 0; i < image.byteCount(); i += 4)
        alpha.push_back(image.pixels[i]);
    return alpha;
}

SxImageRgbaBytes smallPhoto()
{
    auto photo = TestImages::photo("coffee.png");
    SxImageRgbaBytes image(*photo);
    image.resize(240, 160, 1);
    return image;
}

void expectAlphaUnchanged(const SxImageRgbaBytes& before, const SxImageRgbaBytes& after, const char* label)
{
    for (size_t i = 0; i < before.byteCount(); i += 4)
        ASSERT_EQ(before.pixels[i], after.pixels[i]) << label << " at byte " << i;
}
} // namespace

TEST(LabConversion, RoundTripReproducesPhotosAndNearlyEveryColour)
{
    const auto photo = smallPhoto();
    SxImageRgbaBytes image(photo);
    convert<GPUImageRGBToLabColorConversion>(image);
    EXPECT_GT(TestImages::maxDifference(image, photo), 20); // it did convert
    convert<GPUImageLabToRGBColorConversion>(image);
    EXPECT_LE(TestImages::maxDifference(image, photo), 2);

    // Over the whole cube, 8 bits of a* and b* cannot pin a channel near zero in a saturated
    // colour to the byte, for the sRGB curve is steepest there. Such a channel may move further
    // than 2, but only by little light: within 1% of full scale in linear terms.
    const auto cube = colourCube();
    SxImageRgbaBytes roundTrip(cube);
    convert<GPUImageRGBToLabColorConversion>(roundTrip);
    convert<GPUImageLabToRGBColorConversion>(roundTrip);
    auto linear = [](uint8_t byte) {
        const double c = byte / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    double worstBeyondTwo = 0.0;
    for (size_t i = 0; i < cube.byteCount(); ++i)
        if (i % 4 != 0 && std::abs((int) roundTrip.pixels[i] - (int) cube.pixels[i]) > 2)
            worstBeyondTwo = std::max(worstBeyondTwo, std::abs(linear(roundTrip.pixels[i]) - linear(cube.pixels[i])));
    EXPECT_LT(worstBeyondTwo, 0.01);
    EXPECT_EQ(alphaOf(roundTrip), alphaOf(cube));
}

TEST(LabConversion, EncodesLightnessAndNeutralAxesAsDocumented)
{
    SxImageRgbaBytes image = greyRamp();
    convert<GPUImageRGBToLabColorConversion>(image);
    int previousL = -1;
    for (int x = 0; x < image.width; ++x)
    {
        const auto* p = pixelAt(image, x, 0);
        EXPECT_EQ(p[2], 128) << x; // a* of grey is zero
        EXPECT_EQ(p[3], 128) << x; // b* of grey is zero
        EXPECT_GE((int) p[1], previousL) << x;
        previousL = p[1];
    }
    EXPECT_EQ(pixelAt(image, 0, 0)[1], 0);
    EXPECT_EQ(pixelAt(image, 255, 0)[1], 255);
    // Middle grey (sRGB 119) has L* close to 50.
    EXPECT_NEAR(pixelAt(image, 119, 0)[1], 128, 2);
}

TEST(ColourFilters, AlphaSurvivesEveryColourFilter)
{
    SxImageRgbaBytes original(97, 61);
    TestImages::fillRandom(original);
    SxImageRgbaBytes identity(original), lab(original), rgb(original), adjusted(original);
    convert<GPUImageColorConversion>(identity);
    EXPECT_EQ(TestImages::maxDifference(identity, original), 0);
    convert<GPUImageRGBToLabColorConversion>(lab);
    expectAlphaUnchanged(original, lab, "to Lab");
    convert<GPUImageLabToRGBColorConversion>(rgb);
    expectAlphaUnchanged(original, rgb, "to RGB");
    adjust(adjusted, 2.5f, 0.8f, 0.4f);
    expectAlphaUnchanged(original, adjusted, "saturate");
}

TEST(SaturateContrastGamma, NeutralSettingsChangeNothingAndGreyStaysGrey)
{
    const auto photo = smallPhoto();
    SxImageRgbaBytes neutral(photo);
    adjust(neutral, 1.0f, 0.0f, 0.0f);
    EXPECT_LE(TestImages::maxDifference(neutral, photo), 1);

    const auto ramp = greyRamp();
    for (float saturation : { 0.0f, 0.5f, 1.0f, 2.2f, 3.0f })
    {
        SxImageRgbaBytes grey(ramp);
        adjust(grey, saturation, 0.0f, 0.0f);
        EXPECT_LE(TestImages::maxDifference(grey, ramp), 1) << saturation;
    }

    SxImageRgbaBytes grey(ramp);
    adjust(grey, 2.0f, 0.6f, 0.3f); // contrast and gamma may change the level, never the hue
    for (size_t i = 0; i < grey.byteCount(); i += 4)
    {
        ASSERT_EQ(grey.pixels[i + 1], grey.pixels[i + 2]) << i;
        ASSERT_EQ(grey.pixels[i + 2], grey.pixels[i + 3]) << i;
    }
}

TEST(SaturateContrastGamma, EachAmountActsInItsDirection)
{
    const auto photo = smallPhoto();
    SxImageRgbaBytes desaturated(photo);
    adjust(desaturated, 0.0f, 0.0f, 0.0f);
    for (size_t i = 0; i < desaturated.byteCount(); i += 4)
    {
        ASSERT_NEAR(desaturated.pixels[i + 1], desaturated.pixels[i + 2], 1) << i;
        ASSERT_NEAR(desaturated.pixels[i + 2], desaturated.pixels[i + 3], 1) << i;
    }

    SxImageRgbaBytes contrast = greyRamp();
    adjust(contrast, 1.0f, 1.0f, 0.0f);
    EXPECT_LT(pixelAt(contrast, 64, 0)[1], 64 - 10);
    EXPECT_GT(pixelAt(contrast, 192, 0)[1], 192 + 10);
    EXPECT_NEAR(pixelAt(contrast, 128, 0)[1], 128, 1);
    EXPECT_EQ(pixelAt(contrast, 0, 0)[1], 0);
    EXPECT_EQ(pixelAt(contrast, 255, 0)[1], 255);

    SxImageRgbaBytes lifted = greyRamp(), lowered = greyRamp();
    adjust(lifted, 1.0f, 0.0f, 0.5f);
    adjust(lowered, 1.0f, 0.0f, -0.5f);
    EXPECT_GT(pixelAt(lifted, 100, 0)[1], 100 + 10);
    EXPECT_LT(pixelAt(lowered, 100, 0)[1], 100 - 10);
}

TEST(LightenMode, OpaqueOverlayGivesPerChannelMaximum)
{
    SxImageRgbaBytes base(83, 57), overlay(83, 57);
    TestImages::fillRandom(base, 1);
    TestImages::fillRandom(overlay, 2);
    for (size_t i = 0; i < overlay.byteCount(); i += 4)
        overlay.pixels[i] = 255;

    SxImageRgbaBytes full(base);
    lighten(full, overlay, 1.0f);
    SxImageRgbaBytes half(base);
    lighten(half, overlay, 0.5f);
    for (size_t i = 0; i < base.byteCount(); ++i)
    {
        if (i % 4 == 0)
        {
            ASSERT_EQ(full.pixels[i], 255) << i; // alpha is the overlay's
            continue;
        }
        ASSERT_EQ(full.pixels[i], std::max(base.pixels[i], overlay.pixels[i])) << i;
        ASSERT_NEAR(half.pixels[i], std::max((double) base.pixels[i], overlay.pixels[i] * 0.5), 1.0) << i;
    }
}

TEST(LightenMode, TransparentOverlayIsReturnedAsItIs)
{
    SxImageRgbaBytes base(40, 30), overlay(40, 30);
    TestImages::fillRandom(base, 3);
    TestImages::fillRandom(overlay, 4);
    for (size_t i = 0; i < overlay.byteCount(); i += 4)
        overlay.pixels[i] = 0;
    lighten(base, overlay, 1.0f);
    EXPECT_EQ(TestImages::maxDifference(base, overlay), 0);
}
