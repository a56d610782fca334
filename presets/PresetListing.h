#pragma once
// Which presets a folder offers and in what order the strip shows them: the ".pre" files in file
// order with the user's favourites first, each with the picture its thumbnail starts from. Files
// only; the strip that shows them lives with the application.

#include <juce_graphics/juce_graphics.h>

#include <vector>

namespace PresetListing
{
/** The "*.pre" files directly in folder, sorted; empty when the folder does not exist. */
juce::Array<juce::File> presetFiles(const juce::File& folder);
/** The "*.jpg" files there, sorted. */
juce::Array<juce::File> imageFiles(const juce::File& folder);

/** The names stored under "presetFavString": each name is followed by ";". A name holding ";"
    therefore comes back as two names; that is the stored form and it is kept. */
std::vector<juce::String> parseFavourites(const juce::String& stored);
juce::String favouritesString(const std::vector<juce::String>& favourites);
bool isFavourite(const std::vector<juce::String>& favourites, const juce::File& preset);

/** True when the file reads as a preset with something to apply: a damaged or empty file would
    show a thumbnail that does nothing, so it gets no place in the strip. */
bool isUsable(const juce::File& preset);

/** The usable presets of files in display order: favourites first, then the others, each group
    in the given (file) order. */
juce::Array<juce::File> displayOrder(const juce::Array<juce::File>& files, const std::vector<juce::String>& favourites);

/** The picture a thumbnail starts from: the ".jpg" of the same base name beside the preset, else
    the preview embedded in a "VER3" file; invalid when there is neither. */
juce::Image thumbnailFor(const juce::File& preset);
} // namespace PresetListing
