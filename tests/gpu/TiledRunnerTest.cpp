#include "GLTestFilters.h"
#include "gpu/FilterChain.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

namespace
{
using TestImages::TileLimit;

// Every pixel of the image must be written back by exactly one tile.
void expectInnerRectsPartition(const std::vector<TiledRunner::Tile>& tiles, int width, int height)
{
    std::vector<int> covered((size_t) width * (size_t) height, 0);
    for (const auto& t : tiles)
    {
        ASSERT_TRUE(juce::Rectangle<int>(0, 0, width, height).contains(t.outer));
        const auto inner = t.inner();
        for (int y = inner.getY(); y < inner.getBottom(); ++y)
            for (int x = inner.getX(); x < inner.getRight(); ++x)
                ++covered[(size_t) y * (size_t) width + (size_t) x];
    }
    for (int c : covered)
        ASSERT_EQ(c, 1);
}

} // namespace

TEST(TilePlan, SplitsAtTheTileSizeColumnByColumn)
{
    EXPECT_EQ(TiledRunner::planTiles(2000, 2000, 2000, 0).size(), 1u);
    const auto two = TiledRunner::planTiles(2001, 2000, 2000, 0);
    ASSERT_EQ(two.size(), 2u);
    EXPECT_EQ(two[1].outer, juce::Rectangle<int>(2000, 0, 1, 2000));

    const auto tiles = TiledRunner::planTiles(500, 700, 256, 0);
    ASSERT_EQ(tiles.size(), 6u);
    EXPECT_EQ(tiles[1].column, 0); // rows of the first column come first
    EXPECT_EQ(tiles[1].row, 1);
    EXPECT_EQ(tiles[2].outer.getBottom(), 700); // the last tile of a column is clipped
    expectInnerRectsPartition(tiles, 500, 700);
}

TEST(TilePlan, PaddingGrowsTilesButWritesEachPixelOnce)
{
    for (float padding : { 1.0f, 7.9f, 300.0f, 1000.0f }) // padding beyond a whole tile included
    {
        const auto tiles = TiledRunner::planTiles(613, 401, 128, padding);
        expectInnerRectsPartition(tiles, 613, 401);
        // Padding at least as asked, no more than the alignment of the outer corner adds.
        const int p = (int) padding;
        const int a = TiledRunner::tileBlockAlignment;
        for (const auto& t : tiles)
        {
            EXPECT_EQ(t.outer.getX() % a, 0);
            EXPECT_EQ(t.outer.getY() % a, 0);
            if (t.outer.getX() > 0) EXPECT_TRUE(t.insetLeft >= p && t.insetLeft < p + a) << t.insetLeft;
            if (t.outer.getY() > 0) EXPECT_TRUE(t.insetTop >= p && t.insetTop < p + a) << t.insetTop;
        }
    }
}

TEST(TiledRun, FourThousandByThreeThousandPhotoPassesAnIdentityChainUnchanged)
{
    auto photo = TestImages::photo("coffee.png");
    ASSERT_NE(photo, nullptr);
    photo->resize(4000, 3000, 1);
    SxImageRgbaBytes original(*photo);

    FilterChain chain;
    auto* identity = chain.add(TestFilters::identity());
    TiledRunner::run(*photo, *identity, *identity, 0);
    EXPECT_EQ(TestImages::maxDifference(*photo, original), 0);
}

TEST(TiledRun, PaddedBlurTiledEqualsOneTile)
{
    auto photo = TestImages::photo("chelsea.png");
    ASSERT_NE(photo, nullptr);
    SxImageRgbaBytes whole(*photo), tiled(*photo);

    FilterChain chain;
    auto* blur = chain.make<TestFilters::BoxBlurFilter>(4);
    TiledRunner::run(whole, *blur, *blur, 0);
    {
        TileLimit limit(256);
        TiledRunner::run(tiled, *blur, *blur, 4);
    }
    // Taps at whole texels fetch the same texels with the same weights in a tile as in the whole.
    EXPECT_EQ(TestImages::maxDifference(whole, tiled), 0);
    // The blur did something: the result is not the photo.
    EXPECT_GT(TestImages::maxDifference(whole, *photo), 20);

    // Without padding the tile edges show, which is why operations declare it.
    SxImageRgbaBytes unpadded(*photo);
    {
        TileLimit limit(256);
        TiledRunner::run(unpadded, *blur, *blur, 0);
    }
    EXPECT_GT(TestImages::maxDifference(whole, unpadded), 1);
}

TEST(TiledRun, SecondImageIsCutInStepAtItsOwnScale)
{
    TileLimit limit(128);
    SxImageRgbaBytes image(500, 300), half(250, 150);
    TestImages::fillRandom(image);
    SxImageRgbaBytes original(image);
    std::vector<juce::Point<int>> secondSizes;
    std::vector<TiledRunner::SecondTileMapping> mappings;

    TiledRunner::runWithSecondImage(image, half, 10.0f, [&](const SxImageRgbaBytes& secondTile, const TiledRunner::SecondTileMapping& mapping) {
        mappings.push_back(mapping);
        secondSizes.push_back({ secondTile.width, secondTile.height });
        auto chain = std::make_shared<FilterChain>();
        auto* identity = chain->add(TestFilters::identity());
        return TiledRunner::TileChain { identity, identity, [chain] { chain->release(); } };
    });

    EXPECT_EQ(TestImages::maxDifference(image, original), 0);
    const auto tiles = TiledRunner::planTiles(500, 300, 128, 10.0f);
    ASSERT_EQ(secondSizes.size(), tiles.size());
    for (size_t i = 0; i < tiles.size(); ++i)
    {
        // Half the tile, plus at most a texel of margin on each side.
        EXPECT_NEAR(secondSizes[i].x, tiles[i].outer.getWidth() / 2.0, 2.5);
        EXPECT_NEAR(secondSizes[i].y, tiles[i].outer.getHeight() / 2.0, 2.5);
        // The mapping puts the tile's corners on the second image's pixels of the same place,
        // inside the cut.
        const auto& m = mappings[i];
        EXPECT_EQ(m.tileOrigin, tiles[i].outer.getPosition());
        EXPECT_DOUBLE_EQ(m.ratio.x, 0.5);
        const double mappedLeft = m.tileOrigin.x * m.ratio.x - m.secondOrigin.x;
        const double mappedRight = (tiles[i].outer.getWidth() + m.tileOrigin.x) * m.ratio.x - m.secondOrigin.x;
        EXPECT_EQ(m.secondOrigin.x, std::max(0, (int) std::floor(tiles[i].outer.getX() / 2.0) - 1));
        EXPECT_GE(mappedLeft, 0.0);
        EXPECT_LE(mappedRight, secondSizes[i].x);
    }
}
