#pragma once
// The program's message to the user: a dark rounded panel with a title, the message and "OK",
// or a row of answer buttons for a question.
// It never runs a modal loop: show() lays it over a component as a dimming overlay that takes
// the clicks and keys meant for what lies below, and the alert removes itself when dismissed.
// The render thread and the timers go on meanwhile.

#include "ui/SxComponent.h"
#include "ui/SxRoundRectangleButton.h"

#include <functional>
#include <memory>
#include <vector>

class SxAlertComponent : public SxComponent
{
public:
    SxAlertComponent(const juce::String& componentName, const juce::String& title, const juce::String& message);
    /** A question: one button per answer, the first one prominent and rightmost, the rest to its
        left in order. Return picks the first answer, Escape the last. With no answers it is the
        plain alert with "OK". */
    SxAlertComponent(const juce::String& componentName, const juce::String& title, const juce::String& message,
                     const juce::StringArray& answers);
    ~SxAlertComponent() override;

    /** Shows an alert centred over parent, replacing any alert shown there before; the alert owns
        itself from here on and is deleted after it closes. */
    static SxAlertComponent* show(juce::Component& parent, const juce::String& componentName, const juce::String& title,
                                  const juce::String& message);
    /** The alert shown over parent by show(), or null. */
    static SxAlertComponent* findIn(juce::Component& parent);
    /** Shows a question as show() shows an alert; onAnswer tells which button closed it. */
    static SxAlertComponent* ask(juce::Component& parent, const juce::String& componentName, const juce::String& title,
                                 const juce::String& message, const juce::StringArray& answers);

    /** Dismisses the alert, as OK, Return and Escape do: it leaves the screen at once, onClose
        runs, and an alert made by show() is deleted once the current event has been handled. */
    void close();
    /** Runs once when the alert is dismissed (not when it is replaced by another one). */
    std::function<void()> onClose;
    /** Runs once, after onClose, with the index of the answer that closed a question: the
        question is off the screen by then, so the answer may show the next dialog. */
    std::function<void(int)> onAnswer;
    /** Closes the alert as a click on answer index does. */
    void answer(int index);
    int getNumAnswers() const { return 1 + (int) extraButtons.size(); }
    /** The button of answer index; 0 is the OK button. */
    juce::Button* getAnswerButton(int index);

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
    void setUp();

    juce::String title, message;
    SxRoundRectangleButton okButton { "SxAlertOKButton", "OK" };
    std::vector<std::unique_ptr<SxRoundRectangleButton>> extraButtons;
    bool closed = false;
};
