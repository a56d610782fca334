#pragma once
// A component whose interesting places are not child components (the corners of a frame drawn
// by hand) lists them itself for the window's component map, so that scripts driving the window
// with real input find them as they find buttons.

#include <juce_core/juce_core.h>

class ComponentMapEntries
{
public:
    virtual ~ComponentMapEntries() = default;
    /** Lines of "name x y w h" in screen pixels, each ending in a newline. */
    virtual juce::String componentMapEntries() const = 0;
};
