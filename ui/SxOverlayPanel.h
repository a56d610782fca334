#pragma once
// A small panel over a component that takes the input until it is answered (a name to type, a
// few settings): it runs no modal loop of its own, so renders and timers go on; while it shows it
// is the window's modal component, Return accepts, Escape cancels, and it removes and deletes
// itself once answered.

#include "ui/SxComponent.h"

class SxOverlayPanel : public SxComponent
{
public:
    /** Closes the panel without acting (Escape, "Cancel"); nothing happens after the first answer. */
    void cancel();

    bool keyPressed(const juce::KeyPress& key) override;
    void paint(juce::Graphics& g) override;

protected:
    SxOverlayPanel(const juce::String& componentName, const juce::String& title);

    /** Puts the panel centred over parent, makes it the modal component and gives the keyboard
        focus to focusTarget. */
    void present(juce::Component& parent, int width, int height, juce::Component& focusTarget);

    /** Return and the panel's main button. */
    virtual void accept() = 0;

    /** Takes the panel away; it is deleted once the current message (perhaps a click on one of
        its own buttons) is done. */
    void finish();
    bool isFinished() const { return finished; }

private:
    const juce::String title;
    bool finished = false;
};
