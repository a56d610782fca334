#pragma once
// The 27 presets that ship with the program, made at run time from the table in BuiltInPresets.cpp
// into "VER2" files, and their placement into the user's preset folder.

#include <juce_core/juce_core.h>

#include <vector>

namespace BuiltInPresets
{
constexpr int numPresets = 27;

/** "01 Tornvale" ... "27 Very Detailed". */
juce::String getName(int index);

/** The "VER2" bytes of one built-in, or an empty block for an index out of range. */
juce::MemoryBlock getPresetFile(int index);

/** The 200 × 200 JPEG thumbnail of one built-in (the sample coffee photo rendered with it), or an
    empty block for an index out of range. */
juce::MemoryBlock getThumbnail(int index);

struct Resource
{
    juce::String name; ///< file name, such as "01 Tornvale.pre"
    juce::MemoryBlock bytes;
};

/** The resources in their table order: "01 ... .jpg", "01 ... .pre", "02 ... .jpg", ... */
std::vector<Resource> getResources();

/** <application data>/Tornvale Art/EffectPresets/Tornvale */
juce::File getPresetFolder();

/** Writes every resource with bytes into folder (made if needed), replacing files of the same
    name and leaving any other file alone. False if a file could not be written. */
bool writeDefaultPresets(const juce::File& folder);

/** True when the folder holds more than one entry, or when the path exists as a file. */
bool hasPresets(const juce::File& folder);
} // namespace BuiltInPresets
