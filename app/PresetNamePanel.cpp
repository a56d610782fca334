#include "app/PresetNamePanel.h"

PresetNamePanel* PresetNamePanel::show(juce::Component& parent, const juce::String& suggestedName,
                                       std::function<void(const juce::String&)> done)
{
    auto* panel = new PresetNamePanel(suggestedName, std::move(done));
    panel->present(parent, 340, 124, panel->nameEditor);
    return panel;
}

PresetNamePanel::PresetNamePanel(const juce::String& suggestedName, std::function<void(const juce::String&)> done)
    : SxOverlayPanel("presetNamePanel", "Save Preset"), onSave(std::move(done))
{
    nameEditor.setText(suggestedName, false);
    nameEditor.selectAll();
    nameEditor.setInputRestrictions(64);
    nameEditor.addListener(this);
    nameEditor.setFont(juce::Font(14.0f));
    addAndMakeVisible(nameEditor);
    saveButton.setProminent(true);
    saveButton.setFontHeight(13.0f);
    saveButton.onClick = [this] { save(); };
    cancelButton.setFontHeight(13.0f);
    cancelButton.onClick = [this] { cancel(); };
    addAndMakeVisible(saveButton);
    addAndMakeVisible(cancelButton);
    textEditorTextChanged(nameEditor);
}

void PresetNamePanel::textEditorTextChanged(juce::TextEditor&)
{
    saveButton.setEnabled(nameEditor.getText().trim().isNotEmpty());
}

void PresetNamePanel::save()
{
    const auto name = nameEditor.getText().trim();
    if (isFinished() || name.isEmpty())
        return;
    const auto callback = onSave;
    finish();
    if (callback)
        callback(name);
}

void PresetNamePanel::resized()
{
    nameEditor.setBounds(16, 42, getWidth() - 32, 26);
    saveButton.setBounds(getWidth() - 16 - 84, getHeight() - 14 - 26, 84, 26);
    cancelButton.setBounds(saveButton.getX() - 8 - 84, saveButton.getY(), 84, 26);
}
