#include "presets/PresetStripIcons.h"

namespace PresetStripIcons
{
namespace
{
juce::Path stroked(const juce::Path& lines, float thickness)
{
    juce::Path outline;
    juce::PathStrokeType(thickness, juce::PathStrokeType::curved, juce::PathStrokeType::rounded).createStrokedPath(outline, lines);
    return outline;
}

/** A round button's face: the lines cut out of a filled disc. */
juce::Path disc(const juce::Path& lines)
{
    juce::Path p;
    p.addEllipse(0.0f, 0.0f, 1.0f, 1.0f);
    p.addPath(stroked(lines, 0.11f));
    p.setUsingNonZeroWinding(false);
    return p;
}

juce::Path starPath(float side)
{
    juce::Path p;
    p.addStar({ side / 2.0f, side / 2.0f + side * 0.04f }, 5, side * 0.2f, side * 0.46f);
    return p;
}
} // namespace

juce::Image frame(int side)
{
    // A soft dark edge that the thumbnail covers but for its outer three pixels.
    juce::Image image(juce::Image::ARGB, side, side, true);
    juce::Graphics g(image);
    for (int i = 0; i < 3; ++i)
    {
        g.setColour(juce::Colours::black.withAlpha(0.22f));
        g.drawRoundedRectangle(juce::Rectangle<float>(0.0f, 0.0f, (float) side, (float) side).reduced((float) i + 0.5f), 3.0f, 1.0f);
    }
    return image;
}

juce::Image deleteBadge(int side)
{
    juce::Image image(juce::Image::ARGB, side, side, true);
    juce::Graphics g(image);
    const auto area = juce::Rectangle<float>(0.0f, 0.0f, (float) side, (float) side).reduced(1.5f);
    g.setColour(juce::Colour(0xff2f7fd8));
    g.fillEllipse(area);
    g.setColour(juce::Colours::white);
    g.drawEllipse(area, 1.5f);
    juce::Path cross;
    const float a = side * 0.33f, b = side * 0.67f;
    cross.startNewSubPath(a, a);
    cross.lineTo(b, b);
    cross.startNewSubPath(b, a);
    cross.lineTo(a, b);
    g.fillPath(stroked(cross, side * 0.1f));
    return image;
}

juce::Image star(int side, bool filled)
{
    juce::Image image(juce::Image::ARGB, side, side, true);
    juce::Graphics g(image);
    const auto path = starPath((float) side);
    if (filled)
    {
        g.setColour(juce::Colour(0xfff5c242));
        g.fillPath(path);
    }
    else
    {
        g.setColour(juce::Colours::black.withAlpha(0.35f));
        g.fillPath(path);
    }
    g.setColour(juce::Colours::white);
    g.strokePath(path, juce::PathStrokeType(1.2f));
    return image;
}

juce::Path arrow(bool up)
{
    juce::Path lines;
    lines.startNewSubPath(0.2f, up ? 0.68f : 0.32f);
    lines.lineTo(0.5f, up ? 0.32f : 0.68f);
    lines.lineTo(0.8f, up ? 0.68f : 0.32f);
    auto p = stroked(lines, 0.1f);
    // The shape button fits the path's own bounds; the invisible corners keep the unit square.
    p.addRectangle(0.0f, 0.0f, 0.001f, 0.001f);
    p.addRectangle(0.999f, 0.999f, 0.001f, 0.001f);
    return p;
}

juce::Path plus()
{
    juce::Path lines;
    lines.startNewSubPath(0.5f, 0.2f);
    lines.lineTo(0.5f, 0.8f);
    lines.startNewSubPath(0.2f, 0.5f);
    lines.lineTo(0.8f, 0.5f);
    return disc(lines);
}

juce::Path minus()
{
    juce::Path lines;
    lines.startNewSubPath(0.2f, 0.5f);
    lines.lineTo(0.8f, 0.5f);
    return disc(lines);
}
} // namespace PresetStripIcons
