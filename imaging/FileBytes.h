#pragma once
// Reading input without trusting it. A whole file: a FIFO would block for ever, and a link to a
// device such as /dev/zero never ends, so only regular files are read, and never past the size
// they had when opened. Text: bytes become a juce::String only once they are checked UTF-8.

#include <juce_core/juce_core.h>

namespace FileBytes
{
/** Empty when file is a regular file that can be opened; otherwise "cannot read: ..." */
juce::String checkRegular(const juce::File& file);

/** Reads the file into out; returns empty on success, otherwise "cannot read: ..." */
juce::String read(const juce::File& file, juce::MemoryBlock& out);

/** True when the bytes are UTF-8 in its shortest form, with no zero byte: no overlong forms, no
    surrogates, nothing past U+10FFFF. JUCE sizes a copy of a string by re-encoding its
    characters but copies the bytes as they are, so a longer-than-shortest form overflows the
    copy; such bytes must never become a juce::String. */
bool isStrictUtf8(const void* data, size_t size);

/** The bytes as text when they are strict UTF-8; otherwise false, and text is left alone. */
bool toText(const void* data, size_t size, juce::String& text);

/** The bytes as text, every sequence that is not strict UTF-8 shown as U+FFFD: for names that
    must be shown or reported whatever they hold (command-line arguments, file names). */
juce::String toTextReplacingBadBytes(const void* data, size_t size);
} // namespace FileBytes
