// The colour filters (GPUImageColorConversion and its Lab pair, saturation / contrast / gamma) and
// the lighten merge.

#include "GPUTestImages.h"
#include "gpu/GPUImageColorConversion.h"
#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/GPUImageLightenMode.h"
#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/GPUImageSaturateContrastGamma.h"

#include <cmath>

namespace
{
using namespace GPUTestImages;
const float lumaWeights[4] = { 0.0f, 0.2125f, 0.7154f, 0.0721f };

template <typename Conversion>
void convert(SxImageRgbaBytes& image)
{
    runFilter<Conversion>(image, [](auto& f) { return f.init(); });
}

void adjust(SxImageRgbaBytes& image, float saturation, float contrast, float gamma)
{
    runFilter<GPUImageSaturateContrastGamma>(image, [&](auto& f) {
        const bool ok = f.init();
        f.setConversionWeights(lumaWeights);
        f.setSaturate(saturation);
        f.setContrast(contrast);
        f.setGamma(gamma);
        return ok;
    });
}

void lighten(SxImageRgbaBytes& base, const SxImageRgbaBytes& overlay, float strength)
{
    runFilter<GPUImageLightenMode>(base, [&](auto& f) {
        const bool ok = f.init();
        f.setStrength(strength);
        f.setSourceImage(&overlay);
        return ok;
    });
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
            auto* p = image.pixelAt(x, y);
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
    return photoAt("coffee.png", 240, 160, 1);
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
        const auto* p = image.pixelAt(x, 0);
        EXPECT_EQ(p[2], 128) << x; // a* of grey is zero
        EXPECT_EQ(p[3], 128) << x; // b* of grey is zero
        EXPECT_GE((int) p[1], previousL) << x;
        previousL = p[1];
    }
    EXPECT_EQ(image.pixelAt(0, 0)[1], 0);
    EXPECT_EQ(image.pixelAt(255, 0)[1], 255);
    // Middle grey (sRGB 119) has L* close to 50.
    EXPECT_NEAR(image.pixelAt(119, 0)[1], 128, 2);
}

TEST(ColourFilters, AlphaSurvivesEveryColourFilter)
{
    SxImageRgbaBytes original(97, 61);
    TestImages::fillRandom(original);
    SxImageRgbaBytes identity(original), lab(original), rgb(original), adjusted(original);
    convert<GPUImageColorConversion>(identity);
    EXPECT_EQ(TestImages::maxDifference(identity, original), 0);
    convert<GPUImageRGBToLabColorConversion>(lab);
    convert<GPUImageLabToRGBColorConversion>(rgb);
    adjust(adjusted, 2.5f, 0.8f, 0.4f);
    EXPECT_TRUE(alphaOf(lab) == alphaOf(original)) << "to Lab";
    EXPECT_TRUE(alphaOf(rgb) == alphaOf(original)) << "to RGB";
    EXPECT_TRUE(alphaOf(adjusted) == alphaOf(original)) << "saturate";
}

TEST(SaturateContrastGamma, NeutralSettingsChangeNothingAndGreyStaysGrey)
{
    const auto photo = smallPhoto();
    SxImageRgbaBytes neutral(photo), desaturated(photo);
    adjust(neutral, 1.0f, 0.0f, 0.0f);
    EXPECT_LE(TestImages::maxDifference(neutral, photo), 1);
    adjust(desaturated, 0.0f, 0.0f, 0.0f);
    for (size_t i = 0; i < desaturated.byteCount(); i += 4)
    {
        ASSERT_NEAR(desaturated.pixels[i + 1], desaturated.pixels[i + 2], 1) << i;
        ASSERT_NEAR(desaturated.pixels[i + 2], desaturated.pixels[i + 3], 1) << i;
    }

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

TEST(SaturateContrastGamma, ContrastAndGammaActInTheirDirections)
{
    SxImageRgbaBytes contrast = greyRamp();
    adjust(contrast, 1.0f, 1.0f, 0.0f);
    EXPECT_LT(contrast.pixelAt(64, 0)[1], 64 - 10);
    EXPECT_GT(contrast.pixelAt(192, 0)[1], 192 + 10);
    EXPECT_NEAR(contrast.pixelAt(128, 0)[1], 128, 1);
    EXPECT_EQ(contrast.pixelAt(0, 0)[1], 0);
    EXPECT_EQ(contrast.pixelAt(255, 0)[1], 255);

    SxImageRgbaBytes lifted = greyRamp(), lowered = greyRamp();
    adjust(lifted, 1.0f, 0.0f, 0.5f);
    adjust(lowered, 1.0f, 0.0f, -0.5f);
    EXPECT_GT(lifted.pixelAt(100, 0)[1], 100 + 10);
    EXPECT_LT(lowered.pixelAt(100, 0)[1], 100 - 10);
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
