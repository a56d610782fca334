#include "presets/BuiltInPresets.h"
#include "imaging/SafeFileWrite.h"

// Generated from presets/thumbnails/ at build time.
const char* tornvale_thumbnails_find(const char* name, std::size_t* size);

namespace BuiltInPresets
{
namespace
{
// Keys every built-in carries, in file order. Only some are read by the effect; the others are
// kept so that the files stay exactly as the program has always shipped them.
const char* const keyOrder[] = {
    "layerName", "layerOpacity", "visible", "grungeFileName", "snowFileName", "strength", "rainFade",
    "textureStrength", "saturationStrength", "brightnessStrength", "contrastStrength", "spotlightStrength",
    "vingetteColorRed", "vingetteColorGreen", "vingetteColorBlue", "vingetteColorAlpha",
    "vingetteColorStrength", "preSharpen", "preSharpenSize", "colorizeEdges", "strokeWidth", "strokeLength",
    "sharpen", "sharpenSize", "brightenLight", "postSharpen", "postSharpenSize", "saturation", "contrast",
    "smoothing", "strokeStyle"
};
constexpr int numKeys = (int) (sizeof(keyOrder) / sizeof(keyOrder[0]));

// strength, rainFade, textureStrength, saturationStrength, brightnessStrength, contrastStrength,
// spotlightStrength, vingetteColorStrength: five groups shared between presets.
const char* const carriedGroups[5][8] = {
    { "0.59501", "0.636736", "0.285562", "0.597669", "0.503533", "0.537746", "0.688702", "0.379692" },
    { "0.957153", "0.847234", "0.300531", "0.579681", "0.810463", "0.356414", "0.258326", "0.263791" },
    { "0.728726", "0.710712", "0.301187", "0.823857", "0.794441", "0.554177", "0.529546", "0.587676" },
    { "0.642828", "0.813049", "0.231752", "0.970139", "0.782915", "0.376673", "0.973316", "0.736482" },
    { "0.695679", "0.547771", "0.385573", "0.906798", "0.50993", "0.480031", "0.567718", "0.462572" },
};

struct Row
{
    const char* name;
    // preSharpen, preSharpenSize, colorizeEdges, strokeLength, sharpen, brightenLight, postSharpen,
    // saturation, contrast, smoothing, strokeStyle
    const char* effect[11];
    int group;
    const char* sharpenSize;
};

const Row rows[numPresets] = {
    { "01 Tornvale", { "0.7", "0", "0", "0.51", "0.32", "0.54", "1", "0.87", "0.66", "0.68", "0" }, 0, "0.77" },
    { "02 Tornvale", { "0.33", "0", "0", "0.38", "0.58", "0.91", "0.1", "1", "0", "0", "0" }, 0, "0" },
    { "03 Tornvale", { "0.33", "0", "0", "0.38", "0.58", "0", "0.1", "1", "0", "0.76", "0" }, 0, "0" },
    { "04 Tornvale", { "0.5", "0", "0", "0.34", "0.4", "0.7", "0.7", "0.87", "0.4", "0.68", "0" }, 0, "0.77" },
    { "05 Colorize Medium", { "0.2", "0", "1", "0.4", "0.25", "0.26", "0.65", "0.25", "0.25", "0.25", "0" }, 1, "0.25" },
    { "06 Colorize Abstract", { "0.46", "2", "0.8", "0.8", "0.25", "0.68", "0.65", "0.72", "0.25", "0.76", "0" }, 1, "0.25" },
    { "07 Colorize Glow", { "0.58", "2", "1", "0.49", "0.25", "0.26", "0.65", "0.25", "0.25", "0.25", "0" }, 1, "0.25" },
    { "08 Colorize Sharp", { "0.36", "0", "0.58", "0.4", "0.25", "0.5", "0.2", "0.5", "0.5", "0.25", "0" }, 1, "0.25" },
    { "09 Colorize Soft", { "0.32", "1", "0.34", "0.44", "0.2", "0.4", "0.45", "0.68", "0.1", "0.24", "0" }, 0, "0.77" },
    { "10 Tornvale", { "0.5", "0", "0", "0.35", "0.2", "0.5", "1", "0.68", "0.1", "0.82", "0" }, 0, "0.77" },
    { "11 Smooth Detail", { "0.33", "0", "0", "0.38", "0.58", "0.1", "0.51", "1", "0", "0.76", "0" }, 0, "0" },
    { "12 Bright Detail", { "0.8", "0", "0", "0.25", "0.37", "0.36", "0.47", "1", "0.25", "0.23", "0" }, 0, "0" },
    { "13 Long Lines", { "1", "0", "0", "1", "0.13", "0.61", "0.41", "1", "0.5", "0", "0" }, 0, "0.81" },
    { "14 Long Bright", { "1", "0", "0", "0.7", "0.82", "1", "0.91", "0.49", "0", "0.32", "0" }, 2, "0.25" },
    { "15 Dreamy", { "0.25", "0", "0.25", "0.5", "0.25", "0.125", "0.25", "0.25", "0.25", "0.25", "0" }, 3, "0.25" },
    { "16 Ethereal", { "0", "2", "0", "0.77", "0.13", "0", "0.41", "1", "0.1", "0", "0" }, 0, "0.81" },
    { "17 Ethereal Color", { "0", "0", "0.66", "0.77", "0.13", "0.57", "0.41", "1", "0", "0", "0" }, 0, "0.81" },
    { "18 Dark Lines", { "0.2", "0", "0", "0.26", "0.8", "0.5", "0.42", "0.9", "0.2", "0.45", "1" }, 4, "0.25" },
    { "19 Dark Detail", { "0.4", "1", "0", "0.4", "0.5", "0.2", "0.6", "0.9", "0.4", "0.17", "1" }, 4, "0.25" },
    { "20 Dark Colorize", { "0.61", "2", "0.41", "0.25", "0.8", "0.5", "0.42", "0.9", "0.2", "0.45", "1" }, 4, "0.25" },
    { "21 Dark Colorize", { "0.48", "2", "0.9", "0.06", "0.25", "0.53", "0.65", "0.6", "0.25", "0.2", "1" }, 1, "0.25" },
    { "22 Glow Soft", { "0", "2", "0.9", "0.18", "0.25", "0.26", "0.65", "0.25", "0.25", "0.25", "0" }, 1, "0.25" },
    { "23 Glow Detail", { "0", "2", "0.9", "0.06", "0.25", "0.26", "0.65", "0.25", "0.25", "0.2", "0" }, 1, "0.25" },
    { "24 Colorize Detail", { "0", "0", "1", "0.18", "0.25", "0.26", "0.65", "0.25", "0.55", "0.25", "0" }, 1, "0.25" },
    { "25 Light Detail", { "0", "2", "0", "0.18", "0.25", "0.24", "0.65", "0.7", "0.4", "0.25", "0" }, 1, "0.25" },
    { "26 Sharp Detail", { "0", "0", "0", "0.07", "0.25", "0.74", "0.65", "0.67", "0.55", "0.18", "0" }, 1, "0.25" },
    { "27 Very Detailed", { "0.1", "0", "0", "0.14", "0.25", "0.26", "0.65", "0.3", "0.54", "0.25", "0" }, 1, "0.25" },
};

/** The value of key k for a row, in keyOrder's order. */
const char* valueOf(const Row& row, int k)
{
    const char* const* carried = carriedGroups[row.group];
    const char* const values[numKeys] = {
        "", "1", "1", "cloud-01", "1", carried[0], carried[1], carried[2], carried[3], carried[4], carried[5],
        carried[6], "0", "0", "0", "255", carried[7], row.effect[0], row.effect[1], row.effect[2], "0",
        row.effect[3], row.effect[4], row.sharpenSize, row.effect[5], row.effect[6], "0.25", row.effect[7],
        row.effect[8], row.effect[9], row.effect[10]
    };
    return values[k];
}

const char* const productFolder = "Tornvale Art";
const char* const effectName = "Tornvale";
} // namespace

juce::String getName(int index)
{
    return juce::isPositiveAndBelow(index, numPresets) ? juce::String(rows[index].name) : juce::String();
}

juce::MemoryBlock getPresetFile(int index)
{
    if (! juce::isPositiveAndBelow(index, numPresets))
        return {};
    juce::MemoryOutputStream out;
    out.write("VER2", 4);
    out.writeInt(numKeys);
    for (int k = 0; k < numKeys; ++k)
    {
        // Each text with its closing zero; an empty value is the zero alone.
        out.write(keyOrder[k], std::strlen(keyOrder[k]) + 1);
        const char* value = valueOf(rows[index], k);
        out.write(value, std::strlen(value) + 1);
    }
    return out.getMemoryBlock();
}

juce::MemoryBlock getThumbnail(int index)
{
    if (index < 0 || index >= numPresets)
        return {};
    std::size_t size = 0;
    const char* data = tornvale_thumbnails_find((getName(index) + ".jpg").toRawUTF8(), &size);
    return data != nullptr ? juce::MemoryBlock(data, size) : juce::MemoryBlock();
}

std::vector<Resource> getResources()
{
    std::vector<Resource> resources;
    resources.reserve(numPresets * 2);
    for (int i = 0; i < numPresets; ++i)
    {
        resources.push_back({ getName(i) + ".jpg", getThumbnail(i) });
        resources.push_back({ getName(i) + ".pre", getPresetFile(i) });
    }
    return resources;
}

juce::File getPresetFolder()
{
    return juce::File::getSpecialLocation(juce::File::userApplicationDataDirectory)
        .getChildFile(productFolder)
        .getChildFile("EffectPresets")
        .getChildFile(effectName);
}

bool writeDefaultPresets(const juce::File& folder)
{
    if (! folder.createDirectory())
        return false;
    bool ok = true;
    for (const auto& resource : getResources())
    {
        if (resource.bytes.isEmpty())
            continue;
        const juce::File target = folder.getChildFile(resource.name);
        ok = SafeFileWrite::replace(target, resource.bytes.getData(), resource.bytes.getSize()).wasOk() && ok;
    }
    return ok;
}

bool hasPresets(const juce::File& folder)
{
    if (folder.isDirectory())
        return folder.getNumberOfChildFiles(juce::File::findFilesAndDirectories) > 1;
    return folder.existsAsFile();
}
} // namespace BuiltInPresets
