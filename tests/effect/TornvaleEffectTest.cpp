#include "document/SxPropertySet.h"
#include "effect/TornvaleEffect.h"
#include "gpu/GPUTestImages.h"

#include <algorithm>
#include <cmath>

namespace
{
// Rendered at a small size: the chain is the same at any size, and llvmpipe is slow.
SxImageRgbaBytes smallPhoto(const char* name, int width)
{
    return GPUTestImages::photoAt(name, width, 0, 3);
}

// A full-quality render at the scale of the picture's size, unless a test picks another.
SxRef<SxImageRgbaBytes> render(TornvaleEffect& effect, SxImageRgbaBytes& input, float scale = 0.0f)
{
    LayerRenderParameters parameters;
    parameters.image = &input;
    parameters.scale = scale > 0.0f ? scale : std::max(input.width, input.height) / 1024.0f;
    parameters.highQuality = true;
    effect.setNeedsRender(true);
    return SxRef<SxImageRgbaBytes>::share(effect.getRenderedImage(parameters));
}

double luminance(const uint8_t* p)
{
    return 0.2126 * p[1] + 0.7152 * p[2] + 0.0722 * p[3];
}

// Pearson correlation of two images' luminance, both reduced to a coarse grid so that only the
// picture's layout counts, not its texture.
double layoutCorrelation(const SxImageRgbaBytes& a, const SxImageRgbaBytes& b)
{
    SxImageRgbaBytes small1(a), small2(b);
    small1.resize(24, 16, 3);
    small2.resize(24, 16, 3);
    double sa = 0, sb = 0, saa = 0, sbb = 0, sab = 0;
    const int n = 24 * 16;
    for (int i = 0; i < n; ++i)
    {
        const double x = luminance(small1.pixels + i * 4), y = luminance(small2.pixels + i * 4);
        sa += x; sb += y; saa += x * x; sbb += y * y; sab += x * y;
    }
    const double cov = sab / n - (sa / n) * (sb / n);
    return cov / std::sqrt((saa / n - (sa / n) * (sa / n)) * (sbb / n - (sb / n) * (sb / n)));
}

double meanLuminance(const SxImageRgbaBytes& image)
{
    double sum = 0;
    for (size_t i = 0; i < image.byteCount(); i += 4)
        sum += luminance(image.pixels + i);
    return sum / (image.width * image.height);
}
} // namespace

TEST(TornvaleEffect, RolledLooksFitTheControlsAndRepeatWithTheGenerator)
{
    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    juce::Random random(42);
    for (int roll = 0; roll < 200; ++roll)
    {
        effect.strokeStyle = 1;
        effect.randomize(random);
        // The sliders run from 0 to 1 and the detail size has three segments; the style is the
        // user's choice and never rolled.
        for (float value : { effect.preSharpen, effect.colorizeEdges, effect.strokeLength, effect.sharpen, effect.brightenLight,
                             effect.smoothing, effect.postSharpen, effect.saturation, effect.contrast })
            ASSERT_TRUE(value >= 0.0f && value <= 1.0f) << value << " at roll " << roll;
        ASSERT_GE(effect.preSharpenSize, 0);
        ASSERT_LE(effect.preSharpenSize, 2);
        ASSERT_EQ(effect.strokeStyle, 1);
    }
    // The same generator state gives the same look.
    juce::Random a(7), b(7);
    TornvaleEffect first(TornvaleEffect::DefaultsOnly {}), second(TornvaleEffect::DefaultsOnly {});
    first.randomize(a);
    second.randomize(b);
    EXPECT_EQ(first.smoothing, second.smoothing);
    EXPECT_EQ(first.contrast, second.contrast);
}

TEST(TornvaleEffect, SettingsRoundTripAndMissingKeysReadZero)
{
    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    juce::Random random(3);
    effect.randomize(random);
    effect.strokeStyle = 1;
    SxPropertySet set;
    effect.saveToDictionary(set, {});

    TornvaleEffect copy(TornvaleEffect::DefaultsOnly {});
    copy.restoreFromDictionary(set, {});
    EXPECT_TRUE(copy.currentParameters() == effect.currentParameters());

    // A saved set is a whole state: what it lacks reads 0; what is out of range is clamped.
    SxPropertySet bad;
    bad.setString("contrast", "17");
    bad.setString("strokeStyle", "-4");
    copy.restoreFromDictionary(bad, {});
    EXPECT_FLOAT_EQ(copy.contrast, 1.0f);
    EXPECT_EQ(copy.strokeStyle, 0);
    EXPECT_FLOAT_EQ(copy.saturation, 0.0f);
    EXPECT_FLOAT_EQ(copy.smoothing, 0.0f);

    // A single setting (the command line's) leaves the others alone.
    copy.restoreFromDictionary(set, {});
    EXPECT_TRUE(copy.setFromText("smoothing", "0.75"));
    EXPECT_FALSE(copy.setFromText("smoothing", "much"));
    EXPECT_FALSE(copy.setFromText("noSuchKey", "1"));
    EXPECT_FLOAT_EQ(copy.smoothing, 0.75f);
    EXPECT_FLOAT_EQ(copy.saturation, effect.saturation);
}

TEST(TornvaleEffect, PhotoBecomesLineArtInBothStyles)
{
    auto photo = smallPhoto("coffee.png", 360);
    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    auto light = render(effect, photo);
    ASSERT_TRUE(light);
    SxImageRgbaBytes lightCopy(*light);

    effect.strokeStyle = 1;
    auto dark = render(effect, photo);
    ASSERT_TRUE(dark);

    // Recognisable: the picture's layout survives (bright where the photo is bright in light
    // style, and likewise in dark style, which inverts twice).
    EXPECT_GT(layoutCorrelation(photo, lightCopy), 0.5);
    EXPECT_GT(layoutCorrelation(photo, *dark), 0.5);
    // Light style keeps bright ridges (a maximum), dark style dark strokes (a minimum).
    EXPECT_GT(meanLuminance(lightCopy), meanLuminance(*dark) + 10.0);
    // It is not the photo: the strokes changed the texture everywhere.
    EXPECT_GT(TestImages::maxDifference(photo, lightCopy), 60);
}

TEST(TornvaleEffect, SourceAlphaSurvivesAndDarkStyleLeavesAlphaAsLightDoes)
{
    auto photo = smallPhoto("chelsea.png", 240);
    for (int y = 0; y < photo.height; ++y)
        for (int x = 0; x < photo.width; ++x)
            photo.pixelAt(x, y)[0] = (uint8_t) (40 + 215 * x / photo.width);

    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    effect.originalImageHadAlpha = true;
    auto light = render(effect, photo);
    SxImageRgbaBytes lightCopy(*light);
    effect.strokeStyle = 1;
    auto dark = render(effect, photo);
    for (size_t i = 0; i < photo.byteCount(); i += 4)
    {
        ASSERT_EQ(lightCopy.pixels[i], photo.pixels[i]);
        ASSERT_EQ(dark->pixels[i], lightCopy.pixels[i]);
    }
}

TEST(TornvaleEffect, InteractiveRenderFillsOnlyThroughTheMask)
{
    auto photo = smallPhoto("chelsea.png", 200);
    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    TornvaleEffect::createEffectMask(photo);

    LayerRenderParameters parameters;
    parameters.image = &photo;
    parameters.scale = 200 / 1024.0f;
    parameters.highQuality = false;
    effect.renderLayer(parameters);
    // Until getRenderedImage runs, the layer's picture is black and transparent.
    const auto* raw = effect.getOutputImage();
    ASSERT_NE(raw, nullptr);
    for (size_t i = 0; i < raw->byteCount(); ++i)
        ASSERT_EQ(raw->pixels[i], 0);

    effect.setNeedsRender(false);
    auto* shown = effect.getRenderedImage(parameters);
    EXPECT_EQ(TestImages::maxDifference(*shown, *effect.getEffectResult()), 0); // empty mask: all effect

    // A full mask over the opaque adjusted photo gives exactly the adjusted photo.
    TornvaleEffect::getBrushMask()->fill(255);
    shown = effect.getRenderedImage(parameters);
    EXPECT_EQ(TestImages::maxDifference(*shown, *effect.getAdjustedOriginal()), 0);

    // A stroke's rectangle refreshes only that rectangle.
    TornvaleEffect::getBrushMask()->fill(0);
    parameters.dirtyRect = LayerRect::of(10, 10, 19, 19);
    shown = effect.getRenderedImage(parameters);
    EXPECT_EQ(0, std::memcmp(shown->pixelAt(12, 12), effect.getEffectResult()->pixelAt(12, 12), 4));
    EXPECT_EQ(0, std::memcmp(shown->pixelAt(40, 40), effect.getAdjustedOriginal()->pixelAt(40, 40), 4));
    TornvaleEffect::deleteBrushMask();
}

TEST(TornvaleEffect, TiledRenderEqualsTheWholeRender)
{
    // Every fetch of every stage lands on the same 1/256-texel step of the same texels in a tile
    // as in the whole picture, and shrunk stages see the same blocks, so forcing tiles changes
    // nothing at all: no seam and no scattered rounding, in both styles.
    auto photo = smallPhoto("astronaut.png", 520);
    for (int style : { 0, 1 })
    {
        TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
        effect.strokeStyle = style;
        auto whole = render(effect, photo);
        SxImageRgbaBytes wholeCopy(*whole);
        SxRef<SxImageRgbaBytes> tiled;
        {
            TestImages::TileLimit limit(200);
            tiled = render(effect, photo);
        }
        EXPECT_EQ(TestImages::maxDifference(wholeCopy, *tiled), 0) << style;
        EXPECT_GT(TestImages::maxDifference(wholeCopy, photo), 30) << style;
    }
}

TEST(TornvaleEffect, FullSizeRenderShrunkResemblesThePreview)
{
    // Lengths and radii grow with the render scale, so a full-size render shrunk to the preview's
    // size shows the strokes the preview shows. Rendering the large picture at the preview's
    // scale instead (strokes as many pixels long as in the preview, so relatively four times
    // shorter) must land further away: that is the scale rules at work, not mere shrinking.
    auto large = smallPhoto("chelsea.png", 960);
    auto preview = smallPhoto("chelsea.png", 240);
    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    effect.strokeLength = 1.0f; // the longest strokes: the clearest difference between the two
    SxImageRgbaBytes previewArt(*render(effect, preview));

    auto shrunkRenderAt = [&](float scale) {
        SxImageRgbaBytes art(*render(effect, large, scale));
        art.resize(previewArt.width, previewArt.height, 3);
        return art;
    };

    const auto scaled = shrunkRenderAt(960 / 1024.0f);
    const auto unscaled = shrunkRenderAt(240 / 1024.0f);
    const double withRules = GPUTestImages::meanDifference(scaled, previewArt), withoutRules = GPUTestImages::meanDifference(unscaled, previewArt);
    EXPECT_GT(layoutCorrelation(scaled, previewArt), 0.95);
    // Measured: 0.66 to 0.74 times as far (mean 3.2 to 3.8 levels against 4.7 to 5.2); without
    // the rules working both renders would be the same.
    EXPECT_LT(withRules, 0.85 * withoutRules);
}
