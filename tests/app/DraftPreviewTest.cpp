// Drafts of the preview: sizes within the pixel budget in the preview's shape, and a reduced
// stack that keeps the brush mask, so a masked area never flashes line art while a slider moves.

#include "app/DraftPreview.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

TEST(DraftPreview, SizesKeepTheShapeWithinTheBudget)
{
    DraftPreview draft;
    for (const auto& [w, h] : { std::pair { 1500, 1000 }, { 1000, 1500 }, { 6000, 400 }, { 800, 800 } })
    {
        const auto size = draft.draftSizeFor(w, h);
        EXPECT_LE(size.x * size.y, draft.maxPixels + size.x + size.y) << w << " x " << h;
        EXPECT_NEAR((double) size.x / size.y, (double) w / h, 0.02 * w / h) << w << " x " << h;
    }
    EXPECT_TRUE(draft.draftSizeFor(500, 500).isOrigin()) << "a preview under twice the budget renders in full";
}

TEST(DraftPreview, TheBrushMaskHoldsInTheDraft)
{
    auto picture = TestImages::photo("coffee.png");
    ASSERT_NE(picture, nullptr);
    LayerManager stack;
    stack.addLayer(new StaticImageLayer(picture.get()));
    stack.addLayer(new TornvaleEffect(TornvaleEffect::DefaultsOnly {}));
    // The left half painted (the photo shows there), the right half left to the effect.
    TornvaleEffect::createEffectMask(*picture);
    auto* mask = TornvaleEffect::getBrushMask();
    for (int y = 0; y < mask->height; ++y)
        std::memset(mask->pixels + (size_t) y * (size_t) mask->width, 255, (size_t) mask->width / 2);

    stack.setHighQuality(false);
    stack.markAllDirty();
    auto full = SxRef<SxImageRgbaBytes>::adopt(stack.render(nullptr, false, true));
    DraftPreview draft;
    draft.maxPixels = picture->width * picture->height / 4;
    ASSERT_TRUE(draft.prepare(stack));
    auto masked = draft.render();
    TornvaleEffect::deleteBrushMask();
    ASSERT_TRUE(draft.prepare(stack));
    auto unmasked = draft.render();
    ASSERT_NE(full.get(), nullptr);
    ASSERT_NE(masked.get(), nullptr);
    ASSERT_NE(unmasked.get(), nullptr);
    ASSERT_EQ(masked->width, full->width);
    ASSERT_EQ(masked->height, full->height);

    // Mean colour difference over columns x0 to x1, both pictures reduced to the draft's size
    // first, so that what a draft cannot have (the finest detail) does not count.
    auto meanDifference = [](const SxImageRgbaBytes& a, const SxImageRgbaBytes& b, double from, double to) {
        SxImageRgbaBytes x(a), y(b);
        x.resize(a.width / 2, a.height / 2, 3);
        y.resize(b.width / 2, b.height / 2, 3);
        const int x0 = (int) (from * x.width), x1 = (int) (to * x.width);
        double sum = 0;
        for (int row = 0; row < x.height; ++row)
            for (size_t i = ((size_t) row * (size_t) x.width + (size_t) x0) * 4; i < ((size_t) row * (size_t) x.width + (size_t) x1) * 4; ++i)
                if (i % 4 != 0)
                    sum += std::abs((int) x.pixels[i] - (int) y.pixels[i]);
        return sum / (3.0 * x.height * (x1 - x0));
    };
    // Away from the mask's edge: the painted half is the photo as the full preview shows it, and
    // differs plainly from a draft without the mask; the effect's half is the same either way.
    const double paintedToFull = meanDifference(*masked, *full, 0.0, 0.4);
    const double paintedToUnmasked = meanDifference(*masked, *unmasked, 0.0, 0.4);
    const double effectHalf = meanDifference(*masked, *unmasked, 0.6, 1.0);
    std::printf("painted half against the full preview %.2f, against a draft without mask %.2f; effect's half %.2f\n",
                paintedToFull, paintedToUnmasked, effectHalf);
    EXPECT_LT(paintedToFull, paintedToUnmasked / 3);
    EXPECT_LT(effectHalf, 0.5);
}
