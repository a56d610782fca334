#include "ToolTestSupport.h"

#include "tools/SxTouchList.h"

TEST(SxTouchList, ReleasesRemoveByIndexAndDragsReplaceInPlace)
{
    juce::ScopedJuceInitialiser_GUI gui;
    juce::Component component;
    auto at = [&](float x, float y) { return tooltest::mouseEvent(component, { x, y }); };
    SxTouchList touches;

    touches.pressed(at(10, 10), 3);
    touches.pressed(at(50, 50), 1);
    touches.pressed(at(90, 90), 2);
    touches.dragged(at(55, 60), 1);
    touches.dragged(at(1, 1), 7); // not held: ignored
    EXPECT_EQ(touches.sourceIndices(), std::vector<int>({ 3, 1, 2 }));
    EXPECT_EQ(touches.events()[1].position, juce::Point<float>(55, 60));

    // A finger lifted out of order leaves the others held, in their order.
    touches.released(1);
    EXPECT_EQ(touches.sourceIndices(), std::vector<int>({ 3, 2 }));
    EXPECT_EQ(touches.events()[1].position, juce::Point<float>(90, 90));
    touches.released(3);
    EXPECT_EQ(touches.sourceIndices(), std::vector<int>({ 2 }));
    // The last entry goes with any release; further releases are harmless.
    touches.released(0);
    touches.released(0);
    EXPECT_EQ(touches.size(), 0u);

    // Several entries of one source go together.
    touches.pressed(at(1, 1), 0);
    touches.pressed(at(2, 2), 0);
    touches.pressed(at(3, 3), 1);
    touches.released(0);
    EXPECT_EQ(touches.sourceIndices(), std::vector<int>({ 1 }));
}
