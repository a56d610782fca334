#pragma once
// The program's message to the user: a dark rounded panel with a title, the message and "OK".
// It never runs a modal loop: show() lays it over a component as a dimming overlay that takes
// the clicks and keys meant for what lies below, and the alert removes itself when dismissed.
// The render thread and the timers go on meanwhile.

#include "ui/SxComponent.h"
#include "ui/SxRoundRectangleButton.h"

#include <functional>

class SxAlertComponent : public SxComponent
{
public:
    SxAlertComponent(const juce::String& componentName, const juce::String& title, const juce::String& message);
    ~SxAlertComponent() override;

    /** Shows an alert centred over parent, replacing any alert shown there before; the alert owns
        itself from here on and is deleted after it closes. */
    static SxAlertComponent* show(juce::Component& parent, const juce::String& componentName, const juce::String& title,
                                  const juce::String& message);
    /** The alert shown over parent by show(), or null. */
    static SxAlertComponent* findIn(juce::Component& parent);

    /** Dismisses the alert, as OK, Return and Escape do: it leaves the screen at once, onClose
        runs, and an alert made by show() is deleted once the current event has been handled. */
    void close();
    /** Runs once when the alert is dismissed (not when it is replaced by another one). */
    std::function<void()> onClose;

    const juce::String& getTitle() const { return title; }
    const juce::String& getMessage() const { return message; }
    juce::Button& getOKButton() { return okButton; }

    /** Height the panel needs for its message at the given width. */
    int getPreferredHeight(int width) const;
    static constexpr int preferredWidth = 400;

    bool keyPressed(const juce::KeyPress&) override;
    void paint(juce::Graphics&) override;
    void resized() override;

private:
    juce::TextLayout layoutMessage(float width) const;

    juce::String title, message;
    SxRoundRectangleButton okButton { "SxAlertOKButton", "OK" };
    bool closed = false;
};
