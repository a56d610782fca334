#pragma once
// The program's preferences: the largest picture it agrees to open, and a way to write the
// built-in presets back after the user deleted some. A panel over the window: Return applies,
// Escape cancels.

#include "ui/SxOverlayPanel.h"
#include "ui/SxRoundRectangleButton.h"

#include <functional>

class PreferencesPanel : public SxOverlayPanel, private juce::TextEditor::Listener
{
public:
    struct Actions
    {
        /** Runs with the accepted limit, in megapixels, when "OK" is pressed. */
        std::function<void(double)> setMaximumMegapixels;
        /** Writes the built-in presets again and refreshes the strip; false when it failed. */
        std::function<bool()> rebuildDefaultPresets;
    };

    /** Shows the panel centred over parent with the limit now in force. The panel owns itself. */
    static PreferencesPanel* show(juce::Component& parent, double currentMegapixels, Actions actions);

    /** The panel showing over parent, if any. */
    static PreferencesPanel* findIn(juce::Component& parent);

    /** The limit the field holds, or 0 when it holds no acceptable number (1 to 4295: a side
        of a picture is at most 65535 pixels). */
    double enteredMegapixels() const;

    juce::TextEditor& getMegapixelEditor() { return megapixelEditor; }
    juce::Button& getOkButton() { return okButton; }
    juce::Button& getRebuildButton() { return rebuildButton; }

    void apply();
    void resized() override;

private:
    PreferencesPanel(double currentMegapixels, Actions actions);
    void accept() override { apply(); }
    void textEditorReturnKeyPressed(juce::TextEditor&) override { apply(); }
    void textEditorEscapeKeyPressed(juce::TextEditor&) override { cancel(); }
    void textEditorTextChanged(juce::TextEditor&) override;
    void rebuild();

    juce::Label megapixelLabel { "maxMegapixelsLabel", "Largest picture to open (megapixels)" };
    juce::TextEditor megapixelEditor { "maxMegapixelsEditor" };
    juce::Label rebuildStatus { "rebuildStatusLabel", {} };
    SxRoundRectangleButton rebuildButton { "rebuildButton", "Rebuild Default Presets" };
    SxRoundRectangleButton okButton { "preferencesOkButton", "OK" };
    SxRoundRectangleButton cancelButton { "preferencesCancelButton", "Cancel" };
    Actions actions;
};
