#pragma once
// The pictures of the preset strip: the frame behind a thumbnail, the delete badge and the two
// stars, drawn once from paths at the size they are shown, and the outlines of the strip's own
// buttons (arrows, add, remove).

#include <juce_graphics/juce_graphics.h>

namespace PresetStripIcons
{
juce::Image frame(int side);
juce::Image deleteBadge(int side);
juce::Image star(int side, bool filled);

/** Outlines in the unit square, for juce::ShapeButton. */
juce::Path arrow(bool up);
juce::Path plus();
juce::Path minus();
} // namespace PresetStripIcons
