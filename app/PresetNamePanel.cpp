#include "app/PresetNamePanel.h"

#include "ui/SxLookAndFeel.h"

PresetNamePanel* PresetNamePanel::show(juce::Component& parent, const juce::String& suggestedName,
                                       std::function<void(const juce::String&)> done)
{
    auto* panel = new PresetNamePanel(suggestedName, std::move(done));
    parent.addAndMakeVisible(panel);
    panel->setBoundsString("(parent.width / 2) - 170, (parent.height / 2) - 62, left + 340, top + 124");
    panel->toFront(false);
    panel->enterModalState(false);
    if (panel->isShowing())
        panel->nameEditor.grabKeyboardFocus();
    return panel;
}

PresetNamePanel::PresetNamePanel(const juce::String& suggestedName, std::function<void(const juce::String&)> done)
    : SxComponent("presetNamePanel"), onSave(std::move(done))
{
    setWantsKeyboardFocus(true);
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
    if (finished || name.isEmpty())
        return;
    const auto callback = onSave;
    finish();
    if (callback)
        callback(name);
}

void PresetNamePanel::cancel()
{
    if (!finished)
        finish();
}

void PresetNamePanel::finish()
{
    finished = true;
    exitModalState(0);
    setVisible(false);
    if (auto* parent = getParentComponent())
    {
        parent->removeChildComponent(this);
        // Shortcuts work again at once.
        if (parent->isShowing())
            parent->grabKeyboardFocus();
    }
    // This may run inside a click on one of its own buttons.
    auto* self = this;
    juce::MessageManager::callAsync([self] { delete self; });
}

bool PresetNamePanel::keyPressed(const juce::KeyPress& key)
{
    if (key == juce::KeyPress::returnKey)
        save();
    else if (key == juce::KeyPress::escapeKey)
        cancel();
    return true;
}

void PresetNamePanel::paint(juce::Graphics& g)
{
    SxPaint::outlinedPanel(g, getLocalBounds(), SxColours::panel, 8.0f);
    SxPaint::panelTitle(g, "Save Preset", { 16, 12, getWidth() - 32, 20 });
}

void PresetNamePanel::resized()
{
    nameEditor.setBounds(16, 42, getWidth() - 32, 26);
    saveButton.setBounds(getWidth() - 16 - 84, getHeight() - 14 - 26, 84, 26);
    cancelButton.setBounds(saveButton.getX() - 8 - 84, saveButton.getY(), 84, 26);
}
