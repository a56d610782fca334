#include "ui/SxComboBoxLookAndFeel.h"

#include "ui/SxLookAndFeel.h"

SxComboBoxLookAndFeel::SxComboBoxLookAndFeel() : juce::LookAndFeel_V4(SxMainLookAndFeel::colourScheme())
{
    setColour(juce::ComboBox::backgroundColourId, SxColours::control);
    setColour(juce::ComboBox::outlineColourId, SxColours::outline);
    setColour(juce::ComboBox::focusedOutlineColourId, SxColours::accent);
    setColour(juce::ComboBox::textColourId, SxColours::text);
    setColour(juce::ComboBox::arrowColourId, SxColours::dimText);
    setColour(juce::PopupMenu::backgroundColourId, SxColours::panel);
    setColour(juce::PopupMenu::textColourId, SxColours::text);
    setColour(juce::PopupMenu::highlightedBackgroundColourId, SxColours::accent);
    setColour(juce::PopupMenu::highlightedTextColourId, SxColours::text);
}

SxComboBoxLookAndFeel& SxComboBoxLookAndFeel::shared()
{
    static auto* instance = new SxComboBoxLookAndFeel();
    return *instance;
}

void SxComboBoxLookAndFeel::drawComboBox(juce::Graphics& g, int width, int height, bool isButtonDown, int, int, int, int,
                                         juce::ComboBox& box)
{
    const float alpha = box.isEnabled() ? 1.0f : 0.5f;
    auto fill = box.findColour(juce::ComboBox::backgroundColourId);
    if (isButtonDown)
        fill = fill.brighter(0.25f);
    else if (box.isMouseOver(true))
        fill = SxColours::controlHover;
    const auto bounds = juce::Rectangle<int>(width, height).toFloat().reduced(0.5f);
    g.setColour(fill.withMultipliedAlpha(alpha));
    g.fillRoundedRectangle(bounds, 4.0f);
    const auto outline = box.hasKeyboardFocus(true) ? juce::ComboBox::focusedOutlineColourId : juce::ComboBox::outlineColourId;
    g.setColour(box.findColour(outline).withMultipliedAlpha(alpha));
    g.drawRoundedRectangle(bounds, 4.0f, 1.0f);

    // A chevron of fixed size, centred in its strip, so tall and short boxes point alike.
    const auto zone = juce::Rectangle<float>((float) (width - arrowZoneWidth), 0.0f, (float) arrowZoneWidth, (float) height);
    const auto c = zone.getCentre();
    juce::Path chevron;
    chevron.startNewSubPath(c.x - 4.0f, c.y - 2.0f);
    chevron.lineTo(c.x, c.y + 2.0f);
    chevron.lineTo(c.x + 4.0f, c.y - 2.0f);
    g.setColour(box.findColour(juce::ComboBox::arrowColourId).withMultipliedAlpha(alpha));
    g.strokePath(chevron, { 1.5f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded });
}

juce::Font SxComboBoxLookAndFeel::getComboBoxFont(juce::ComboBox& box)
{
    return juce::Font(juce::jmin(13.0f, (float) box.getHeight() * 0.75f));
}

void SxComboBoxLookAndFeel::positionComboBoxText(juce::ComboBox& box, juce::Label& label)
{
    label.setBounds(4, 1, box.getWidth() - arrowZoneWidth - 4, box.getHeight() - 2);
    label.setFont(getComboBoxFont(box));
}
