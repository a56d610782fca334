#pragma once
// The stream form of a colour picture: how the full-size source is parked on disk between loads.
// Layout, all integers little-endian:
//   4 bytes  "SXRB"
//   int32    version (1)
//   int32    width, int32 height
//   width × height × 4 bytes, alpha, red, green, blue, rows top to bottom.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

namespace ImageStream
{
bool write(const SxImageRgbaBytes& image, juce::OutputStream& out);

/** Null for anything that is not a complete image of this form. The pixel count is checked
    against the bytes the stream still holds before anything is allocated. */
SxImageRgbaBytes* read(juce::InputStream& in);

/** Writes through a temporary file and renames, so a failed write never leaves a half file. */
bool writeFile(const SxImageRgbaBytes& image, const juce::File& file);
SxImageRgbaBytes* readFile(const juce::File& file);
} // namespace ImageStream
