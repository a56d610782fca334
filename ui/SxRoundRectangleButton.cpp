#include "ui/SxRoundRectangleButton.h"

#include "ui/SxLookAndFeel.h"

SxRoundRectangleButton::SxRoundRectangleButton(const juce::String& componentName, const juce::String& text)
    : juce::Button(componentName)
{
    setButtonText(text);
    setWantsKeyboardFocus(false);
}

void SxRoundRectangleButton::setProminent(bool shouldBeProminent)
{
    prominent = shouldBeProminent;
    repaint();
}

void SxRoundRectangleButton::setFontHeight(float height)
{
    fontHeight = height;
    repaint();
}

int SxRoundRectangleButton::getIdealWidth() const
{
    return juce::Font(fontHeight).getStringWidth(getButtonText()) + 2 * 12;
}

void SxRoundRectangleButton::paintButton(juce::Graphics& g, bool highlighted, bool down)
{
    const auto bounds = getLocalBounds().toFloat().reduced(0.5f);
    const float corner = juce::jmin(6.0f, bounds.getHeight() * 0.5f);
    const float alpha = isEnabled() ? 1.0f : 0.4f;
    const bool active = isEnabled() && (highlighted || down);

    juce::Colour fill = prominent ? SxColours::accent : juce::Colours::transparentBlack;
    if (prominent && active)
        fill = fill.brighter(down ? 0.25f : 0.12f);
    else if (!prominent && active)
        fill = down ? SxColours::controlHover.brighter(0.1f) : SxColours::control;
    if (getToggleState() && !prominent)
        fill = SxColours::accent.withAlpha(0.35f);

    g.setColour(fill.withMultipliedAlpha(alpha));
    g.fillRoundedRectangle(bounds, corner);
    if (!prominent)
    {
        g.setColour((active ? SxColours::dimText : SxColours::outline).withMultipliedAlpha(alpha));
        g.drawRoundedRectangle(bounds, corner, 1.0f);
    }
    g.setColour(SxColours::text.withMultipliedAlpha(alpha));
    g.setFont(juce::Font(fontHeight));
    g.drawFittedText(getButtonText(), getLocalBounds().reduced(4, 0), juce::Justification::centred, 1, 0.8f);
}
