#include "ui/SxSegmentController.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

struct RecordingCallback : SegmentControllerCallback
{
    int* watched = nullptr;
    std::vector<std::pair<SegmentController*, int>> calls;
    std::vector<int> fieldAtCall;
    void segmentChanged(SegmentController* controller, int index) override
    {
        calls.emplace_back(controller, index);
        fieldAtCall.push_back(watched != nullptr ? *watched : -99);
    }
};

const juce::StringArray detailTexts { "Sharp", "Soft", "Glow" };

void dispatch()
{
    juce::MessageManager::getInstance()->runDispatchLoopUntil(20);
}
} // namespace

TEST(SegmentController, AClickWritesTheFieldThenCallsBackOnce)
{
    juce::ScopedJuceInitialiser_GUI gui;
    int field = 0;
    RecordingCallback callback;
    callback.watched = &field;
    SxLabelSegmentController control("detailSizeSegment", "Detail Style", &field, detailTexts, {}, &callback);
    auto& row = control.getSegmentController();
    ASSERT_EQ(row.getNumSegments(), 3);
    EXPECT_EQ(row.getSelectedIndex(), 0);

    row.getButton(2)->triggerClick(); // as a mouse click: delivered by the message loop
    dispatch();
    EXPECT_EQ(field, 2);
    ASSERT_EQ(callback.calls.size(), 1u);
    EXPECT_EQ(callback.calls[0].first, &row);
    EXPECT_EQ(callback.calls[0].second, 2);
    EXPECT_EQ(callback.fieldAtCall[0], 2);
    EXPECT_EQ(row.getSelectedIndex(), 2);
    EXPECT_FALSE(row.getButton(0)->getToggleState()); // one segment on at a time

    // The chosen segment again: no change, no call.
    row.getButton(2)->triggerClick();
    dispatch();
    EXPECT_EQ(callback.calls.size(), 1u);

    // The synchronous path that a keyboard or accessibility action takes.
    row.getButton(1)->setToggleState(true, juce::sendNotificationSync);
    EXPECT_EQ(field, 1);
    ASSERT_EQ(callback.calls.size(), 2u);
    EXPECT_EQ(callback.calls[1].second, 1);
    EXPECT_EQ(row.getSelectedIndex(), 1);
}

TEST(SegmentController, UpdateShowsTheFieldWithoutCallingBack)
{
    juce::ScopedJuceInitialiser_GUI gui;
    int field = 1;
    RecordingCallback callback;
    SegmentController row("strokeStyleSegment", &field, { "Light", "Dark" }, {}, &callback);
    EXPECT_EQ(row.getSelectedIndex(), 1); // the field is read on construction
    field = 0;
    row.update();
    EXPECT_EQ(row.getSelectedIndex(), 0);
    field = 5; // a value from a damaged file: no segment is shown as chosen
    row.update();
    EXPECT_EQ(row.getSelectedIndex(), -1);
    EXPECT_TRUE(callback.calls.empty());
    EXPECT_EQ(field, 5);
}

TEST(SegmentController, LabelledRowSharesItsWidthAmongTheSegments)
{
    juce::ScopedJuceInitialiser_GUI gui;
    int field = 0;
    juce::Component panel;
    panel.setSize(243, 300);
    SxLabelSegmentController control("detailSizeSegment", "Detail Style", &field, detailTexts, {}, nullptr);
    panel.addAndMakeVisible(control);
    EXPECT_EQ(control.getBounds(), juce::Rectangle<int>(0, 0, 243, 53));
    auto& row = control.getSegmentController();
    EXPECT_EQ(row.getBounds(), juce::Rectangle<int>(8, 20, 243 - 8, 27));

    // The segments share the row's width exactly, differing by at most one pixel.
    int total = 0, narrowest = 1000, widest = 0;
    for (int i = 0; i < row.getNumSegments(); ++i)
    {
        const auto bounds = row.getButton(i)->getBounds();
        total += bounds.getWidth();
        narrowest = juce::jmin(narrowest, bounds.getWidth());
        widest = juce::jmax(widest, bounds.getWidth());
        if (i > 0)
            EXPECT_EQ(bounds.getX(), row.getButton(i - 1)->getRight());
    }
    EXPECT_EQ(total, row.getWidth());
    EXPECT_LE(widest - narrowest, 1);

    // Without a callback a click still writes the field.
    row.getButton(1)->setToggleState(true, juce::sendNotificationSync);
    EXPECT_EQ(field, 1);
}
