#include "wizards/PreferencesPanel.h"

#include "ui/SxLookAndFeel.h"

namespace
{
// 65535 x 65535, the largest picture any reader makes, is 4294.8 megapixels.
constexpr double largestLimit = 4295.0;
} // namespace

PreferencesPanel* PreferencesPanel::show(juce::Component& parent, double currentMegapixels, Actions actions)
{
    auto* panel = new PreferencesPanel(currentMegapixels, std::move(actions));
    panel->present(parent, 380, 180, panel->megapixelEditor);
    return panel;
}

PreferencesPanel* PreferencesPanel::findIn(juce::Component& parent)
{
    for (auto* child : parent.getChildren())
        if (auto* panel = dynamic_cast<PreferencesPanel*>(child))
            return panel;
    return nullptr;
}

PreferencesPanel::PreferencesPanel(double currentMegapixels, Actions actionsToUse)
    : SxOverlayPanel("preferencesPanel", "Preferences"), actions(std::move(actionsToUse))
{
    for (auto* label : { &megapixelLabel, &rebuildStatus })
    {
        label->setFont(juce::Font(13.0f));
        label->setColour(juce::Label::textColourId, SxColours::text);
        addAndMakeVisible(*label);
    }
    megapixelEditor.setText(juce::String(currentMegapixels, 0), false);
    megapixelEditor.selectAll();
    megapixelEditor.setInputRestrictions(8, "0123456789.");
    megapixelEditor.setFont(juce::Font(14.0f));
    megapixelEditor.addListener(this);
    addAndMakeVisible(megapixelEditor);

    rebuildButton.setFontHeight(13.0f);
    rebuildButton.onClick = [this] { rebuild(); };
    okButton.setProminent(true);
    okButton.setFontHeight(13.0f);
    okButton.onClick = [this] { apply(); };
    cancelButton.setFontHeight(13.0f);
    cancelButton.onClick = [this] { cancel(); };
    for (auto* button : { &rebuildButton, &okButton, &cancelButton })
        addAndMakeVisible(*button);
    textEditorTextChanged(megapixelEditor);
}

double PreferencesPanel::enteredMegapixels() const
{
    const auto text = megapixelEditor.getText().trim();
    // "12.5.3" or "." parse to something; only a plain number is meant.
    if (text.isEmpty() || !text.containsAnyOf("0123456789") || text.indexOfChar('.') != text.lastIndexOfChar('.'))
        return 0.0;
    const double value = text.getDoubleValue();
    return value >= 1.0 && value <= largestLimit ? value : 0.0;
}

void PreferencesPanel::textEditorTextChanged(juce::TextEditor&)
{
    okButton.setEnabled(enteredMegapixels() > 0.0);
}

void PreferencesPanel::rebuild()
{
    const bool ok = actions.rebuildDefaultPresets && actions.rebuildDefaultPresets();
    rebuildStatus.setText(ok ? "The default presets are back." : "The default presets could not be written.",
                          juce::dontSendNotification);
}

void PreferencesPanel::apply()
{
    const double megapixels = enteredMegapixels();
    if (isFinished() || megapixels <= 0.0)
        return;
    const auto callback = actions.setMaximumMegapixels;
    finish();
    if (callback)
        callback(megapixels);
}

void PreferencesPanel::resized()
{
    megapixelLabel.setBounds(12, 40, getWidth() - 24 - 90, 26);
    megapixelEditor.setBounds(getWidth() - 16 - 84, 40, 84, 26);
    rebuildButton.setBounds(16, 78, 180, 26);
    rebuildStatus.setBounds(rebuildButton.getRight() + 8, 78, getWidth() - rebuildButton.getRight() - 24, 26);
    okButton.setBounds(getWidth() - 16 - 84, getHeight() - 14 - 26, 84, 26);
    cancelButton.setBounds(okButton.getX() - 8 - 84, okButton.getY(), 84, 26);
}
