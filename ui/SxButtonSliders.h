#pragma once
// The slider rows with a button at the right end, where a value comes with a switch (a strength
// and whether it applies in black and white). A button bound to a bool field toggles it, writes
// the field and tells the owner, as the slider does; one without a field only tells the owner.

#include "ui/SxSlider.h"

#include <memory>

class SxLabelSliderButton : public SxLabelSlider, private juce::Button::Listener
{
public:
    SxLabelSliderButton(const juce::String& name, const juce::String& labelText, float* field, const juce::String& buttonText,
                        bool* buttonField, SxControlChangedCallback* callback);
    ~SxLabelSliderButton() override;

    juce::Button& getButton() { return *button; }
    void update() override;

protected:
    SxLabelSliderButton(const juce::String& name, const juce::String& labelText, float* field, std::unique_ptr<juce::Button> button,
                        bool* buttonField, SxControlChangedCallback* callback);

private:
    void buttonClicked(juce::Button*) override;

    std::unique_ptr<juce::Button> button;
    bool* buttonField = nullptr;
};

/** The switch is a half black, half white disc: the value applies in grey when it is on. */
class SxBlackAndWhiteButtonSlider : public SxLabelSliderButton
{
public:
    SxBlackAndWhiteButtonSlider(const juce::String& name, const juce::String& labelText, float* field, bool* blackAndWhiteField,
                                SxControlChangedCallback* callback);
};
