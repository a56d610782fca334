#pragma once
// The component map: a text file naming every visible control with its screen bounds, what some
// controls show, and the command states, rewritten while the window runs. Scripts that drive the
// window with real input find controls by it and read the program's state from it.

#include <juce_gui_basics/juce_gui_basics.h>

namespace ComponentMap
{
/** One "name x y w h" line per named, showing component under root (spaces in names become
    underscores), the extra lines of ComponentMapEntries and sliders, and the window's menu bar. */
juce::String describeComponents(juce::Component& root);
/** One "command id enabled ticked name" line per command, as the menus show them. */
juce::String describeCommands(juce::ApplicationCommandTarget& target, const juce::Array<juce::CommandID>& commands);
/** Replaces file by text in one step, so that a reader never finds it missing or half written. */
void replace(const juce::File& file, const juce::String& text);
} // namespace ComponentMap
