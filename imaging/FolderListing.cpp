#include "imaging/FolderListing.h"
#include "imaging/FileBytes.h"

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

namespace FolderListing
{
Listing files(const juce::File& folder, const juce::String& wildcards)
{
    Listing listing;
    const juce::String path = folder.getFullPathName();
    DIR* dir = ::opendir(path.toRawUTF8());
    if (dir == nullptr)
        return listing;

    juce::StringArray patterns;
    patterns.addTokens(wildcards, ";", {});
    patterns.trim();
    patterns.removeEmptyStrings();

    while (const dirent* entry = ::readdir(dir))
    {
        const char* raw = entry->d_name;
        if (std::strcmp(raw, ".") == 0 || std::strcmp(raw, "..") == 0)
            continue;
        juce::String name;
        if (! FileBytes::toText(raw, std::strlen(raw), name))
        {
            ++listing.unreadableNames;
            continue;
        }
        const bool matches = std::any_of(patterns.begin(), patterns.end(),
                                         [&](const juce::String& p) { return name.matchesWildcard(p, true); });
        if (! matches)
            continue;
        const auto file = folder.getChildFile(name);
        struct stat info {};
        if (::stat(file.getFullPathName().toRawUTF8(), &info) == 0 && S_ISREG(info.st_mode))
            listing.files.add(file);
    }
    ::closedir(dir);
    listing.files.sort();
    return listing;
}
} // namespace FolderListing
