// The placement tool on a 100 x 100 picture fitted into a square view: at a 200-pixel view the
// zoom is 1.9 and the picture starts at (5, 5); at a 100-pixel view 0.95 from (2.5, 2.5). The
// item is 40 x 20 at (50, 50), so its corners lie at (30, 40), (70, 40), (70, 60) and (30, 60).

#include "tools/SxPlacementTool.h"
#include "tools/ToolTestSupport.h"

#include <cmath>

namespace
{
using P = juce::Point<float>;

class Host : public SxPlacementToolCallback, public SxPlacementToolListener
{
public:
    std::vector<SxPlacement*> getPlacements(SxPlacementTool*) override { return placements; }
    void placementChanged(SxPlacementTool*, SxPlacement* item, const SxPlacement& before, bool finished) override
    {
        changes.push_back({ item, before.center, before.scale, finished });
    }
    bool placementMoving(SxPlacementTool*, SxPlacement*, const SxPlacement&) override
    {
        ++steps;
        return stopTelling;
    }
    struct Change
    {
        SxPlacement* item;
        P centre, scale;
        bool finished;
    };
    std::vector<SxPlacement*> placements;
    std::vector<Change> changes;
    int steps = 0;
    bool stopTelling = false;
};

SxPlacement item40x20()
{
    SxPlacement p;
    p.imageSize = { 40.0f, 20.0f };
    p.center = { 50.0f, 50.0f };
    p.update();
    return p;
}

class PlacementTool : public tooltest::DocumentTest
{
protected:
    void showAt(int viewSize)
    {
        show(viewSize, viewSize, 100, 100);
        zoom = viewSize * 0.95f / 100.0f;
        pan = (viewSize - 100.0f * zoom) * 0.5f;
        ASSERT_FLOAT_EQ(document.getZoom(), zoom);
        tool.setDocument(&document);
        tool.setCallback(&host);
        tool.addListener(&host);
        host.placements = { &item };
    }
    /** Image pixels to view pixels, by hand. */
    P view(P p) const { return { p.x * zoom + pan, p.y * zoom + pan }; }
    int modeAt(P viewPoint)
    {
        tool.documentMouseDown(tooltest::mouseEvent(document, viewPoint));
        const int mode = tool.getMode();
        tool.documentMouseUp(tooltest::mouseEvent(document, viewPoint));
        return mode;
    }
    void dragImage(P fromImage, std::initializer_list<P> toImage)
    {
        const auto down = view(fromImage);
        tool.documentMouseDown(tooltest::mouseEvent(document, down));
        for (auto p : toImage)
            tool.documentMouseDrag(tooltest::mouseEvent(document, view(p), down));
        tool.documentMouseUp(tooltest::mouseEvent(document, view(*(toImage.end() - 1)), down));
    }

    SxPlacementTool tool;
    Host host;
    SxPlacement item = item40x20();
    float zoom = 1.0f, pan = 0.0f;
};

TEST_F(PlacementTool, HitOrderAndRadiiInViewPixelsAtEveryZoom)
{
    for (int viewSize : { 200, 100 })
    {
        SCOPED_TRACE(viewSize);
        showAt(viewSize);
        EXPECT_EQ(modeAt(view({ 30.0f, 40.0f }) + P(0.0f, -15.0f)), SxPlacementTool::cornerTopLeft);
        EXPECT_EQ(modeAt(view({ 30.0f, 40.0f }) + P(0.0f, -15.5f)), SxPlacementTool::none);
        EXPECT_EQ(modeAt(view({ 50.0f, 40.0f }) + P(0.0f, -15.0f)), SxPlacementTool::edgeTop);
        EXPECT_EQ(modeAt(view({ 50.0f, 40.0f }) + P(0.0f, -15.5f)), SxPlacementTool::none);
        EXPECT_EQ(modeAt(view({ 30.0f, 50.0f }) + P(-15.0f, 0.0f)), SxPlacementTool::edgeLeft);
        EXPECT_EQ(modeAt(view({ 50.0f, 50.0f }) + P(0.0f, 6.0f)), SxPlacementTool::moving);
    }
    // At 0.95 the right corners are 19 view pixels apart: beside the edge's midpoint both are in
    // reach, and bottom-right is tested before top-right and before the edge.
    EXPECT_EQ(modeAt(view({ 70.0f, 50.0f }) + P(5.0f, 0.0f)), SxPlacementTool::cornerBottomRight);
    // With edge handles off, the edge's reach outside the item takes nothing.
    tool.itemEdgeHandles = false;
    EXPECT_EQ(modeAt(view({ 50.0f, 40.0f }) + P(0.0f, -12.0f)), SxPlacementTool::none);
}

TEST_F(PlacementTool, UpperItemTakesThePressAndIsSelected)
{
    showAt(200);
    auto upper = item40x20();
    upper.center = { 55.0f, 52.0f };
    upper.update();
    host.placements = { &item, &upper };
    tool.documentMouseDown(tooltest::mouseEvent(document, view({ 44.0f, 52.0f })));
    EXPECT_EQ(tool.getPressedItem(), &upper);
    EXPECT_TRUE(upper.isSelected);
    EXPECT_FALSE(item.isSelected);
}

TEST_F(PlacementTool, CornerTurnsAndScalesAboutTheCentreAndFollowsThePointer)
{
    showAt(200);
    // Bottom-right (70, 60) sits (20, 10) from the centre; a quarter turn clockwise on screen and
    // twice the distance puts it at (30, 90).
    dragImage({ 70.0f, 60.0f }, { { 60.0f, 75.0f }, { 30.0f, 90.0f } });
    EXPECT_NEAR(item.orientation, juce::MathConstants<float>::halfPi, 1.0e-4f);
    EXPECT_NEAR(item.scale.x, 2.0f, 1.0e-4f);
    EXPECT_NEAR(item.scale.y, 2.0f, 1.0e-4f);
    EXPECT_NEAR(item.corners[2].x, 30.0f, 1.0e-3f);
    EXPECT_NEAR(item.corners[2].y, 90.0f, 1.0e-3f);
    EXPECT_EQ(item.center, P(50.0f, 50.0f));
    ASSERT_EQ(host.changes.size(), 1u);
    EXPECT_EQ(host.changes[0].scale, P(1.0f, 1.0f));
    EXPECT_TRUE(host.changes[0].finished);
}

TEST_F(PlacementTool, ShrinkingStopsAtTheFloorButTurningGoesOn)
{
    // At zoom 1.9 the floor is trunc(15 / 1.9) * 3 = 21 image pixels of the larger side.
    showAt(200);
    // (20, 10) from the centre to 0.75 of it: 40 * 0.75 = 30 stays above the floor.
    dragImage({ 70.0f, 60.0f }, { { 65.0f, 57.5f } });
    EXPECT_NEAR(item.scale.x, 0.75f, 1.0e-4f);
    // A further step to a third (30 / 3 = 10 pixels) would pass it: the size holds, and the
    // pointer circling at that distance still turns the item.
    const float r = std::hypot(5.0f, 2.5f) / 3.0f;
    dragImage(item.corners[2], { { 50.0f + r, 50.0f }, { 50.0f, 50.0f + r } });
    EXPECT_NEAR(item.scale.x, 0.75f, 1.0e-4f);
    EXPECT_GT(std::abs(item.orientation), 0.5f);
}

TEST_F(PlacementTool, OnlyARealChangeIsReportedAndListenersCanStopTheTelling)
{
    showAt(200);
    dragImage({ 50.0f, 50.0f }, { { 60.0f, 55.0f }, { 50.0f, 50.0f } });
    EXPECT_TRUE(host.changes.empty());
    EXPECT_GT(host.steps, 0);

    Host second;
    tool.addListener(&second);
    host.stopTelling = true;
    dragImage({ 50.0f, 50.0f }, { { 53.0f, 54.0f } });
    ASSERT_EQ(host.changes.size(), 1u);
    EXPECT_EQ(host.changes[0].centre, P(50.0f, 50.0f));
    EXPECT_NEAR(item.center.x, 53.0f, 1.0e-3f);
    EXPECT_NEAR(item.center.y, 54.0f, 1.0e-3f);
    EXPECT_EQ(second.steps, 0);
    tool.removeListener(&second);
}

TEST_F(PlacementTool, EdgeDragResizesOneSideAboveTheSmallestSize)
{
    showAt(200);
    item.imageSize = { 80.0f, 60.0f }; // corners (10, 20) to (90, 80)
    item.update();
    dragImage({ 90.0f, 50.0f }, { { 95.0f, 50.0f } });
    EXPECT_NEAR(item.scale.x, 85.0f / 80.0f, 1.0e-4f);
    EXPECT_FLOAT_EQ(item.scale.y, 1.0f);
    EXPECT_NEAR(item.corners[0].x, 10.0f, 1.0e-3f); // the left side stays

    // Past the opposite side: the width stops at the smallest size, 50.
    dragImage({ 50.0f, 80.0f }, { { 50.0f, 0.0f } });
    EXPECT_NEAR(item.corners[3].y - item.corners[0].y, 50.0f, 1.0e-3f);
    EXPECT_NEAR(item.corners[0].y, 20.0f, 1.0e-3f); // the top stays
}

TEST(SxPlacementResize, TurnedPlacementKeepsItsOppositeSideAndAspectWithShift)
{
    SxPlacement p = item40x20();
    p.orientation = juce::MathConstants<float>::halfPi; // the right side now faces down
    p.update();
    const auto fixedA = p.corners[0], fixedB = p.corners[3];
    // The right side's midpoint is at (50, 70); drag it 10 further along the turned axis.
    p.resizeSide(SxPlacement::rightSide, { 50.0f, 80.0f }, true, { 1.0f, 1.0f });
    EXPECT_NEAR(p.scale.x, 1.25f, 1.0e-4f);
    EXPECT_NEAR(p.scale.y, 1.25f, 1.0e-4f);
    EXPECT_LT(((p.corners[0] + p.corners[3]) * 0.5f).getDistanceFrom((fixedA + fixedB) * 0.5f), 1.0e-3f);
}
} // namespace
