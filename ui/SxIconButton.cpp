#include "ui/SxIconButton.h"

#include "ui/SxLookAndFeel.h"

SxIconButton::SxIconButton(const juce::String& componentName, SxIcons::Kind kindToShow)
    : juce::Button(componentName), kind(kindToShow), icon(SxIcons::get(kindToShow))
{
    setWantsKeyboardFocus(false);
}

void SxIconButton::setIcon(SxIcons::Kind newKind)
{
    kind = newKind;
    icon = SxIcons::get(newKind);
    repaint();
}

void SxIconButton::setIconScale(float scale)
{
    iconScale = juce::jlimit(0.1f, 1.0f, scale);
    repaint();
}

void SxIconButton::paintButton(juce::Graphics& g, bool highlighted, bool down)
{
    const auto bounds = getLocalBounds().toFloat().reduced(1.0f);
    const bool on = getToggleState();
    const float alpha = isEnabled() ? 1.0f : 0.35f;

    // Calm states: nothing at rest, a soft fill under the mouse, a stronger one pressed, and the
    // accent only for a tool that is on.
    juce::Colour fill = juce::Colours::transparentBlack;
    if (on)
        fill = SxColours::accent.withAlpha(down ? 0.55f : 0.35f);
    else if (down)
        fill = SxColours::controlHover.brighter(0.1f);
    else if (highlighted && isEnabled())
        fill = SxColours::controlHover;
    if (!fill.isTransparent())
    {
        g.setColour(fill.withMultipliedAlpha(alpha));
        g.fillRoundedRectangle(bounds, 4.0f);
    }

    const float side = juce::jmin(bounds.getWidth(), bounds.getHeight()) * iconScale;
    const auto fitted = SxIcons::fitting(juce::Rectangle<float>(side, side).withCentre(bounds.getCentre()));
    const auto colour = on ? SxColours::text : (highlighted || down ? SxColours::text : SxColours::text.withAlpha(0.8f));
    g.setColour(colour.withMultipliedAlpha(alpha));
    g.fillPath(icon, fitted);
}
