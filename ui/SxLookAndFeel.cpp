#include "ui/SxLookAndFeel.h"

juce::LookAndFeel_V4::ColourScheme SxMainLookAndFeel::colourScheme()
{
    return { SxColours::window, SxColours::panel,   SxColours::panel,  SxColours::outline, SxColours::text,
             SxColours::accent, SxColours::text,    SxColours::accent, SxColours::text };
}

SxMainLookAndFeel::SxMainLookAndFeel() : juce::LookAndFeel_V4(colourScheme())
{
    setColour(juce::ResizableWindow::backgroundColourId, SxColours::window);
    setColour(juce::DocumentWindow::textColourId, SxColours::text);

    setColour(juce::TooltipWindow::backgroundColourId, juce::Colour(0xf0303236));
    setColour(juce::TooltipWindow::textColourId, SxColours::text);
    setColour(juce::TooltipWindow::outlineColourId, SxColours::outline);

    setColour(juce::ScrollBar::thumbColourId, SxColours::outline);
    setColour(juce::ScrollBar::trackColourId, juce::Colours::transparentBlack);

    setColour(juce::TextButton::buttonColourId, SxColours::control);
    setColour(juce::TextButton::buttonOnColourId, SxColours::accent);
    setColour(juce::TextButton::textColourOffId, SxColours::text);
    setColour(juce::TextButton::textColourOnId, SxColours::text);
    setColour(juce::ComboBox::outlineColourId, SxColours::outline);

    setColour(juce::ToggleButton::textColourId, SxColours::text);
    setColour(juce::ToggleButton::tickColourId, SxColours::text);
    setColour(juce::ToggleButton::tickDisabledColourId, SxColours::dimText);

    setColour(juce::Label::textColourId, SxColours::text);
    setColour(juce::TextEditor::backgroundColourId, SxColours::window);
    setColour(juce::TextEditor::outlineColourId, SxColours::outline);
    setColour(juce::TextEditor::focusedOutlineColourId, SxColours::accent);
    setColour(juce::TextEditor::highlightColourId, SxColours::accent.withAlpha(0.4f));
    setColour(juce::CaretComponent::caretColourId, SxColours::text);
}

void SxMainLookAndFeel::drawButtonBackground(juce::Graphics& g, juce::Button& button, const juce::Colour& backgroundColour,
                                             bool highlighted, bool down)
{
    // Flat: state shows as a change of fill, never as a gradient or a bevel.
    auto bounds = button.getLocalBounds().toFloat().reduced(0.5f);
    auto fill = backgroundColour;
    if (down)
        fill = fill.brighter(0.25f);
    else if (highlighted)
        fill = fill.brighter(0.12f);
    if (!button.isEnabled())
        fill = fill.withMultipliedAlpha(0.5f);
    const float corner = 4.0f;
    g.setColour(fill);
    g.fillRoundedRectangle(bounds, corner);
    g.setColour(SxColours::outline.withMultipliedAlpha(button.isEnabled() ? 1.0f : 0.5f));
    g.drawRoundedRectangle(bounds, corner, 1.0f);
}

void SxMainLookAndFeel::drawTickBox(juce::Graphics& g, juce::Component& component, float x, float y, float w, float h,
                                    bool ticked, bool isEnabled, bool highlighted, bool)
{
    const juce::Rectangle<float> box(x, y, w, h);
    const float alpha = isEnabled ? 1.0f : 0.45f;
    g.setColour((ticked ? SxColours::accent : (highlighted ? SxColours::controlHover : SxColours::control)).withMultipliedAlpha(alpha));
    g.fillRoundedRectangle(box, 3.0f);
    if (!ticked)
    {
        g.setColour(SxColours::outline.withMultipliedAlpha(alpha));
        g.drawRoundedRectangle(box.reduced(0.5f), 3.0f, 1.0f);
        return;
    }
    auto tick = getTickShape(0.75f);
    g.setColour(component.findColour(isEnabled ? juce::ToggleButton::tickColourId : juce::ToggleButton::tickDisabledColourId));
    g.fillPath(tick, tick.getTransformToScaleToFit(box.reduced(w * 0.22f, h * 0.22f), true));
}

void SxMainLookAndFeel::drawScrollbar(juce::Graphics& g, juce::ScrollBar&, int x, int y, int width, int height, bool vertical,
                                      int thumbStart, int thumbSize, bool mouseOver, bool mouseDown)
{
    // A thin pill that widens a little under the mouse, so it stays out of the way of the panel.
    juce::Rectangle<float> thumb;
    const float thickness = (mouseOver || mouseDown) ? 6.0f : 4.0f;
    if (vertical)
        thumb = { x + (width - thickness) * 0.5f, (float) thumbStart, thickness, (float) thumbSize };
    else
        thumb = { (float) thumbStart, y + (height - thickness) * 0.5f, (float) thumbSize, thickness };
    g.setColour(mouseDown ? SxColours::dimText : (mouseOver ? SxColours::outline.brighter(0.3f) : SxColours::outline));
    g.fillRoundedRectangle(thumb.reduced(0.0f, 1.0f), thickness * 0.5f);
}

void SxPaint::outlinedPanel(juce::Graphics& g, juce::Rectangle<int> area, juce::Colour fill, float corner)
{
    const auto bounds = area.toFloat().reduced(0.5f);
    g.setColour(fill);
    g.fillRoundedRectangle(bounds, corner);
    g.setColour(SxColours::outline);
    g.drawRoundedRectangle(bounds, corner, 1.0f);
}

void SxPaint::panelTitle(juce::Graphics& g, const juce::String& title, juce::Rectangle<int> area)
{
    g.setColour(SxColours::text);
    g.setFont(juce::Font(15.0f, juce::Font::bold));
    g.drawFittedText(title, area, juce::Justification::centredLeft, 1);
}

void SxMainLookAndFeel::drawTooltip(juce::Graphics& g, const juce::String& text, int width, int height)
{
    const juce::Rectangle<float> bounds(0.0f, 0.0f, (float) width, (float) height);
    g.setColour(findColour(juce::TooltipWindow::backgroundColourId));
    g.fillRoundedRectangle(bounds, 4.0f);
    g.setColour(findColour(juce::TooltipWindow::outlineColourId));
    g.drawRoundedRectangle(bounds.reduced(0.5f), 4.0f, 1.0f);

    juce::AttributedString s;
    s.setJustification(juce::Justification::centred);
    s.append(text, juce::Font(13.0f), findColour(juce::TooltipWindow::textColourId));
    juce::TextLayout layout;
    layout.createLayoutWithBalancedLineLengths(s, 400.0f);
    layout.draw(g, bounds);
}
