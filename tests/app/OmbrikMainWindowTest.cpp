// The main window's first size on displays of every width.

#include "app/OmbrikMainWindow.h"

#include <gtest/gtest.h>

// The height comes from 65% of the unclamped width: on narrow displays the width is raised to
// 1024 while the height stays with the small display, then meets its own floor of 601. Between
// the limits the share is truncated, not rounded.
TEST(MainWindowSize, HeightFollowsTheUnclampedWidthWithinTheLimits)
{
    const std::pair<int, juce::Point<int>> rows[] = {
        { 3000, { 1024, 601 } },  // 900 × 585 before the floors
        { 7000, { 1920, 1365 } }, // 2100 wide, capped; 1365 stays
        { 1920, { 1024, 601 } },
        { 4000, { 1200, 780 } },  // 4000 × 0.3 = 1200 lies between the limits; 1200 × 0.65 = 780
        { 3999, { 1199, 779 } },  // 1199.7 → 1199, × 0.65 = 779.35 → 779
    };
    for (const auto& [display, size] : rows)
        EXPECT_EQ(MainWindowSize::initialContentSize(display), size) << display;
    for (int width = 0; width <= 20000; width += 250)
    {
        const auto size = MainWindowSize::initialContentSize(width);
        EXPECT_GE(size.x, 1024) << width;
        EXPECT_LE(size.x, 1920) << width;
        EXPECT_GE(size.y, 601) << width;
    }
}
