#pragma once
// Asks for the name of a new preset: a small panel over the window with a text field, "Save"
// and "Cancel". While it shows, clicks and shortcuts elsewhere wait; Return saves, Escape cancels.

#include "ui/SxOverlayPanel.h"
#include "ui/SxRoundRectangleButton.h"

#include <functional>

class PresetNamePanel : public SxOverlayPanel, private juce::TextEditor::Listener
{
public:
    /** Shows the panel centred over parent; done runs with the trimmed name on "Save" (never with
        an empty one). The panel owns itself. */
    static PresetNamePanel* show(juce::Component& parent, const juce::String& suggestedName,
                                 std::function<void(const juce::String&)> done);

    juce::TextEditor& getNameEditor() { return nameEditor; }
    juce::Button& getSaveButton() { return saveButton; }
    juce::Button& getCancelButton() { return cancelButton; }

    void save();
    void resized() override;

private:
    PresetNamePanel(const juce::String& suggestedName, std::function<void(const juce::String&)> done);
    void accept() override { save(); }
    void textEditorReturnKeyPressed(juce::TextEditor&) override { save(); }
    void textEditorEscapeKeyPressed(juce::TextEditor&) override { cancel(); }
    void textEditorTextChanged(juce::TextEditor&) override;

    juce::TextEditor nameEditor { "presetNameEditor" };
    SxRoundRectangleButton saveButton { "presetNameSaveButton", "Save" };
    SxRoundRectangleButton cancelButton { "presetNameCancelButton", "Cancel" };
    std::function<void(const juce::String&)> onSave;
};
