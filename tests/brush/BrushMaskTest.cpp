// The effect mask's life (a new picture empties it, a full-size render enlarges it and the
// preview gets it back unchanged) and the way from a dab to the picture without a filter run.
#include "brush/SxBrush.h"
#include "document/LayerManager.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"
#include "gpu/GPUTestImages.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{
struct MaskGuard
{
    ~MaskGuard() { TornvaleEffect::deleteBrushMask(); }
};
} // namespace

TEST(BrushMask, NewPictureEmptiesItAndFullSizeRoundTripKeepsThePainting)
{
    MaskGuard guard;
    SxImageRgbaBytes preview(10, 6), full(40, 24), other(7, 7);
    TornvaleEffect::createEffectMask(preview);
    auto* mask = TornvaleEffect::getBrushMask();
    ASSERT_NE(mask, nullptr);
    // A hard edge: the left half painted.
    for (int y = 0; y < 6; ++y)
        std::memset(mask->pixelAt(0, y), 255, 5);
    SxImageAlphaByte painted(*mask);

    // Enlarged for a full-size render: the same object, the painting smoothly spread (the edge
    // becomes a ramp that falls from the left to the right) ...
    TornvaleEffect::resizeEffectMask(full);
    ASSERT_EQ(TornvaleEffect::getBrushMask(), mask);
    ASSERT_EQ(mask->width, 40);
    ASSERT_EQ(mask->height, 24);
    const uint8_t* row = mask->pixelAt(0, 12);
    EXPECT_EQ(row[0], 255);
    EXPECT_EQ(row[39], 0);
    int between = 0;
    for (int x = 1; x < 40; ++x)
    {
        EXPECT_LE(row[x], row[x - 1]);
        between += row[x] > 0 && row[x] < 255;
    }
    EXPECT_GE(between, 2);

    // ... and back at the preview's size exactly as it was painted.
    TornvaleEffect::resizeEffectMask(preview);
    ASSERT_EQ(mask->width, 10);
    EXPECT_EQ(0, std::memcmp(mask->pixels, painted.pixels, painted.byteCount()));

    // A new picture starts with nothing painted, at its own size.
    TornvaleEffect::createEffectMask(other);
    mask = TornvaleEffect::getBrushMask();
    ASSERT_EQ(mask->width * mask->height, 49);
    for (size_t i = 0; i < mask->byteCount(); ++i)
        ASSERT_EQ(mask->pixels[i], 0);

    // A mask from elsewhere takes the picture's size like the brush mask.
    SxImageAlphaByte corners(2, 2);
    corners.pixels[0] = 255;
    TornvaleEffect::loadEffectMask(corners, full);
    mask = TornvaleEffect::getBrushMask();
    EXPECT_EQ(mask->width, 40);
    EXPECT_EQ(*mask->pixelAt(0, 0), 255);
    EXPECT_EQ(*mask->pixelAt(39, 23), 0);
}

TEST(BrushMask, DabRecomposesOnlyItsRectangleWithoutARender)
{
    MaskGuard guard;
    auto photo = GPUTestImages::photoAt("chelsea.png", 160, 0, 3);
    LayerManager stack;
    stack.addLayer(new StaticImageLayer(&photo));
    auto* effect = new TornvaleEffect(TornvaleEffect::DefaultsOnly {});
    stack.addLayer(effect);
    effect->resetImage(&photo);
    stack.setHighQuality(false);
    auto* shown = stack.render(nullptr, false, false);
    ASSERT_NE(shown, nullptr);
    const auto* art = effect->getEffectResult();
    const auto* adjusted = effect->getAdjustedOriginal();
    ASSERT_TRUE(art != nullptr && adjusted != nullptr);
    SxImageRgbaBytes before(*shown);

    // The removing brush at full opacity, twice, fills the core of a 20-pixel dab.
    SxBrush brush(20.0f, 0.0f, 1.0f);
    SxBrushPoint p { 50.0f, 40.0f };
    TornvaleEffect::getBrushMask()->paintOffDab(p, 255, brush, 1.0f);
    const auto again = stack.recompose(LayerRect::of(40, 30, 60, 50));
    ASSERT_EQ(again, shown);
    EXPECT_EQ(effect->getEffectResult(), art); // the chain did not run
    EXPECT_EQ(effect->getAdjustedOriginal(), adjusted);

    EXPECT_EQ(0, std::memcmp(shown->pixelAt(50, 40), adjusted->pixelAt(50, 40), 4)); // under the dab
    EXPECT_EQ(0, std::memcmp(shown->pixelAt(10, 10), before.pixelAt(10, 10), 4));    // elsewhere
    // Only the rectangle was refreshed: a painted byte outside it shows on the next recompose.
    *TornvaleEffect::getBrushMask()->pixelAt(100, 100) = 255;
    stack.recompose(LayerRect::of(40, 30, 60, 50));
    EXPECT_EQ(0, std::memcmp(shown->pixelAt(100, 100), before.pixelAt(100, 100), 4));

    // A layer that waits for a render is never recomposed on the spot.
    effect->setNeedsRender(true);
    EXPECT_EQ(stack.recompose(LayerRect::of(0, 0, 10, 10)), nullptr);
}
