#include "presets/PresetListing.h"

#include "imaging/FolderListing.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageRGBAPixelData.h"
#include "presets/PresetFile.h"

namespace PresetListing
{
namespace
{
juce::Array<juce::File> filesIn(const juce::File& folder, const juce::String& pattern)
{
    return FolderListing::files(folder, pattern).files;
}
} // namespace

juce::Array<juce::File> presetFiles(const juce::File& folder)
{
    // The mask also matches ".prel" and ".pre~": only the exact extension is a preset here.
    auto files = filesIn(folder, "*.pre");
    files.removeIf([](const juce::File& f) { return ! f.hasFileExtension("pre"); });
    return files;
}

juce::Array<juce::File> imageFiles(const juce::File& folder)
{
    return filesIn(folder, "*.jpg");
}

std::vector<juce::String> parseFavourites(const juce::String& stored)
{
    std::vector<juce::String> names;
    for (const auto& name : juce::StringArray::fromTokens(stored, ";", {}))
        if (name.isNotEmpty())
            names.push_back(name);
    return names;
}

juce::String favouritesString(const std::vector<juce::String>& favourites)
{
    juce::String text;
    for (const auto& name : favourites)
        text << name << ";";
    return text;
}

bool isFavourite(const std::vector<juce::String>& favourites, const juce::File& preset)
{
    return std::find(favourites.begin(), favourites.end(), preset.getFileNameWithoutExtension()) != favourites.end();
}

bool isUsable(const juce::File& preset)
{
    const auto contents = PresetFile::readFile(preset);
    return contents.settings.size() > 0;
}

juce::Array<juce::File> displayOrder(const juce::Array<juce::File>& files, const std::vector<juce::String>& favourites)
{
    juce::Array<juce::File> order;
    for (const bool favouritePass : { true, false })
        for (const auto& file : files)
            if (isFavourite(favourites, file) == favouritePass && isUsable(file))
                order.add(file);
    return order;
}

juce::Image thumbnailFor(const juce::File& preset)
{
    const auto companion = preset.withFileExtension("jpg");
    if (companion.existsAsFile())
    {
        // Our own decoder: it refuses a damaged file where JUCE's would half-read it.
        const auto decoded = ImageFileReader::read(companion);
        if (decoded.ok())
            return SxImageConversion::toJuceImage(*decoded.image);
    }
    juce::FileInputStream in(preset);
    return in.openedOk() ? PresetFile::readEmbeddedPreview(in) : juce::Image();
}
} // namespace PresetListing
