#include "ui/EditableNumber.h"

#include "ui/SxLookAndFeel.h"

EditableNumber::EditableNumber(const juce::String& name, SxSliderBase& s) : SxComponent(name), slider(s)
{
    display.setName(name + "Display");
    display.setColour(juce::TextButton::buttonColourId, juce::Colours::transparentBlack);
    display.setColour(juce::TextButton::textColourOffId, SxColours::dimText);
    display.setConnectedEdges(juce::Button::ConnectedOnLeft | juce::Button::ConnectedOnRight);
    display.addListener(this);
    display.setMouseCursor(juce::MouseCursor::IBeamCursor);
    addAndMakeVisible(display);

    editor.setName(name + "Editor");
    editor.setFont(juce::Font(12.0f));
    editor.setJustification(juce::Justification::centredRight);
    editor.setSelectAllWhenFocused(true);
    editor.addListener(this);
    addChildComponent(editor);

    slider.getValueObject().addListener(this);
    showValue();
}

EditableNumber::~EditableNumber()
{
    slider.getValueObject().removeListener(this);
}

void EditableNumber::showValue()
{
    display.setButtonText(slider.getTextFromValue(slider.getValue()));
}

void EditableNumber::startEditing()
{
    if (isEditing())
        return;
    editor.setText(getText(), false);
    editor.setVisible(true);
    display.setVisible(false);
    if (isShowing())
        editor.grabKeyboardFocus();
    editor.selectAll();
}

void EditableNumber::finishEditing(bool commit)
{
    if (!isEditing())
        return;
    // Hidden first: taking the focus away from the field below calls back here.
    editor.setVisible(false);
    display.setVisible(true);
    if (commit)
        slider.setValue(slider.getValueFromText(editor.getText()), juce::sendNotificationSync);
    showValue();
}

void EditableNumber::resized()
{
    display.setBounds(getLocalBounds());
    editor.setBounds(getLocalBounds());
}
