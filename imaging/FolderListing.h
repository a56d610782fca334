#pragma once
// The files in a folder, read without handing any name to JUCE first. JUCE makes its strings of
// file names as the bytes stand and overflows its copies of a name that is not UTF-8 in its
// shortest form, and a Linux file name may hold any bytes: a folder holding one such file must
// not take down a batch or the preset strip.

#include <juce_core/juce_core.h>

namespace FolderListing
{
struct Listing
{
    /** Sorted by name. */
    juce::Array<juce::File> files;
    /** Files left out because their names are not strict UTF-8. */
    int unreadableNames = 0;
};

/** The regular files (or links to them) directly in folder whose names match one of the
    ';'-separated wildcards, ignoring case. */
Listing files(const juce::File& folder, const juce::String& wildcards = "*");
} // namespace FolderListing
