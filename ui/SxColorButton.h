#pragma once
// Choosing one colour: a chip that shows it and, when clicked, opens a picker beside itself. The
// pickers wrap JUCE's colour selector (a hue and saturation field, a brightness strip and, for
// the transparent picker, an alpha slider) so the program does not keep a colour field of its own.

#include "ui/SxComponent.h"

#include <juce_gui_extra/juce_gui_extra.h>

#include <functional>

/** The colour field the pickers share: tells onChange on every change. */
class SxColourSelectorBase : public SxComponent, private juce::ChangeListener
{
public:
    SxColourSelectorBase(const juce::String& name, int selectorFlags);
    ~SxColourSelectorBase() override;

    void setColour(juce::Colour colour);
    juce::Colour getColour() const { return selector.getCurrentColour(); }
    std::function<void(juce::Colour)> onChange;

    void resized() override;

private:
    void changeListenerCallback(juce::ChangeBroadcaster*) override;
    juce::ColourSelector selector;
};

/** An opaque colour. */
class SxColorPicker : public SxColourSelectorBase
{
public:
    SxColorPicker();
};

/** A colour with its opacity. */
class SxTransparentColorPicker : public SxColourSelectorBase
{
public:
    SxTransparentColorPicker();
};

/** The chip. Bound like the other controls: it writes the colour into its field (if any), then
    tells the callback and onColourChanged. */
class SxColorButton : public juce::Button, public SxUpdateComponent
{
public:
    SxColorButton(const juce::String& name, juce::Colour* field = nullptr, SxControlChangedCallback* callback = nullptr,
                  bool withAlpha = false);

    void setColour(juce::Colour colour, juce::NotificationType notification);
    juce::Colour getColour() const { return colour; }
    /** Re-reads the bound field. */
    void update() override;

    /** Whether a click opens the picker; a cell of a grid only selects. */
    void setOpensPicker(bool opens) { opensPicker = opens; }
    void setSelected(bool selected);
    bool isSelected() const { return selectedCell; }

    std::function<void(juce::Colour)> onColourChanged;

    void paintButton(juce::Graphics& g, bool highlighted, bool down) override;
    void clicked() override;

private:
    juce::Colour colour { juce::Colours::white };
    juce::Colour* field = nullptr;
    SxControlChangedCallback* callback = nullptr;
    bool withAlpha = false;
    bool opensPicker = true;
    bool selectedCell = false;
};
