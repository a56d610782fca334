// Dabs and stamps against values worked out by hand from the dab's formula: a dab of diameter 4
// has its centre on the corner (2, 2), radius 2; pixels are measured from their own corners.
#include "brush/SxBrush.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
std::vector<int> bytesOf(const SxImageAlphaByte& image)
{
    return std::vector<int>(image.pixels, image.pixels + image.byteCount());
}

int changedBytes(const SxImageAlphaByte& mask, int from)
{
    int n = 0;
    for (size_t i = 0; i < mask.byteCount(); ++i)
        n += mask.pixels[i] != from;
    return n;
}
} // namespace

TEST(SxBrush, HardAndSoftDabsOfDiameterFour)
{
    // Softness 0: every pixel nearer than 2 to (2, 2) at the full level, none in between; the
    // pixels at exactly 2 (on the rim) stay empty. That is the 3 × 3 block at 1..3.
    for (const auto& [opacity, level] : { std::pair { 1.0f, 255 }, std::pair { 0.5f, 127 } })
    {
        SxBrush hard(4.0f, 0.0f, opacity);
        const auto* dab = hard.imageAtScale(1.0f);
        ASSERT_EQ(dab->width, 4);
        ASSERT_EQ(dab->height, 4);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
                EXPECT_EQ(*dab->pixelAt(x, y), (x >= 1 && y >= 1) ? level : 0) << x << "," << y;
    }

    // Softness 1: the smoothstep (3 − 2t)t² with t = (2 − d) / 2. At d = 0 the top; at d = 1,
    // t = 0.5 gives 0.5 → 127; at d = √2, t = 0.29289 gives 0.20711 → 52; at d ≥ 2 nothing.
    SxBrush soft(4.0f, 1.0f, 1.0f);
    const auto* dab = soft.imageAtScale(1.0f);
    EXPECT_EQ(*dab->pixelAt(2, 2), 255);
    EXPECT_EQ(*dab->pixelAt(2, 1), 127);
    EXPECT_EQ(*dab->pixelAt(3, 2), 127);
    EXPECT_EQ(*dab->pixelAt(1, 1), 52);
    EXPECT_EQ(*dab->pixelAt(3, 3), 52);
    EXPECT_EQ(*dab->pixelAt(0, 2), 0);
    EXPECT_EQ(*dab->pixelAt(0, 0), 0);

    // A width is the diameter rounded up: 120 → 120, 119.5 → 120.
    SxBrush big(119.5f, 1.0f, 1.0f);
    EXPECT_EQ(big.dabWidth(), 120);
}

TEST(SxBrush, DiametersBelowTwoStampNothing)
{
    // One pixel whose distance from the centre (0.5, 0.5) is 0.71, outside a radius of 0.5.
    for (float diameter : { 0.0f, 1.0f })
    {
        SxBrush brush(diameter, 0.0f, 1.0f);
        const auto* dab = brush.imageAtScale(1.0f);
        ASSERT_EQ(dab->width * dab->height, 1);
        EXPECT_EQ(dab->pixels[0], 0);

        SxImageAlphaByte mask(8, 8);
        mask.paintOffDab({ 4.0f, 4.0f }, 255, brush, 1.0f);
        EXPECT_EQ(changedBytes(mask, 0), 0);
        mask.fill(255);
        mask.paintOnDab({ 4.0f, 4.0f }, brush, 1.0f);
        EXPECT_EQ(changedBytes(mask, 255), 0);
    }
}

TEST(SxBrush, OpacityBytesAndStrengths)
{
    EXPECT_EQ(SxBrush::paintOffOpacityByte(1.0f, 1.0f), 255);
    EXPECT_EQ(SxBrush::paintOffOpacityByte(0.5f, 1.0f), 127);
    // 0.003 × 255 = 0.765 is taken for a fraction: 0.765 × 255 = 195.1; 0.004 × 255 = 1.02 is not.
    EXPECT_EQ(SxBrush::paintOffOpacityByte(0.003f, 1.0f), 195);
    EXPECT_EQ(SxBrush::paintOffOpacityByte(0.004f, 1.0f), 1);
    EXPECT_FLOAT_EQ(SxBrush::paintOnStrength(1.0f, 1.0f), 0.35f);
    EXPECT_FLOAT_EQ(SxBrush::paintOnStrength(0.75f, 0.5f), 0.13125f);
}

TEST(SxBrush, PaintOnSubtractsAFixedAmountDownToZero)
{
    // A point at (2, 2) puts the dab's pixel (0, 0) on the mask's (0, 0). Full opacity takes
    // 255 × 0.35 = 89.25 a dab: 255 → 165.75 → 165, then 165 → 75.75 → 75, then 0, and 0 stays.
    SxBrush hard(4.0f, 0.0f, 1.0f);
    SxImageAlphaByte mask(6, 6);
    mask.fill(255);
    const SxBrushPoint p { 2.0f, 2.0f };
    for (int expected : { 165, 75, 0, 0 })
    {
        mask.paintOnDab(p, hard, SxBrush::paintOnStrength(1.0f, 1.0f));
        EXPECT_EQ(*mask.pixelAt(2, 2), expected);
        EXPECT_EQ(*mask.pixelAt(0, 0), 255); // outside the disc
        EXPECT_EQ(*mask.pixelAt(4, 4), 255); // outside the dab's square
        EXPECT_EQ(changedBytes(mask, 255), 9);
    }
}

TEST(SxBrush, PaintOffAccumulatesLikePaintAndNeverPasses255)
{
    SxBrush hard(4.0f, 0.0f, 1.0f);
    const SxBrushPoint p { 2.0f, 2.0f };

    // Byte 127: 0 → 127, then 127 + 127 × 128 / 255 = 190, and so on until 253, where
    // 127 × 2 / 255 rounds to nothing.
    SxImageAlphaByte mask(6, 6);
    mask.paintOffDab(p, 127, hard, 1.0f);
    EXPECT_EQ(*mask.pixelAt(1, 1), 127);
    mask.paintOffDab(p, 127, hard, 1.0f);
    EXPECT_EQ(*mask.pixelAt(1, 1), 190);
    for (int i = 0; i < 40; ++i)
        mask.paintOffDab(p, 127, hard, 1.0f);
    EXPECT_EQ(*mask.pixelAt(3, 3), 253);
    EXPECT_EQ(changedBytes(mask, 0), 9);

    // Full strength reaches 255 at once and stays there.
    mask.paintOffDab(p, 255, hard, 1.0f);
    mask.paintOffDab(p, 255, hard, 1.0f);
    EXPECT_EQ(*mask.pixelAt(2, 2), 255);

    // A dab byte that the opacity cuts to q = 0 changes nothing: 127 / 255 × 2 = 0.996 → 0.
    SxBrush faint(4.0f, 0.0f, 0.5f); // bytes of 127
    SxImageAlphaByte clean(6, 6);
    clean.paintOffDab(p, 2, faint, 1.0f);
    EXPECT_EQ(changedBytes(clean, 0), 0);
}

TEST(SxBrush, StampsClipToTheMask)
{
    SxBrush hard(4.0f, 0.0f, 1.0f);
    SxImageAlphaByte mask(6, 6);
    // At (0, 0) the dab's own (2..3, 2..3), inside its disc, lands on the mask's (0..1, 0..1).
    mask.paintOffDab({ 0.0f, 0.0f }, 255, hard, 1.0f);
    EXPECT_EQ(changedBytes(mask, 0), 4);
    EXPECT_EQ(*mask.pixelAt(1, 1), 255);
    // At the lower right corner the dab's (0..1, 0..1) would land; of that only (1, 1) is
    // inside the disc.
    mask.fill(0);
    mask.paintOffDab({ 6.0f, 6.0f }, 255, hard, 1.0f);
    EXPECT_EQ(changedBytes(mask, 0), 1);
    EXPECT_EQ(*mask.pixelAt(5, 5), 255);

    // Wholly outside, on any side, and into a mask of no pixels: nothing.
    mask.fill(0);
    const auto before = bytesOf(mask);
    for (const SxBrushPoint& p : { SxBrushPoint { -50.0f, 3.0f }, SxBrushPoint { 3.0f, -50.0f }, SxBrushPoint { 60.0f, 3.0f },
                                   SxBrushPoint { 3.0f, 60.0f } })
        mask.paintOffDab(p, 255, hard, 1.0f);
    EXPECT_EQ(bytesOf(mask), before);
    SxImageAlphaByte none(0, 0);
    none.paintOffDab({ 0.0f, 0.0f }, 255, hard, 1.0f);
    none.paintOnDab({ 0.0f, 0.0f }, hard, 1.0f);
}
