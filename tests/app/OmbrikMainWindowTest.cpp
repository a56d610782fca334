#include "app/OmbrikMainWindow.h"

#include <gtest/gtest.h>

namespace
{
juce::Point<int> sizeFor(int displayWidth)
{
    return MainWindowSize::initialContentSize(displayWidth);
}
} // namespace

// The height comes from 65% of the unclamped width: on narrow displays the width is raised to
// 1024 while the height stays with the small display, then meets its own floor of 601.
TEST(MainWindowSize, HeightFollowsTheUnclampedWidth)
{
    EXPECT_EQ(sizeFor(3000), juce::Point<int>(1024, 601));   // 900 × 585 before the floors
    EXPECT_EQ(sizeFor(7000), juce::Point<int>(1920, 1365));  // 2100 wide, capped; 1365 stays
    EXPECT_EQ(sizeFor(1920), juce::Point<int>(1024, 601));
}

TEST(MainWindowSize, MidRangeDisplaysGetTheirShare)
{
    // 4000 × 0.3 = 1200 lies between the limits; 1200 × 0.65 = 780.
    EXPECT_EQ(sizeFor(4000), juce::Point<int>(1200, 780));
    // Truncation, not rounding: 3999 × 0.3 = 1199.7 → 1199, × 0.65 = 779.35 → 779.
    EXPECT_EQ(sizeFor(3999), juce::Point<int>(1199, 779));
    for (int width = 0; width <= 20000; width += 250)
    {
        const auto size = sizeFor(width);
        EXPECT_GE(size.x, 1024);
        EXPECT_LE(size.x, 1920);
        EXPECT_GE(size.y, 601);
    }
}
