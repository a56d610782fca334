#pragma once
// A small text button with a rounded outline, for actions inside a panel ("Fill", "Clear",
// "Invert", "Render", an alert's "OK"): lighter than a filled button, so a row of them does not
// outweigh the sliders around it.

#include <juce_gui_basics/juce_gui_basics.h>

class SxRoundRectangleButton : public juce::Button
{
public:
    SxRoundRectangleButton(const juce::String& componentName, const juce::String& text);

    /** A filled accent button, for the one action a panel leads to (an alert's OK, "Render"). */
    void setProminent(bool shouldBeProminent);
    bool isProminent() const { return prominent; }

    void setFontHeight(float height);
    /** Width that fits the text with the button's margins. */
    int getIdealWidth() const;

    void paintButton(juce::Graphics&, bool highlighted, bool down) override;

private:
    bool prominent = false;
    float fontHeight = 12.0f;
};
