// The crop frame driven by hand-made mouse events over a picture placed at a known spot, with the
// expected frames worked out on paper.

#include "tools/ToolTestSupport.h"
#include "wizards/CropInsideComponent.h"

namespace
{
using tooltest::mouseEvent;
using P = juce::Point<float>;

class CropFrame : public ::testing::Test
{
protected:
    CropFrame()
    {
        frame.setBounds(0, 0, 800, 600);
        // A 400 x 300 picture shown at half size: 200 x 150 view pixels from (100, 50).
        frame.setImageBounds({ 100.0f, 50.0f, 200.0f, 150.0f });
    }
    void dragFrom(P from, P to)
    {
        frame.mouseDown(mouseEvent(frame, from));
        frame.mouseDrag(mouseEvent(frame, to, from));
        frame.mouseUp(mouseEvent(frame, to, from));
    }
    int modeAt(P p)
    {
        frame.mouseDown(mouseEvent(frame, p));
        const int mode = frame.getDragMode();
        frame.mouseUp(mouseEvent(frame, p));
        return mode;
    }

    juce::ScopedJuceInitialiser_GUI gui;
    CropInsideComponent frame;
    const juce::Rectangle<int> picture { 0, 0, 400, 300 };
};

TEST_F(CropFrame, PressesPickCornersInOrderThenInsideThenNothing)
{
    // The whole picture is framed at first: corners at (100,50), (300,50), (100,200), (300,200).
    EXPECT_EQ(modeAt({ 100.0f, 70.0f }), CropInsideComponent::dragTopLeft); // exactly 20 away
    EXPECT_EQ(modeAt({ 100.0f, 70.5f }), CropInsideComponent::dragInside);
    EXPECT_EQ(modeAt({ 288.0f, 66.0f }), CropInsideComponent::dragTopRight); // 12, 16: 20 away
    EXPECT_EQ(modeAt({ 110.0f, 190.0f }), CropInsideComponent::dragBottomLeft);
    EXPECT_EQ(modeAt({ 299.0f, 199.0f }), CropInsideComponent::dragBottomRight);
    EXPECT_EQ(modeAt({ 50.0f, 20.0f }), CropInsideComponent::dragNone);

    // A 20 x 20 frame: its centre is within reach of all four corners and top-left wins; a
    // press still in reach of top-left stays top-left however near another corner it is.
    frame.setCropRect({ 100, 100, 40, 40 }, picture); // view 150..170, 100..120
    EXPECT_EQ(modeAt({ 160.0f, 110.0f }), CropInsideComponent::dragTopLeft);
    EXPECT_EQ(modeAt({ 168.0f, 104.0f }), CropInsideComponent::dragTopLeft);
    EXPECT_EQ(modeAt({ 172.0f, 100.0f }), CropInsideComponent::dragTopRight);
}

TEST_F(CropFrame, CornerDragsClampToPictureAndKeepMinimumSide)
{
    // Past the picture's top-left: the corner stops at its edge.
    frame.setCropRect({ 100, 100, 200, 100 }, picture); // view 150..250, 100..150
    dragFrom({ 150.0f, 100.0f }, { 20.0f, 10.0f });
    EXPECT_EQ(frame.getViewCropRect(), juce::Rectangle<float>(100.0f, 50.0f, 150.0f, 100.0f));

    // Bottom-right pulled over the top-left: the sides stay 20 apart.
    dragFrom({ 250.0f, 150.0f }, { 0.0f, 0.0f });
    EXPECT_EQ(frame.getViewCropRect(), juce::Rectangle<float>(100.0f, 50.0f, 20.0f, 20.0f));
}

TEST_F(CropFrame, SquareHoldsThroughDragsAndGivesASquareCut)
{
    frame.setAspectMode(1);
    // The picture is wider than square, so the square fills 0.8 of its height: 120, centred.
    EXPECT_EQ(frame.getViewCropRect(), juce::Rectangle<float>(140.0f, 65.0f, 120.0f, 120.0f));

    for (auto target : { P { 290.0f, 120.0f }, P { 230.0f, 400.0f }, P { 400.0f, 400.0f } })
    {
        const auto r = frame.getViewCropRect();
        dragFrom(r.getBottomRight(), target);
        const auto after = frame.getViewCropRect();
        EXPECT_FLOAT_EQ(after.getWidth(), after.getHeight());
        EXPECT_EQ(after.getTopLeft(), r.getTopLeft()); // the opposite corner stays
        EXPECT_TRUE(frame.getImageBounds().contains(after));
        const auto cut = frame.getCropRect(picture);
        EXPECT_EQ(cut.getWidth(), cut.getHeight());
    }
}

TEST_F(CropFrame, MovingStopsAtThePictureEdge)
{
    frame.setCropRect({ 100, 100, 100, 100 }, picture); // view 150..200, 100..150
    dragFrom({ 175.0f, 125.0f }, { 500.0f, -300.0f });
    EXPECT_EQ(frame.getViewCropRect(), juce::Rectangle<float>(250.0f, 50.0f, 50.0f, 50.0f));
    EXPECT_EQ(frame.getCropRect(picture), juce::Rectangle<int>(300, 0, 100, 100));
}

TEST_F(CropFrame, PictureRectanglesRoundTripThroughTheViewAndAResize)
{
    const juce::Rectangle<int> cut { 37, 21, 151, 203 };
    frame.setCropRect(cut, picture);
    EXPECT_EQ(frame.getCropRect(picture), cut);
    // The view is resized and the picture shown at another scale: the frame follows it.
    frame.setImageBounds({ 10.0f, 20.0f, 320.0f, 240.0f });
    EXPECT_EQ(frame.getCropRect(picture), cut);
    // Out of the picture or empty: nothing changes.
    frame.setCropRect({}, picture);
    EXPECT_EQ(frame.getCropRect(picture), cut);
}
} // namespace
