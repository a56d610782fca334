#include "ui/SxIconButton.h"
#include "ui/SxIcons.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace
{
constexpr int side = 64;

// Coverage of the icon on a side x side grid, 0..255 per pixel.
std::vector<int> rasterise(const juce::Path& icon)
{
    juce::Image image(juce::Image::SingleChannel, side, side, true);
    {
        juce::Graphics g(image);
        g.setColour(juce::Colours::white);
        g.fillPath(icon, juce::AffineTransform::scale((float) side));
    }
    std::vector<int> coverage(side * side);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            coverage[(size_t) (y * side + x)] = image.getPixelAt(x, y).getAlpha();
    return coverage;
}

std::vector<int> mirrored(const std::vector<int>& coverage)
{
    std::vector<int> out(coverage.size());
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            out[(size_t) (y * side + x)] = coverage[(size_t) (y * side + side - 1 - x)];
    return out;
}

// Pixels that one picture clearly has and the other clearly lacks (anti-aliased edges may differ
// by a level or two between a path and its mirror image).
int clearDifferences(const std::vector<int>& a, const std::vector<int>& b)
{
    int n = 0;
    for (size_t i = 0; i < a.size(); ++i)
        n += std::abs(a[i] - b[i]) > 96 ? 1 : 0;
    return n;
}

double share(const std::vector<int>& coverage)
{
    double sum = 0.0;
    for (int c : coverage)
        sum += c / 255.0;
    return sum / (double) coverage.size();
}
} // namespace

TEST(Icons, EveryIconLiesInTheUnitSquareIsVisibleAndDistinct)
{
    std::vector<std::vector<int>> rasters;
    for (int k = 0; k < SxIcons::numKinds; ++k)
    {
        const auto icon = SxIcons::get((SxIcons::Kind) k);
        ASSERT_FALSE(icon.isEmpty()) << "icon " << k;
        EXPECT_TRUE(juce::Rectangle<float>(1.0f, 1.0f).contains(icon.getBounds())) << "icon " << k;
        // Neither a dot nor a blob: line icons cover between 6% and 55% of their square.
        rasters.push_back(rasterise(icon));
        EXPECT_GT(share(rasters.back()), 0.06) << "icon " << k;
        EXPECT_LT(share(rasters.back()), 0.55) << "icon " << k;
    }
    for (size_t a = 0; a < rasters.size(); ++a)
        for (size_t b = a + 1; b < rasters.size(); ++b)
            EXPECT_GT(clearDifferences(rasters[a], rasters[b]), side * side / 100) << "icons " << a << " and " << b;
}

TEST(Icons, PairsAreMirrorImagesAndZoomInHoldsZoomOut)
{
    using K = SxIcons::Kind;
    const auto raster = [](K kind) { return rasterise(SxIcons::get(kind)); };
    EXPECT_LE(clearDifferences(mirrored(raster(K::undo)), raster(K::redo)), 4);
    EXPECT_LE(clearDifferences(mirrored(raster(K::arrowLeft)), raster(K::arrowRight)), 4);

    const auto in = raster(K::zoomIn), out = raster(K::zoomOut);
    int outOnly = 0;
    for (size_t i = 0; i < in.size(); ++i)
        outOnly += out[i] > 128 && in[i] < 128 ? 1 : 0;
    EXPECT_EQ(outOnly, 0);
    EXPECT_GT(share(in), share(out));
}

TEST(Icons, ThePlayTriangleBalancesOnTheCentre)
{
    const auto raster = rasterise(SxIcons::get(SxIcons::Kind::render));
    double sx = 0.0, sy = 0.0, sum = 0.0;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
        {
            const double w = raster[(size_t) (y * side + x)];
            sx += w * (x + 0.5);
            sy += w * (y + 0.5);
            sum += w;
        }
    // Within a pixel of the middle: an off-centre play mark looks like it leans.
    EXPECT_NEAR(sx / sum, side / 2.0, 1.0);
    EXPECT_NEAR(sy / sum, side / 2.0, 1.0);
}

TEST(IconButton, TogglesAndShowsItsStatesDifferently)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxIconButton pan("panButton", SxIcons::Kind::pan);
    pan.setSize(34, 34);
    pan.setClickingTogglesState(true);
    const auto rest = pan.createComponentSnapshot(pan.getLocalBounds());
    pan.triggerClick();
    juce::MessageManager::getInstance()->runDispatchLoopUntil(20);
    EXPECT_TRUE(pan.getToggleState());
    const auto on = pan.createComponentSnapshot(pan.getLocalBounds());

    // Held down: what the press-and-hold owner reads in buttonStateChanged.
    struct Watch : juce::Button::Listener
    {
        std::vector<bool> downs;
        void buttonClicked(juce::Button*) override {}
        void buttonStateChanged(juce::Button* b) override { downs.push_back(b->isDown()); }
    } watch;
    SxIconButton original("originalButton", SxIcons::Kind::original);
    original.setSize(34, 34);
    original.addListener(&watch);
    original.setState(juce::Button::buttonDown);
    const auto held = original.createComponentSnapshot(original.getLocalBounds());
    original.setState(juce::Button::buttonNormal);
    EXPECT_EQ(watch.downs, (std::vector<bool> { true, false }));
    const auto released = original.createComponentSnapshot(original.getLocalBounds());
    original.removeListener(&watch);

    // A corner pixel tells the background: none at rest, a fill when on or held.
    const auto corner = [](const juce::Image& image) { return image.getPixelAt(4, 4); };
    EXPECT_EQ(corner(rest).getAlpha(), 0);
    EXPECT_GT(corner(on).getAlpha(), 0);
    EXPECT_GT(corner(held).getAlpha(), 0);
    EXPECT_EQ(corner(released).getAlpha(), 0);
    // The icon itself is drawn in the middle: the pan arrows cross there.
    EXPECT_GT(rest.getPixelAt(17, 17).getAlpha(), 128);
}
