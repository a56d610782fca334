#include "ToolTestSupport.h"

#include "tools/SxPanTool.h"
#include "tools/SxToolSwitcher.h"

using tooltest::DocumentTest;

namespace
{
// A 1600 by 1200 picture in an 800 by 600 view: the document fits it at 0.475, and the pan
// tool's own fit (0.85 of the view) is 0.425, close enough for a double click to zoom in.
class PanTool : public DocumentTest
{
protected:
    void SetUp() override
    {
        show(800, 600, 1600, 1200);
        switcher.adopt(pan);
        switcher.setCurrentTool(&pan);
        ASSERT_TRUE(pan.isToolOn());
    }

    juce::Point<float> offset() const { return { document.getPanX(), document.getPanY() }; }

    SxPanTool pan;
    SxToolSwitcher switcher { &document };
};
} // namespace

TEST_F(PanTool, APressPansOnlyPastTheThresholdAndThenTheWholeDistance)
{
    document.setZoom(1.0f, false);
    const auto before = offset();
    const juce::Point<float> down { 400, 300 };
    press(down);
    drag({ 408, 300 }, down);
    drag({ 406, 306 }, down); // 8.49 pixels, truncated to 8
    EXPECT_EQ(offset(), before);
    drag({ 400, 309 }, down); // exactly nine is enough, and all nine apply
    EXPECT_EQ(offset(), before + juce::Point<float>(0, 9));
    drag({ 420, 300 }, down);
    EXPECT_EQ(offset(), before + juce::Point<float>(20, 0));
    // Once moving, every step follows the pointer, however small.
    drag({ 421, 303 }, down);
    EXPECT_EQ(offset(), before + juce::Point<float>(21, 3));
    release({ 421, 303 }, down);
    EXPECT_EQ(offset(), before + juce::Point<float>(21, 3));

    // A click that stays under the threshold above the fit leaves the view alone.
    press(down);
    drag({ 405, 305 }, down);
    release({ 405, 305 }, down);
    EXPECT_EQ(offset(), before + juce::Point<float>(21, 3));
    EXPECT_FLOAT_EQ(document.getZoom(), 1.0f);
    EXPECT_FALSE(document.isAnimating());
}

TEST_F(PanTool, APressOnTheLeftOrTopEdgeNeverPans)
{
    document.setZoom(1.0f, false);
    const auto before = offset();
    for (const juce::Point<float> down : { juce::Point<float>(0, 300), juce::Point<float>(400, 0) })
    {
        press(down);
        drag(down + juce::Point<float>(60, 60), down);
        drag(down + juce::Point<float>(120, 90), down);
        release(down + juce::Point<float>(120, 90), down);
        EXPECT_EQ(offset(), before);
    }
}

TEST_F(PanTool, DoubleClickTogglesBetweenFitAndTwiceTheToolsFit)
{
    const float toolFit = juce::jmin(600 * 0.85f / 1200, 800 * 0.85f / 1600);
    const float documentFit = document.getZoom();
    const juce::Point<float> at { 300, 250 };
    const auto under = document.viewToImage(at);

    // A double click arrives as a single click followed by one counted twice.
    click(at, 1);
    EXPECT_FALSE(document.isAnimating()); // a single click above the tool's fit does nothing
    click(at, 2);
    finishAnimation();
    EXPECT_FLOAT_EQ(document.getZoom(), 2.0f * toolFit);
    EXPECT_LT(document.imageToView(under).getDistanceFrom(at), 0.02f);

    click(at, 1);
    click(at, 2);
    finishAnimation();
    EXPECT_FLOAT_EQ(document.getZoom(), documentFit);
    EXPECT_TRUE(document.isFitted());
    EXPECT_NEAR(document.imageBounds().getCentreX(), 400.0f, 0.01f);
}

TEST_F(PanTool, AClickAtOrBelowFitRecentres)
{
    document.setZoom(0.25f, false);
    document.panBy(100, -50);
    click({ 400, 300 });
    EXPECT_TRUE(document.isAnimating());
    finishAnimation();
    EXPECT_TRUE(document.isFitted());
    EXPECT_LT(document.imageBounds().getCentre().getDistanceFrom({ 400.0f, 300.0f }), 0.01f);
}

TEST_F(PanTool, TwoFingersZoomByTheirSpreadAndPanByTheirMidpoint)
{
    // This platform has one mouse source, so both "fingers" come from source 0: the second
    // press adds a touch, and a drag replaces the first, which is the finger that moves.
    document.setZoom(1.0f, false);
    const juce::Point<float> a { 300, 300 }, b { 500, 300 };
    const auto underMidpoint = document.viewToImage({ 400, 300 });
    press(a);
    press(b);
    ASSERT_EQ(document.getTouches().size(), 2u);
    drag({ 204, 300 }, a); // spread 200 -> 296, midpoint 400 -> 352
    EXPECT_NEAR(document.getZoom(), 1.48f, 1e-5f);
    EXPECT_LT(document.imageToView(underMidpoint).getDistanceFrom({ 352.0f, 300.0f }), 0.02f);
    release({ 204, 300 }, a);
    EXPECT_TRUE(document.getTouches().empty());
}

TEST(SxToolGesture, PinchesOnlyWhileTheOwnerAllowsAndSnapsToSteps)
{
    juce::ScopedJuceInitialiser_GUI gui;
    for (const bool allowed : { false, true })
    {
        GenericAppDocument document(nullptr);
        document.setSize(800, 600);
        auto image = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(1600, 1200));
        document.setImage(image.get());
        document.setZoom(1.0f, false);
        SxTool tool("plain");
        SxToolSwitcher switcher(&document);
        switcher.setGestureTest([allowed] { return allowed; });
        switcher.adopt(tool);
        switcher.setCurrentTool(&tool);

        const juce::Point<float> a { 300, 300 }, b { 500, 300 };
        const auto underMidpoint = document.viewToImage({ 400, 300 });
        document.mouseDown(tooltest::mouseEvent(document, a));
        document.mouseDown(tooltest::mouseEvent(document, b));
        document.mouseDrag(tooltest::mouseEvent(document, { 204, 300 }, a));
        if (!allowed)
        {
            EXPECT_FLOAT_EQ(document.getZoom(), 1.0f);
            EXPECT_EQ(tool.getPinchCentre(), juce::Point<float>());
            continue;
        }
        // 1.48 lies within the snap of the 1.5 step; the view pans by the midpoint's move.
        EXPECT_FLOAT_EQ(document.getZoom(), 1.5f);
        EXPECT_LT(document.imageToView(underMidpoint).getDistanceFrom({ 352.0f, 300.0f }), 0.02f);
        EXPECT_EQ(tool.getPinchCentre(), juce::Point<float>(352, 300));
        document.mouseUp(tooltest::mouseEvent(document, { 204, 300 }, a));
        EXPECT_EQ(tool.getPinchCentre(), juce::Point<float>());
    }
}
