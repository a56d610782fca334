#include "imaging/ImageFileType.h"

namespace ImageFileTypes
{
ImageFileType fromPath(const juce::String& path)
{
    const int separator = juce::jmax(path.lastIndexOfChar('/'), path.lastIndexOfChar('\\'));
    const auto name = path.substring(separator + 1);
    const int dot = name.lastIndexOfChar('.');
    if (dot < 0)
        return ImageFileType::unknown;
    const auto extension = name.substring(dot + 1).toUpperCase();
    if (extension == "JPG" || extension == "JPEG")
        return ImageFileType::jpeg;
    if (extension == "PNG")
        return ImageFileType::png;
    if (extension == "TIF" || extension == "TIFF")
        return ImageFileType::tiff;
    return ImageFileType::unknown;
}

juce::String extensionFor(ImageFileType type)
{
    switch (type)
    {
        case ImageFileType::jpeg: return ".jpg";
        case ImageFileType::png: return ".png";
        case ImageFileType::tiff: return ".tif";
        case ImageFileType::unknown: break;
    }
    return {};
}
} // namespace ImageFileTypes
