#pragma once
// Decodes JPEG, PNG and TIFF files into the program's colour picture, with what the file says
// about itself: resolution, alpha, embedded colour profile and (for JPEG) Exif orientation, which
// is applied. The codecs are called directly (libjpeg-turbo, LodePNG, libtiff) rather than through
// JUCE's loaders, because those drop resolution and embedded profiles and accept truncated files.

#include "imaging/ImageFileType.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

struct DecodedImage
{
    SxRef<SxImageRgbaBytes> image; // null on failure
    double resolutionX = 72.0, resolutionY = 72.0;
    bool hasAlpha = false;
    int orientation = 1;
    juce::MemoryBlock iccProfile;
    /** True when the pixels were converted from iccProfile to sRGB while loading. */
    bool convertedToSRGB = false;
    /** Why there is no image: "cannot read" (missing, unreadable, not a regular file), "not an
        image" (no codec could decode it) or "too large" (over the pixel limit or the free
        memory), with detail after a colon. */
    juce::String error;

    bool ok() const { return image.get() != nullptr; }
};

namespace ImageFileReader
{
/** Reads and decodes a file; pixels with an embedded profile arrive converted to sRGB. */
DecodedImage read(const juce::File& file);

/** Decodes bytes of the given type (an unknown type is recognised from the first bytes), without
    colour conversion. */
DecodedImage readMemory(const void* data, size_t size, ImageFileType type);
} // namespace ImageFileReader
