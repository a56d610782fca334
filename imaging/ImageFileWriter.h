#pragma once
// Encodes a picture as JPEG, PNG or TIFF with its resolution (and, when given, an ICC profile).
// Every picture is encoded in memory and put on disk through SafeFileWrite, so a failure never leaves
// half a file and never harms an existing one.

#include "imaging/ImageFileType.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

struct ImageWriteOptions
{
    double resolutionX = 72.0, resolutionY = 72.0;
    int jpegQuality = 85;                // 1..100
    juce::MemoryBlock iccProfile;        // embedded as given; the pixels are not converted here
};

namespace ImageFileWriter
{
/** Writes the image; JPEG drops alpha, PNG and TIFF keep all four channels. */
juce::Result write(const SxImageRgbaBytes& image, const juce::File& destination, ImageFileType type,
                   const ImageWriteOptions& options = {});

/** Writes the image to a name that must still be free when the file lands there; nameTaken says
    that another process took it meanwhile. */
juce::Result writeNew(const SxImageRgbaBytes& image, const juce::File& destination, ImageFileType type,
                      const ImageWriteOptions& options, bool& nameTaken);

/** Encodes into memory (for previews embedded in other files). */
bool encode(const SxImageRgbaBytes& image, ImageFileType type, const ImageWriteOptions& options, juce::MemoryBlock& out);
} // namespace ImageFileWriter
