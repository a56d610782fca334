#pragma once
// Where tornvale-render's results go: the rules that are checked before anything renders (a
// usage error then, not a surprise after a long render), and the write itself, which never takes
// a name another process has just taken and never replaces the input.

#include "cli/render/RenderOptions.h"
#include "imaging/ImageFileWriter.h"

#include <juce_core/juce_core.h>

namespace RenderOutput
{
/** Empty when the output options make sense for these inputs; otherwise the usage error. */
juce::String problemBeforeRender(const RenderOptions& options, const juce::Array<juce::File>& inputs);

/** True when both name one file on disk (also through links). */
bool isSameFile(const juce::File& a, const juce::File& b);

/** Writes the picture to wanted, or with overwrite off (and always when wanted is the input) to
    the first free numbered name, created exclusively: when another process takes a name between
    the check and the write, the next number is tried. written names the file made. */
juce::Result write(const SxImageRgbaBytes& image, const juce::File& wanted, const juce::File& input, bool overwrite,
                   const ImageWriteOptions& writeOptions, juce::File& written);
} // namespace RenderOutput
