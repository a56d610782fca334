#include "ui/SxLayoutController.h"
#include "ui/SxLabelSliderPro.h"
#include "ui/SxSlider.h"
#include "ui/SxColorSliders.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

// Records each call with the field's value at that moment, to see that the field was written
// before the owner heard of the change.
struct RecordingCallback : SxControlChangedCallback
{
    float* watched = nullptr;
    std::vector<juce::Component*> controls;
    std::vector<float> fieldAtCall;
    void controlChanged(juce::Component* control) override
    {
        controls.push_back(control);
        fieldAtCall.push_back(watched != nullptr ? *watched : -1.0f);
    }
};

// A float field at one half, watched by the callback, as most owners bind their sliders.
class SliderBinding : public ::testing::Test
{
protected:
    SliderBinding() { callback.watched = &field; }
    juce::ScopedJuceInitialiser_GUI gui;
    float field = 0.5f;
    RecordingCallback callback;
};
using LabelSlider = SliderBinding;
using LabelSliderPro = SliderBinding;
using SliderComposites = SliderBinding;

} // namespace

TEST(SliderText, TypedTextReadsThroughTheRangeAndSuffix)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxSliderBase slider;
    struct Row
    {
        double low, high;
        const char* text;
        double value;
    };
    // Percent sliders read typed percentages as fractions; the suffix is optional, letters are
    // dropped, and text without digits is zero. Wide ranges read the number as it is.
    const Row rows[] = {
        { 0, 1, "73%", 0.73 },   { 0, 1, "  73 %  ", 0.73 }, { 0, 1, "73", 0.73 },  { 0, 1, "+5", 0.05 },
        { 0, 1, " + +5%", 0.05 }, { 0, 1, "-20%", -0.2 },    { 0, 1, "12.5%", 0.125 }, { 0, 1, "about 40 percent", 0.4 },
        { 0, 1, "none", 0.0 },   { 0, 1, "", 0.0 },          { 0, 1, "%", 0.0 },    { -1, 1, "-25%", -0.25 },
        { 0, 100, "42", 42.0 },  { 10, 250, "+120", 120.0 },
    };
    for (const auto& row : rows)
    {
        slider.setRange(row.low, row.high, 0.01);
        slider.setTextValueSuffix(row.high - row.low < 3 ? "%" : "");
        EXPECT_DOUBLE_EQ(slider.getValueFromText(row.text), row.value) << "\"" << row.text << "\" in " << row.low << ".." << row.high;
    }

    // A suffix outside ASCII is removed by code points, not bytes.
    SxSliderBase angle;
    angle.setRange(0.0, 360.0, 1.0);
    angle.setTextValueSuffix(juce::String::fromUTF8("\xc2\xb0"));
    EXPECT_DOUBLE_EQ(angle.getValueFromText(juce::String::fromUTF8("45\xc2\xb0")), 45.0);
    EXPECT_EQ(angle.getTextFromValue(45.4), juce::String::fromUTF8("45\xc2\xb0"));
}

TEST(SliderText, ShownValuesAreWholeNumbersWithHalvesRoundedToEven)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxSliderBase slider;
    struct Row
    {
        double low, high, value;
        const char* text;
    };
    // Exactly representable halves (12.5, 37.5, 62.5, 87.5, 2.5, 3.5) go to the even neighbour;
    // ranges of 3 and more are not shown in percent.
    const Row rows[] = {
        { 0, 1, 0.731, "73%" },  { 0, 1, 0.736, "74%" },  { 0, 1, 0.125, "12%" },  { 0, 1, 0.375, "38%" },
        { 0, 1, 0.625, "62%" },  { 0, 1, 0.875, "88%" },  { 0, 1, -0.004, "0%" },  { 0, 1, -0.5, "-50%" },
        { -1, 1, -0.25, "-25%" }, { 0, 100, 42, "42" },  { 0, 100, 2.5, "2" },    { 0, 100, 3.5, "4" },
        { 10, 250, 120, "120" }, { 0, 3, 2, "2" },
    };
    for (const auto& row : rows)
    {
        slider.setRange(row.low, row.high, 0.01);
        slider.setTextValueSuffix(row.high - row.low < 3 ? "%" : ""); // as the owners of wide sliders do
        EXPECT_EQ(slider.getTextFromValue(row.value), row.text) << row.value << " in " << row.low << ".." << row.high;
    }

    // Every step of a percent slider round-trips through its text.
    slider.setRange(0.0, 1.0, 0.01);
    slider.setTextValueSuffix("%");
    for (int i = 0; i <= 100; ++i)
    {
        const auto text = slider.getTextFromValue(i * 0.01);
        EXPECT_EQ(text, juce::String(i) + "%") << "step " << i;
        const double back = slider.getValueFromText(text);
        EXPECT_NEAR(back, i * 0.01, 1e-12) << "step " << i;
        EXPECT_EQ(slider.getTextFromValue(back), text) << "step " << i;
    }
}

TEST_F(SliderBinding, AChangeWritesTheFloatFieldThenCallsBackOnce)
{
    SxLabelSlider control("strokeLengthSlider", "Taper Length", &field, &callback);
    EXPECT_EQ(control.getSlider()->getValue(), 0.5);

    control.getSlider()->setValue(0.3, juce::sendNotificationSync);
    EXPECT_FLOAT_EQ(field, 0.3f);
    ASSERT_EQ(callback.controls.size(), 1u);
    EXPECT_EQ(callback.controls[0], &control);
    EXPECT_FLOAT_EQ(callback.fieldAtCall[0], 0.3f);
    EXPECT_EQ(control.getValueText(), "30%");

    // Steps of 0.01: a drag to 0.334 lands on 0.33.
    control.getSlider()->setValue(0.334, juce::sendNotificationSync);
    EXPECT_FLOAT_EQ(field, 0.33f);
    EXPECT_EQ(callback.controls.size(), 2u);

    // Setting the value it already has is no change.
    control.getSlider()->setValue(0.33, juce::sendNotificationSync);
    EXPECT_EQ(callback.controls.size(), 2u);

    // update() shows the field without calling back; so does, once the message loop has run,
    // a value set on the slider directly without notification.
    field = 0.8f;
    control.update();
    EXPECT_NEAR(control.getSlider()->getValue(), 0.8, 1e-6);
    EXPECT_EQ(control.getValueText(), "80%");
    control.getSlider()->setValue(0.25, juce::dontSendNotification);
    juce::MessageManager::getInstance()->runDispatchLoopUntil(20);
    EXPECT_EQ(control.getValueText(), "25%");
    EXPECT_EQ(callback.controls.size(), 2u);
}

TEST_F(SliderBinding, TypingIntoTheValueTextSetsTheFieldThroughTheTextRules)
{
    SxLabelSlider control("colorizeSlider", "Colorize Detail", &field, &callback);
    auto& value = control.getValueLabel();
    const auto type = [&value](const juce::String& text) {
        value.showEditor();
        ASSERT_NE(value.getCurrentTextEditor(), nullptr);
        value.getCurrentTextEditor()->setText(text, false);
        value.hideEditor(false);
    };

    type("73%");
    EXPECT_FLOAT_EQ(field, 0.73f);
    ASSERT_EQ(callback.controls.size(), 1u);
    EXPECT_FLOAT_EQ(callback.fieldAtCall[0], 0.73f);
    EXPECT_EQ(control.getValueText(), "73%");

    // Beyond the range the slider clamps; the text shows where it went.
    type("+250");
    EXPECT_FLOAT_EQ(field, 1.0f);
    EXPECT_EQ(control.getValueText(), "100%");
    EXPECT_EQ(callback.controls.size(), 2u);

    // No digits: zero.
    type("much");
    EXPECT_FLOAT_EQ(field, 0.0f);
    EXPECT_EQ(control.getValueText(), "0%");
}

TEST_F(SliderBinding, AByteFieldTakesTheWholeNumber)
{
    std::uint8_t byte = 0;
    SxSlider control("opacity", &byte, &callback);
    control.getSlider()->setRange(0.0, 255.0, 1.0);
    control.getSlider()->setValue(200.0, juce::sendNotificationSync);
    EXPECT_EQ(byte, 200);
    control.getSlider()->setValue(77.6, juce::sendNotificationSync); // the step makes it 78
    EXPECT_EQ(byte, 78);
    byte = 17;
    control.update();
    EXPECT_EQ(control.getSlider()->getValue(), 17.0);
    EXPECT_EQ(callback.controls.size(), 2u);
}

TEST_F(SliderBinding, DoubleClickReturnsToTheOwnersValue)
{
    field = 0.9f;
    SxSlider control("contrastSlider", &field, &callback);
    control.setSize(200, 20);
    control.update();
    control.setDoubleClickReturnValue(0.5);

    auto& slider = *control.getSlider();
    const juce::MouseEvent click(juce::Desktop::getInstance().getMainMouseSource(), { 10.0f, 10.0f }, {}, 0.0f, 0.0f, 0.0f,
                                 0.0f, 0.0f, &slider, &slider, juce::Time::getCurrentTime(), { 10.0f, 10.0f },
                                 juce::Time::getCurrentTime(), 2, false);
    slider.mouseDoubleClick(click);
    EXPECT_FLOAT_EQ(field, 0.5f);
    ASSERT_EQ(callback.controls.size(), 1u);
    EXPECT_FLOAT_EQ(callback.fieldAtCall[0], 0.5f);
}

TEST_F(LabelSlider, StacksInAColumnAndALongerNamePushesTheSliderRight)
{
    float lighten = 0.2f, contrast = 0.7f;
    SxLabelSlider first("lightenSlider", "Lighten", &lighten, &callback);
    SxLabelSlider second("contrastSlider", "Contrast", &contrast, &callback);

    SxLayoutComponent column;
    column.setSize(256, 400);
    column.createColumn(0, 4);
    column.addRow(&first);
    column.addRow(&second);
    second.setForm(SxLabelSlider::Form::compact);
    column.relayout();
    // The rows take their heights from their own bounds strings and span the column.
    EXPECT_EQ(first.getHeight(), 44);
    EXPECT_EQ(second.getY(), 44 + 4);
    EXPECT_EQ(second.getHeight(), 34);
    EXPECT_EQ(column.getColumnHeight(), 44 + 4 + 34);
    const int width = first.getWidth();
    EXPECT_GT(width, 200);
    EXPECT_EQ(first.getSlider()->getBounds(), juce::Rectangle<int>(5, 10, width - 5, 34));

    // With the name at the left, the slider starts after the name and ends at the right edge;
    // a longer name pushes it further right.
    second.setForm(SxLabelSlider::Form::labelLeft);
    const int shortStart = second.getSlider()->getX();
    EXPECT_GT(shortStart, 5);
    EXPECT_EQ(second.getSlider()->getRight(), second.getWidth());
    second.setLabelText("Contrast and more");
    EXPECT_GT(second.getSlider()->getX(), shortStart);
    EXPECT_TRUE(callback.controls.empty());
}

TEST_F(LabelSliderPro, TheNumberEditsThroughTheTextRulesAndFollowsTheSlider)
{
    SxLabelSliderPro control("detailSlider", "Detail", &field, &callback);
    control.setSize(220, SxLabelSliderPro::rowHeight);
    auto& number = control.getNumber();
    EXPECT_EQ(number.getText(), "50%");
    const auto type = [&number](const juce::String& text, bool commit) {
        number.startEditing();
        ASSERT_TRUE(number.isEditing());
        number.getEditor().setText(text, false);
        number.finishEditing(commit);
    };

    type("73%", true);
    EXPECT_FLOAT_EQ(field, 0.73f);
    ASSERT_EQ(callback.controls.size(), 1u);
    EXPECT_FLOAT_EQ(callback.fieldAtCall[0], 0.73f);
    EXPECT_EQ(number.getText(), "73%");
    EXPECT_FALSE(number.isEditing());

    // Escape (no commit) leaves everything as it was.
    type("10", false);
    EXPECT_FLOAT_EQ(field, 0.73f);
    EXPECT_EQ(callback.controls.size(), 1u);
    EXPECT_EQ(number.getText(), "73%");

    type("+5", true);
    EXPECT_FLOAT_EQ(field, 0.05f);

    // A value set from elsewhere (a preset, undo) shows without calling back.
    field = 0.2f;
    control.update();
    juce::MessageManager::getInstance()->runDispatchLoopUntil(50);
    EXPECT_EQ(number.getText(), "20%");
    EXPECT_EQ(callback.controls.size(), 2u);
}

TEST_F(SliderComposites, EachSliderWritesItsOwnFieldAndSignedTextReads)
{
    float a = 0.1f, b = 0.2f, c = 0.3f, tilt = 0.0f;
    juce::Colour tint = juce::Colours::red;
    SxLabelThreeSliders three("rgb", "Red", "Green", "Blue", &a, &b, &c, &callback);
    juce::Component panel;
    panel.setSize(300, 100);
    panel.addAndMakeVisible(three);
    ASSERT_EQ(three.getNumSliders(), 3);
    EXPECT_FLOAT_EQ((float) three.getSlider(2).getValue(), 0.3f);
    three.getSlider(1).setValue(0.75, juce::sendNotificationSync);
    EXPECT_FLOAT_EQ(b, 0.75f);
    EXPECT_FLOAT_EQ(a, 0.1f);
    EXPECT_FLOAT_EQ(c, 0.3f);
    EXPECT_EQ(callback.controls, std::vector<juce::Component*> { &three });
    // The three share the row left to right, each label over its own slider.
    EXPECT_LT(three.getSlider(0).getRight(), three.getSlider(1).getX());
    EXPECT_LT(three.getSlider(1).getRight(), three.getSlider(2).getX());
    EXPECT_LE(three.getSlider(2).getRight(), 300);
    EXPECT_EQ(three.getLabel(1).getX(), three.getSlider(1).getX() - 5);

    SxNegativeToOneLabelSlider signedSlider("tilt", "Tilt", &tilt, &callback);
    EXPECT_EQ(signedSlider.getValueText(), "0%");
    signedSlider.getSlider()->setValue(signedSlider.getSlider()->getValueFromText("-40%"), juce::sendNotificationSync);
    EXPECT_FLOAT_EQ(tilt, -0.4f);

    SxColorChipSelectionSlider chipSlider("tint", &a, &tint, &callback);
    chipSlider.getChip().setColour(juce::Colours::blue, juce::sendNotification);
    EXPECT_EQ(tint, juce::Colours::blue);
    EXPECT_EQ(callback.controls.back(), &chipSlider.getChip());
}
