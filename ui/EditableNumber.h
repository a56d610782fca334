#pragma once
// A slider's value as a small number that turns into a text field when clicked: Return or a
// click elsewhere gives the typed value back to the slider, read as the slider reads text (so
// "73%" on a 0 to 1 slider is 0.73); Escape leaves the value as it was.

#include "ui/SxComponent.h"
#include "ui/SxSlider.h"

class EditableNumber : public SxComponent, public juce::Button::Listener, public juce::TextEditor::Listener,
                       private juce::Value::Listener
{
public:
    EditableNumber(const juce::String& name, SxSliderBase& slider);
    ~EditableNumber() override;

    /** The number as shown, e.g. "50%". */
    juce::String getText() const { return display.getButtonText(); }
    bool isEditing() const { return editor.isVisible(); }
    /** Opens the text field over the number, with its text selected. */
    void startEditing();
    /** Closes the text field; with commit the typed value goes to the slider. */
    void finishEditing(bool commit);

    juce::TextEditor& getEditor() { return editor; }

    void buttonClicked(juce::Button*) override { startEditing(); }
    void textEditorReturnKeyPressed(juce::TextEditor&) override { finishEditing(true); }
    void textEditorEscapeKeyPressed(juce::TextEditor&) override { finishEditing(false); }
    void textEditorFocusLost(juce::TextEditor&) override { finishEditing(true); }
    void resized() override;

private:
    void valueChanged(juce::Value&) override { showValue(); }
    void showValue();

    SxSliderBase& slider;
    juce::TextButton display;
    juce::TextEditor editor;
};
