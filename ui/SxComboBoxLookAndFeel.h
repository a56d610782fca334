#pragma once
// The look of the program's drop-down lists: a flat box in the control colour with a thin chevron,
// and a menu in the panel colour whose highlighted item wears the accent. One instance serves
// every combo box, as the slider look does.

#include <juce_gui_basics/juce_gui_basics.h>

class SxComboBoxLookAndFeel : public juce::LookAndFeel_V4
{
public:
    SxComboBoxLookAndFeel();

    /** Made on first use and never deleted, for the reason SxSliderLookAndFeel::shared() gives. */
    static SxComboBoxLookAndFeel& shared();

    void drawComboBox(juce::Graphics&, int width, int height, bool isButtonDown, int buttonX, int buttonY, int buttonW,
                      int buttonH, juce::ComboBox&) override;
    juce::Font getComboBoxFont(juce::ComboBox&) override;
    void positionComboBoxText(juce::ComboBox&, juce::Label&) override;
    juce::Font getPopupMenuFont() override { return juce::Font(13.0f); }

    /** Width of the strip at the right of the box that holds the chevron. */
    static constexpr int arrowZoneWidth = 20;
};
