#include "ui/SxLabelSliderPro.h"

SxLabelSliderPro::SxLabelSliderPro(const juce::String& componentName, const juce::String& labelText, float* field,
                                   SxControlChangedCallback* callbackToUse)
    : SxSlider(componentName, field, callbackToUse)
{
    init(labelText);
}

SxLabelSliderPro::SxLabelSliderPro(const juce::String& componentName, const juce::String& labelText, std::uint8_t* field,
                                   SxControlChangedCallback* callbackToUse)
    : SxSlider(componentName, field, callbackToUse)
{
    init(labelText);
}

void SxLabelSliderPro::init(const juce::String& labelText)
{
    slider.setTextValueSuffix("%");
    label.setText(labelText, juce::dontSendNotification);
    label.setFont(juce::Font(12.0f));
    label.setColour(juce::Label::textColourId, juce::Colour(0xFFFAFAFA));
    label.setJustificationType(juce::Justification::topLeft);
    label.setBorderSize({ 4, 0, 0, 0 });
    label.setInterceptsMouseClicks(false, false);
    addAndMakeVisible(label);
    number = std::make_unique<EditableNumber>("EditableNumber", slider);
    addAndMakeVisible(*number);
    setSize(200, rowHeight);
    setBoundsString("0, 0, left + parent.width, top + 34");
    SxComponent::place(label, "0, -4, parent.width - 41, top + 34");
    SxComponent::place(*number, "parent.width - 1 - 36, 2, left + 36, top + 18");
    // Below the name, clear of the number.
    SxComponent::place(slider, "5, 14, left + parent.width - 5 - 41, top + 20");
    label.toBack();
}

void SxLabelSliderPro::setTooltip(const juce::String& text)
{
    SxSlider::setTooltip(text);
    label.setTooltip(text);
}
