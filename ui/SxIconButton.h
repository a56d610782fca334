#pragma once
// A tool-bar button that shows one of the program's icons. It serves as a plain button, as a
// toggle (the pan tool stays on while chosen) and as a press-and-hold button (the original is
// shown while it is held: the owner watches buttonStateChanged and asks isDown()).

#include "ui/SxIcons.h"

#include <juce_gui_basics/juce_gui_basics.h>

class SxIconButton : public juce::Button
{
public:
    SxIconButton(const juce::String& componentName, SxIcons::Kind kind);

    void setIcon(SxIcons::Kind kind);
    SxIcons::Kind getIcon() const { return kind; }

    /** Share of the button's smaller side that the icon takes. */
    void setIconScale(float scale);

    void paintButton(juce::Graphics&, bool highlighted, bool down) override;

private:
    SxIcons::Kind kind;
    juce::Path icon; // in the unit square, fitted at paint time
    float iconScale = 0.6f;
};
