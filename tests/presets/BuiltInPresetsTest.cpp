// Built-in presets: their bytes against the table of values the product ships (read here by a parser of its own,
// not by the property set), and how they reach the preset folder.

#include "imaging/ImageFileReader.h"
#include "presets/BuiltInPresets.h"
#include "presets/EffectPresetValues.h"
#include "presets/PresetFile.h"

#include <gtest/gtest.h>

#include <map>

namespace
{
// The value tables as text, one row per preset; the test reads them itself.
const char* const effectTable = R"(
| 01 Tornvale | 0.7 | 0 | 0 | 0.51 | 0.32 | 0.54 | 1 | 0.87 | 0.66 | 0.68 | 0 |
| 02 Tornvale | 0.33 | 0 | 0 | 0.38 | 0.58 | 0.91 | 0.1 | 1 | 0 | 0 | 0 |
| 03 Tornvale | 0.33 | 0 | 0 | 0.38 | 0.58 | 0 | 0.1 | 1 | 0 | 0.76 | 0 |
| 04 Tornvale | 0.5 | 0 | 0 | 0.34 | 0.4 | 0.7 | 0.7 | 0.87 | 0.4 | 0.68 | 0 |
| 05 Colorize Medium | 0.2 | 0 | 1 | 0.4 | 0.25 | 0.26 | 0.65 | 0.25 | 0.25 | 0.25 | 0 |
| 06 Colorize Abstract | 0.46 | 2 | 0.8 | 0.8 | 0.25 | 0.68 | 0.65 | 0.72 | 0.25 | 0.76 | 0 |
| 07 Colorize Glow | 0.58 | 2 | 1 | 0.49 | 0.25 | 0.26 | 0.65 | 0.25 | 0.25 | 0.25 | 0 |
| 08 Colorize Sharp | 0.36 | 0 | 0.58 | 0.4 | 0.25 | 0.5 | 0.2 | 0.5 | 0.5 | 0.25 | 0 |
| 09 Colorize Soft | 0.32 | 1 | 0.34 | 0.44 | 0.2 | 0.4 | 0.45 | 0.68 | 0.1 | 0.24 | 0 |
| 10 Tornvale | 0.5 | 0 | 0 | 0.35 | 0.2 | 0.5 | 1 | 0.68 | 0.1 | 0.82 | 0 |
| 11 Smooth Detail | 0.33 | 0 | 0 | 0.38 | 0.58 | 0.1 | 0.51 | 1 | 0 | 0.76 | 0 |
| 12 Bright Detail | 0.8 | 0 | 0 | 0.25 | 0.37 | 0.36 | 0.47 | 1 | 0.25 | 0.23 | 0 |
| 13 Long Lines | 1 | 0 | 0 | 1 | 0.13 | 0.61 | 0.41 | 1 | 0.5 | 0 | 0 |
| 14 Long Bright | 1 | 0 | 0 | 0.7 | 0.82 | 1 | 0.91 | 0.49 | 0 | 0.32 | 0 |
| 15 Dreamy | 0.25 | 0 | 0.25 | 0.5 | 0.25 | 0.125 | 0.25 | 0.25 | 0.25 | 0.25 | 0 |
| 16 Ethereal | 0 | 2 | 0 | 0.77 | 0.13 | 0 | 0.41 | 1 | 0.1 | 0 | 0 |
| 17 Ethereal Color | 0 | 0 | 0.66 | 0.77 | 0.13 | 0.57 | 0.41 | 1 | 0 | 0 | 0 |
| 18 Dark Lines | 0.2 | 0 | 0 | 0.26 | 0.8 | 0.5 | 0.42 | 0.9 | 0.2 | 0.45 | 1 |
| 19 Dark Detail | 0.4 | 1 | 0 | 0.4 | 0.5 | 0.2 | 0.6 | 0.9 | 0.4 | 0.17 | 1 |
| 20 Dark Colorize | 0.61 | 2 | 0.41 | 0.25 | 0.8 | 0.5 | 0.42 | 0.9 | 0.2 | 0.45 | 1 |
| 21 Dark Colorize | 0.48 | 2 | 0.9 | 0.06 | 0.25 | 0.53 | 0.65 | 0.6 | 0.25 | 0.2 | 1 |
| 22 Glow Soft | 0 | 2 | 0.9 | 0.18 | 0.25 | 0.26 | 0.65 | 0.25 | 0.25 | 0.25 | 0 |
| 23 Glow Detail | 0 | 2 | 0.9 | 0.06 | 0.25 | 0.26 | 0.65 | 0.25 | 0.25 | 0.2 | 0 |
| 24 Colorize Detail | 0 | 0 | 1 | 0.18 | 0.25 | 0.26 | 0.65 | 0.25 | 0.55 | 0.25 | 0 |
| 25 Light Detail | 0 | 2 | 0 | 0.18 | 0.25 | 0.24 | 0.65 | 0.7 | 0.4 | 0.25 | 0 |
| 26 Sharp Detail | 0 | 0 | 0 | 0.07 | 0.25 | 0.74 | 0.65 | 0.67 | 0.55 | 0.18 | 0 |
| 27 Very Detailed | 0.1 | 0 | 0 | 0.14 | 0.25 | 0.26 | 0.65 | 0.3 | 0.54 | 0.25 | 0 |
)";
const char* const effectColumns = "preSharpen preSharpenSize colorizeEdges strokeLength sharpen brightenLight "
                                  "postSharpen saturation contrast smoothing strokeStyle";

const char* const carriedTable = R"(
| 01, 02, 03, 04, 09, 10, 11, 12, 13, 16, 17 | 0.59501 | 0.636736 | 0.285562 | 0.597669 | 0.503533 | 0.537746 | 0.688702 | 0.379692 |
| 05, 06, 07, 08, 21, 22, 23, 24, 25, 26, 27 | 0.957153 | 0.847234 | 0.300531 | 0.579681 | 0.810463 | 0.356414 | 0.258326 | 0.263791 |
| 14 | 0.728726 | 0.710712 | 0.301187 | 0.823857 | 0.794441 | 0.554177 | 0.529546 | 0.587676 |
| 15 | 0.642828 | 0.813049 | 0.231752 | 0.970139 | 0.782915 | 0.376673 | 0.973316 | 0.736482 |
| 18, 19, 20 | 0.695679 | 0.547771 | 0.385573 | 0.906798 | 0.50993 | 0.480031 | 0.567718 | 0.462572 |
)";
const char* const carriedColumns = "strength rainFade textureStrength saturationStrength brightnessStrength "
                                   "contrastStrength spotlightStrength vingetteColorStrength";

const char* const sharpenSizes = "0.77 0 0 0.77 0.25 0.25 0.25 0.25 0.77 0.77 0 0 0.81 0.25 0.25 0.81 0.81 "
                                 "0.25 0.25 0.25 0.25 0.25 0.25 0.25 0.25 0.25 0.25";

const char* const keyOrder = "layerName layerOpacity visible grungeFileName snowFileName strength rainFade "
                             "textureStrength saturationStrength brightnessStrength contrastStrength spotlightStrength "
                             "vingetteColorRed vingetteColorGreen vingetteColorBlue vingetteColorAlpha "
                             "vingetteColorStrength preSharpen preSharpenSize colorizeEdges strokeWidth strokeLength "
                             "sharpen sharpenSize brightenLight postSharpen postSharpenSize saturation contrast "
                             "smoothing strokeStyle";

juce::StringArray cells(const juce::String& row)
{
    juce::StringArray parts;
    parts.addTokens(row, "|", {});
    parts.trim();
    parts.removeEmptyStrings();
    return parts;
}

struct Expected
{
    juce::String name;
    std::map<juce::String, juce::String> values;
};

std::vector<Expected> expectedPresets()
{
    std::vector<Expected> presets;
    const auto columns = juce::StringArray::fromTokens(effectColumns, false);
    const auto sizes = juce::StringArray::fromTokens(sharpenSizes, false);
    for (const auto& line : juce::StringArray::fromLines(effectTable))
    {
        const auto row = cells(line);
        if (row.size() != 12)
            continue;
        Expected e;
        e.name = row[0];
        for (int c = 0; c < 11; ++c)
            e.values[columns[c]] = row[c + 1];
        e.values["sharpenSize"] = sizes[(int) presets.size()];
        for (auto [key, value] : { std::pair<const char*, const char*> { "layerName", "" }, { "layerOpacity", "1" },
                                   { "visible", "1" }, { "grungeFileName", "cloud-01" }, { "snowFileName", "1" },
                                   { "vingetteColorRed", "0" }, { "vingetteColorGreen", "0" }, { "vingetteColorBlue", "0" },
                                   { "vingetteColorAlpha", "255" }, { "strokeWidth", "0" }, { "postSharpenSize", "0.25" } })
            e.values[key] = value;
        presets.push_back(e);
    }
    const auto carried = juce::StringArray::fromTokens(carriedColumns, false);
    for (const auto& line : juce::StringArray::fromLines(carriedTable))
    {
        const auto row = cells(line);
        if (row.size() != 9)
            continue;
        for (const auto& number : juce::StringArray::fromTokens(row[0], ", ", {}))
            if (number.isNotEmpty())
                for (int c = 0; c < 8; ++c)
                    presets[(size_t) number.getIntValue() - 1].values[carried[c]] = row[c + 1];
    }
    return presets;
}

/** Reads a "VER2" file by hand: the tag, the count, then zero-terminated texts. */
bool parseVersion2(const juce::MemoryBlock& bytes, std::vector<std::pair<std::string, std::string>>& pairs)
{
    const auto* p = (const char*) bytes.getData();
    const size_t n = bytes.getSize();
    if (n < 8 || std::memcmp(p, "VER2", 4) != 0)
        return false;
    int32_t count;
    std::memcpy(&count, p + 4, 4);
    size_t at = 8;
    auto text = [&](std::string& out) {
        const void* zero = std::memchr(p + at, 0, n - at);
        if (zero == nullptr)
            return false;
        out.assign(p + at, (const char*) zero);
        at = (size_t) ((const char*) zero - p) + 1;
        return true;
    };
    for (int i = 0; i < count; ++i)
    {
        std::string k, v;
        if (! text(k) || ! text(v))
            return false;
        pairs.emplace_back(k, v);
    }
    return at == n;
}
} // namespace

TEST(BuiltInPresets, BytesFollowTheTableExactly)
{
    const auto expected = expectedPresets();
    ASSERT_EQ((int) expected.size(), BuiltInPresets::numPresets);
    const auto keys = juce::StringArray::fromTokens(keyOrder, false);
    ASSERT_EQ(keys.size(), 31);
    for (int i = 0; i < BuiltInPresets::numPresets; ++i)
    {
        SCOPED_TRACE(expected[(size_t) i].name);
        EXPECT_EQ(BuiltInPresets::getName(i), expected[(size_t) i].name);
        const auto bytes = BuiltInPresets::getPresetFile(i);
        EXPECT_GE(bytes.getSize(), 580u);
        EXPECT_LE(bytes.getSize(), 597u);
        std::vector<std::pair<std::string, std::string>> pairs;
        ASSERT_TRUE(parseVersion2(bytes, pairs)) << "nothing before, between or after the pairs";
        ASSERT_EQ(pairs.size(), 31u);
        for (int k = 0; k < 31; ++k)
        {
            EXPECT_EQ(juce::String(pairs[(size_t) k].first), keys[k]);
            EXPECT_EQ(juce::String(pairs[(size_t) k].second), expected[(size_t) i].values.at(keys[k])) << keys[k];
        }
    }
}

TEST(BuiltInPresets, ApplyingOneSetsTheTableValuesAndDefaultBlend)
{
    const auto expected = expectedPresets();
    for (int i : { 0, 17, 26 })
    {
        const auto bytes = BuiltInPresets::getPresetFile(i);
        juce::MemoryInputStream in(bytes, false);
        const auto contents = PresetFile::read(in);
        EXPECT_EQ(contents.form, PresetFile::Form::version2);
        SxPropertySet layer;
        layer.setInt("compositeMode", 5);
        ASSERT_TRUE(EffectPresets::apply(contents.settings, layer));
        const auto values = EffectPresetValues::readFrom(layer);
        const auto& table = expected[(size_t) i].values;
        EXPECT_FLOAT_EQ(values.strokeLength, table.at("strokeLength").getFloatValue());
        EXPECT_FLOAT_EQ(values.smoothing, table.at("smoothing").getFloatValue());
        EXPECT_EQ(values.strokeStyle, table.at("strokeStyle").getIntValue());
        EXPECT_EQ(values.preSharpenSize, table.at("preSharpenSize").getIntValue());
        EXPECT_EQ(values.compositeMode, 0) << "built-ins carry no blend mode";
        EXPECT_TRUE(values.visible);
    }
    // "18 Dark Lines" is one of the dark-taper built-ins.
    juce::MemoryInputStream in(BuiltInPresets::getPresetFile(17), true);
    EXPECT_EQ(EffectPresetValues::readFrom(PresetFile::read(in).settings).strokeStyle, 1);
}

TEST(BuiltInPresets, ResourcesAlternatePictureAndPresetInTableOrder)
{
    const auto resources = BuiltInPresets::getResources();
    ASSERT_EQ(resources.size(), 54u);
    EXPECT_EQ(resources[0].name, "01 Tornvale.jpg");
    EXPECT_EQ(resources[1].name, "01 Tornvale.pre");
    EXPECT_EQ(resources[53].name, "27 Very Detailed.pre");
    EXPECT_TRUE(BuiltInPresets::getPresetFolder().getFullPathName().endsWith("Tornvale Art/EffectPresets/Tornvale"));
}

TEST(BuiltInPresets, EveryBuiltInHasA200By200JpegThumbnail)
{
    for (int i = 0; i < BuiltInPresets::numPresets; ++i)
    {
        const auto bytes = BuiltInPresets::getThumbnail(i);
        const auto decoded = ImageFileReader::readMemory(bytes.getData(), bytes.getSize(), ImageFileType::jpeg);
        ASSERT_TRUE(decoded.ok()) << BuiltInPresets::getName(i) << ": " << decoded.error;
        EXPECT_EQ(decoded.image->width, 200);
        EXPECT_EQ(decoded.image->height, 200);
    }
    EXPECT_EQ(BuiltInPresets::getThumbnail(27).getSize(), 0u);
}

TEST(BuiltInPresets, WritingRestoresBuiltInsAndLeavesUserFilesAlone)
{
    const juce::TemporaryFile scratch;
    const juce::File folder = scratch.getFile().getChildFile("EffectPresets").getChildFile("Tornvale");
    EXPECT_FALSE(BuiltInPresets::hasPresets(folder));

    ASSERT_TRUE(BuiltInPresets::writeDefaultPresets(folder));
    EXPECT_TRUE(BuiltInPresets::hasPresets(folder));
    EXPECT_EQ(folder.getNumberOfChildFiles(juce::File::findFiles), 54); // each preset beside its thumbnail

    const juce::File mine = folder.getChildFile("My Look.pre");
    ASSERT_TRUE(mine.replaceWithText("mine"));
    const juce::File first = folder.getChildFile("01 Tornvale.pre");
    const juce::File last = folder.getChildFile("27 Very Detailed.pre");
    ASSERT_TRUE(first.replaceWithText("changed"));
    ASSERT_TRUE(last.deleteFile());

    ASSERT_TRUE(BuiltInPresets::writeDefaultPresets(folder));
    EXPECT_EQ(mine.loadFileAsString(), "mine");
    juce::MemoryBlock firstBytes, lastBytes;
    ASSERT_TRUE(first.loadFileAsData(firstBytes));
    EXPECT_EQ(firstBytes, BuiltInPresets::getPresetFile(0));
    ASSERT_TRUE(last.loadFileAsData(lastBytes));
    EXPECT_EQ(lastBytes, BuiltInPresets::getPresetFile(26));
    EXPECT_EQ(folder.getNumberOfChildFiles(juce::File::findFiles), 55) << "no temporary files left behind";
    scratch.getFile().deleteRecursively();
}

TEST(BuiltInPresets, HasPresetsWantsMoreThanOneEntryOrAFile)
{
    const juce::TemporaryFile scratch;
    const juce::File folder = scratch.getFile();
    ASSERT_TRUE(folder.createDirectory());
    EXPECT_FALSE(BuiltInPresets::hasPresets(folder));
    folder.getChildFile("a.pre").create();
    EXPECT_FALSE(BuiltInPresets::hasPresets(folder));
    folder.getChildFile("b.pre").create();
    EXPECT_TRUE(BuiltInPresets::hasPresets(folder));
    folder.deleteRecursively();
    ASSERT_TRUE(folder.replaceWithText("x"));
    EXPECT_TRUE(BuiltInPresets::hasPresets(folder));
    folder.deleteFile();
}
