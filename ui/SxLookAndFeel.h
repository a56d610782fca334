#pragma once
// The program's dark, calm look: one palette for every panel and widget, and the look and feel
// that the application sets as the default so JUCE's own widgets (tooltips, scroll bars, check
// boxes, text buttons) wear the same colours as ours.

#include <juce_gui_basics/juce_gui_basics.h>

/** The palette. The picture is the only colourful thing on screen, so the frame around it stays
    grey and one accent colour marks what is active (a slider's filled part, the chosen segment,
    a toggled tool). */
namespace SxColours
{
inline const juce::Colour window { 0xff1e1f22 };
inline const juce::Colour panel { 0xff26282c };
inline const juce::Colour control { 0xff303236 };     // resting fill of buttons and tracks
inline const juce::Colour controlHover { 0xff3a3d42 };
inline const juce::Colour outline { 0xff45484e };
inline const juce::Colour text { 0xfffafafa };
inline const juce::Colour dimText { 0xffa9abb0 };
inline const juce::Colour accent { 0xff4a9eea };
} // namespace SxColours

/** Drawing that several of our panels share, so they stay alike. */
namespace SxPaint
{
/** A rounded body with a hairline outline, the line half a pixel inside area so it stays crisp. */
void outlinedPanel(juce::Graphics& g, juce::Rectangle<int> area, juce::Colour fill, float corner);
/** A panel's title: bold, in the text colour, one line at the left of area. */
void panelTitle(juce::Graphics& g, const juce::String& title, juce::Rectangle<int> area);
} // namespace SxPaint

class SxMainLookAndFeel : public juce::LookAndFeel_V4
{
public:
    SxMainLookAndFeel();

    static juce::LookAndFeel_V4::ColourScheme colourScheme();

    void drawButtonBackground(juce::Graphics&, juce::Button&, const juce::Colour& backgroundColour,
                              bool highlighted, bool down) override;
    void drawTickBox(juce::Graphics&, juce::Component&, float x, float y, float w, float h, bool ticked, bool isEnabled,
                     bool highlighted, bool down) override;
    void drawScrollbar(juce::Graphics&, juce::ScrollBar&, int x, int y, int width, int height, bool vertical,
                       int thumbStart, int thumbSize, bool mouseOver, bool mouseDown) override;
    void drawTooltip(juce::Graphics&, const juce::String& text, int width, int height) override;
};
