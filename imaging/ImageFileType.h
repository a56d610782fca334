#pragma once
// Which codec a path is for. Decided by the text of the path alone (the extension after the last
// '.' behind the last folder separator, any case), as users name files: "photo.TIF" is a TIFF.

#include <juce_core/juce_core.h>

enum class ImageFileType
{
    unknown,
    jpeg,
    png,
    tiff
};

namespace ImageFileTypes
{
ImageFileType fromPath(const juce::String& path);
/** The usual extension with its dot (".jpg", ".png", ".tif"); empty for unknown. */
juce::String extensionFor(ImageFileType type);
} // namespace ImageFileTypes
