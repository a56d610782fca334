#pragma once
// Reading a whole input file without trusting it to be one: a FIFO would block for ever, and a
// link to a device such as /dev/zero never ends. Only regular files are read, and never past the
// size they had when opened.

#include <juce_core/juce_core.h>

namespace FileBytes
{
/** Empty when file is a regular file that can be opened; otherwise "cannot read: ..." */
juce::String checkRegular(const juce::File& file);

/** Reads the file into out; returns empty on success, otherwise "cannot read: ..." */
juce::String read(const juce::File& file, juce::MemoryBlock& out);
} // namespace FileBytes
