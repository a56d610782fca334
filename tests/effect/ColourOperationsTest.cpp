// The effect's colour operations: tiled runs must match untiled ones, and the neutral settings
// must leave the picture alone.

#include "effect/ColourOperations.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
using TestImages::TileLimit;

const float lumaWeights[4] = { 0.0f, 0.2125f, 0.7154f, 0.0721f };

SxImageRgbaBytes photo()
{
    auto loaded = TestImages::photo("coffee.png"); // 600 × 400: several 256-pixel tiles
    return SxImageRgbaBytes(*loaded);
}

template <typename Operation>
void expectTiledEqualsUntiled(const Operation& operation, const char* label)
{
    const auto original = photo();
    const TestImages::WholeAndTiled run(original, 256, operation);
    EXPECT_GT(TestImages::maxDifference(run.whole, original), 10) << label << ": the operation did something";
    EXPECT_EQ(TestImages::maxDifference(run.whole, run.tiled), 0) << label;
}
} // namespace

TEST(ColourOperations, SharpeningTiledMatchesUntiled)
{
    // Radii on both sides of the generated box's limit, so both blur kinds cross tile edges.
    expectTiledEqualsUntiled([](SxImageRgbaBytes& image) { EffectOperations::applyLabSharpen(image, 15.0f, 2.0f, 3.0f, 3.0f); },
                             "Lab sharpen 15");
    expectTiledEqualsUntiled([](SxImageRgbaBytes& image) { EffectOperations::applyLabSharpen(image, 45.0f, 2.7f, 1.0f, 1.0f); },
                             "Lab sharpen 45");
    expectTiledEqualsUntiled([](SxImageRgbaBytes& image) { EffectOperations::applyUnsharp(image, 1.5f, 1.0f); }, "unsharp 1.5");
    expectTiledEqualsUntiled([](SxImageRgbaBytes& image) { EffectOperations::applyUnsharp(image, 30.0f, 1.0f); }, "unsharp 30");
}

TEST(ColourOperations, ZeroIntensitySharpeningKeepsThePhoto)
{
    const auto original = photo();
    SxImageRgbaBytes lab(original), rgb(original);
    EffectOperations::applyLabSharpen(lab, 15.0f, 0.0f, 0.0f, 0.0f);
    EffectOperations::applyUnsharp(rgb, 15.0f, 0.0f);
    EXPECT_LE(TestImages::maxDifference(lab, original), 2); // through Lab and back
    EXPECT_EQ(TestImages::maxDifference(rgb, original), 0);
}

TEST(ColourOperations, LightenCombineTakesTheMaximumInEveryTile)
{
    const auto base = photo();
    SxImageRgbaBytes overlay(base.width, base.height);
    TestImages::fillRandom(overlay, 7);
    for (size_t i = 0; i < overlay.byteCount(); i += 4)
        overlay.pixels[i] = 255;

    SxImageRgbaBytes merged(base);
    {
        TileLimit limit(256);
        EffectOperations::lightenCombine(merged, overlay, 1.0f);
    }
    for (size_t i = 0; i < base.byteCount(); ++i)
        ASSERT_EQ(merged.pixels[i], i % 4 == 0 ? 255 : std::max(base.pixels[i], overlay.pixels[i])) << i;
}

TEST(ColourOperations, EmptyImagesAreLeftAlone)
{
    SxImageRgbaBytes empty(0, 0), other(4, 4);
    EffectOperations::applyLabSharpen(empty, 5.0f, 1.0f, 1.0f, 1.0f);
    EffectOperations::applyUnsharp(empty, 5.0f, 1.0f);
    EffectOperations::applySaturateContrastGamma(empty, 2.0f, 0.5f, 0.0f, lumaWeights);
    EffectOperations::lightenCombine(empty, other, 1.0f);
    EffectOperations::lightenCombine(other, empty, 1.0f);
    EXPECT_EQ(empty.width, 0);
    EXPECT_EQ(TestImages::maxDifference(other, SxImageRgbaBytes(4, 4)), 0);
}
