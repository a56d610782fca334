#pragma once
// Puts a finished byte buffer on disk so that nothing the user had is lost when the disk fills up,
// a size limit stops the write, or the process dies half way: the bytes go to a hidden file beside
// the destination, every write, the sync and the close are checked and the size on disk compared,
// and only then is it renamed into place. A failed write removes its temporary file.

#include <juce_core/juce_core.h>

namespace SafeFileWrite
{
/** Writes data over destination (which may or may not exist). */
juce::Result replace(const juce::File& destination, const void* data, size_t size);

/** Writes data to destination only if no file of that name exists at the moment of the rename,
    also when another process takes the name while we write. nameTaken tells that case apart from
    other failures, so that the caller can choose the next free name. */
juce::Result createNew(const juce::File& destination, const void* data, size_t size, bool& nameTaken);

/** A process stopped by the file size limit loses its temporary file and reports nothing: the
    writers ignore that signal so that the write fails with an error instead. */
void ignoreFileSizeSignal();
} // namespace SafeFileWrite
