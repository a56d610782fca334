#pragma once
// The look of the main window's frame: the dark scheme of the program, so the title bar and
// border match the picture's surroundings instead of JUCE's default blue.

#include <juce_gui_basics/juce_gui_basics.h>

class SxMainWindowLookAndFeel : public juce::LookAndFeel_V4
{
public:
    SxMainWindowLookAndFeel() : juce::LookAndFeel_V4(juce::LookAndFeel_V4::getDarkColourScheme())
    {
        setColour(juce::ResizableWindow::backgroundColourId, backgroundColour());
        setColour(juce::DocumentWindow::textColourId, juce::Colour(0xffd8d8d8));
    }

    static juce::Colour backgroundColour() { return juce::Colour(0xff202124); }
};
