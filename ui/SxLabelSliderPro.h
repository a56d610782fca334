#pragma once
// The slider row of the denser panels: the name on the left above the slider and the value as an
// EditableNumber at the right end, 34 pixels high, so an exact number is one click away.

#include "ui/EditableNumber.h"

#include <memory>

class SxLabelSliderPro : public SxSlider
{
public:
    SxLabelSliderPro(const juce::String& componentName, const juce::String& labelText, float* field,
                     SxControlChangedCallback* callback);
    SxLabelSliderPro(const juce::String& componentName, const juce::String& labelText, std::uint8_t* field,
                     SxControlChangedCallback* callback);

    juce::Label& getLabel() { return label; }
    EditableNumber& getNumber() { return *number; }
    void setTooltip(const juce::String& text) override;

    static constexpr int rowHeight = 34;

private:
    void init(const juce::String& labelText);

    juce::Label label { "SxLabelSliderProLabel" };
    std::unique_ptr<EditableNumber> number;
};
