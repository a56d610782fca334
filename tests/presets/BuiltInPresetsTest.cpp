// Built-in presets: their bytes as the file layout wants them (read here by a parser of its own,
// not by the property set), that applying one gives the values its bytes hold, and how they
// reach the preset folder.

#include "imaging/ImageFileReader.h"
#include "presets/BuiltInPresets.h"
#include "presets/EffectPresetValues.h"
#include "presets/PresetFile.h"

#include <gtest/gtest.h>

#include <set>

namespace
{
const char* const keyOrder = "layerName layerOpacity visible grungeFileName snowFileName strength rainFade "
                             "textureStrength saturationStrength brightnessStrength contrastStrength spotlightStrength "
                             "vingetteColorRed vingetteColorGreen vingetteColorBlue vingetteColorAlpha "
                             "vingetteColorStrength preSharpen preSharpenSize colorizeEdges strokeWidth strokeLength "
                             "sharpen sharpenSize brightenLight postSharpen postSharpenSize saturation contrast "
                             "smoothing strokeStyle";

using Pairs = std::vector<std::pair<std::string, std::string>>;

/** Reads a "VER2" file by hand: the tag, the count, then zero-terminated texts. */
bool parseVersion2(const juce::MemoryBlock& bytes, Pairs& pairs)
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

juce::String valueIn(const Pairs& pairs, const char* key)
{
    for (const auto& [k, v] : pairs)
        if (k == key)
            return v;
    return "missing";
}
} // namespace

TEST(BuiltInPresets, EachIsAVersion2FileOfTheSameKeysAndAppliesAsItsBytesSay)
{
    const auto keys = juce::StringArray::fromTokens(keyOrder, false);
    std::set<std::string> distinct;
    for (int i = 0; i < BuiltInPresets::numPresets; ++i)
    {
        SCOPED_TRACE(BuiltInPresets::getName(i));
        EXPECT_TRUE(BuiltInPresets::getName(i).startsWith(juce::String(i + 1).paddedLeft('0', 2) + " "));
        const auto bytes = BuiltInPresets::getPresetFile(i);
        Pairs pairs;
        ASSERT_TRUE(parseVersion2(bytes, pairs)) << "nothing before, between or after the pairs";
        ASSERT_EQ(pairs.size(), (size_t) keys.size());
        std::string all;
        for (int k = 0; k < keys.size(); ++k)
        {
            EXPECT_EQ(juce::String(pairs[(size_t) k].first), keys[k]);
            all += pairs[(size_t) k].second + "|";
        }
        distinct.insert(all);
        EXPECT_EQ(valueIn(pairs, "layerName"), "") << "an empty name shows the layer's own";

        // The reader and the effect see what the bytes hold; built-ins carry no blend mode.
        juce::MemoryInputStream in(bytes, false);
        const auto contents = PresetFile::read(in);
        EXPECT_EQ(contents.form, PresetFile::Form::version2);
        SxPropertySet layer;
        layer.setInt("compositeMode", 5);
        ASSERT_TRUE(EffectPresets::apply(contents.settings, layer));
        const auto values = EffectPresetValues::readFrom(layer);
        EXPECT_FLOAT_EQ(values.strokeLength, valueIn(pairs, "strokeLength").getFloatValue());
        EXPECT_FLOAT_EQ(values.smoothing, valueIn(pairs, "smoothing").getFloatValue());
        EXPECT_FLOAT_EQ(values.contrast, valueIn(pairs, "contrast").getFloatValue());
        EXPECT_EQ(values.strokeStyle, valueIn(pairs, "strokeStyle").getIntValue());
        EXPECT_EQ(values.preSharpenSize, valueIn(pairs, "preSharpenSize").getIntValue());
        EXPECT_EQ(values.compositeMode, 0);
        EXPECT_TRUE(values.visible);

        // Every built-in has its 200 by 200 JPEG thumbnail.
        const auto thumbnail = BuiltInPresets::getThumbnail(i);
        const auto decoded = ImageFileReader::readMemory(thumbnail.getData(), thumbnail.getSize(), ImageFileType::jpeg);
        ASSERT_TRUE(decoded.ok()) << decoded.error;
        EXPECT_EQ(decoded.image->width, 200);
        EXPECT_EQ(decoded.image->height, 200);
    }
    EXPECT_EQ((int) distinct.size(), BuiltInPresets::numPresets) << "two presets hold the same values";
    EXPECT_EQ(BuiltInPresets::getThumbnail(BuiltInPresets::numPresets).getSize(), 0u);
    EXPECT_EQ(BuiltInPresets::getPresetFile(-1).getSize(), 0u);
}

TEST(BuiltInPresets, ResourcesAlternatePictureAndPresetInTableOrder)
{
    const auto resources = BuiltInPresets::getResources();
    ASSERT_EQ(resources.size(), (size_t) BuiltInPresets::numPresets * 2);
    for (int i = 0; i < BuiltInPresets::numPresets; ++i)
    {
        EXPECT_EQ(resources[(size_t) i * 2].name, BuiltInPresets::getName(i) + ".jpg");
        EXPECT_EQ(resources[(size_t) i * 2 + 1].name, BuiltInPresets::getName(i) + ".pre");
        EXPECT_EQ(resources[(size_t) i * 2 + 1].bytes, BuiltInPresets::getPresetFile(i));
    }
    EXPECT_TRUE(BuiltInPresets::getPresetFolder().getFullPathName().endsWith("Tornvale Art/EffectPresets/Tornvale"));
}

TEST(BuiltInPresets, WritingRestoresBuiltInsAndLeavesUserFilesAlone)
{
    const juce::TemporaryFile scratch;
    const juce::File folder = scratch.getFile().getChildFile("EffectPresets").getChildFile("Tornvale");
    EXPECT_FALSE(BuiltInPresets::hasPresets(folder));

    ASSERT_TRUE(BuiltInPresets::writeDefaultPresets(folder));
    EXPECT_TRUE(BuiltInPresets::hasPresets(folder));
    const int shipped = BuiltInPresets::numPresets * 2; // each preset beside its thumbnail
    EXPECT_EQ(folder.getNumberOfChildFiles(juce::File::findFiles), shipped);

    const juce::File mine = folder.getChildFile("My Look.pre");
    ASSERT_TRUE(mine.replaceWithText("mine"));
    const juce::File first = folder.getChildFile(BuiltInPresets::getName(0) + ".pre");
    const int lastIndex = BuiltInPresets::numPresets - 1;
    const juce::File last = folder.getChildFile(BuiltInPresets::getName(lastIndex) + ".pre");
    ASSERT_TRUE(first.replaceWithText("changed"));
    ASSERT_TRUE(last.deleteFile());

    ASSERT_TRUE(BuiltInPresets::writeDefaultPresets(folder));
    EXPECT_EQ(mine.loadFileAsString(), "mine");
    juce::MemoryBlock firstBytes, lastBytes;
    ASSERT_TRUE(first.loadFileAsData(firstBytes));
    EXPECT_EQ(firstBytes, BuiltInPresets::getPresetFile(0));
    ASSERT_TRUE(last.loadFileAsData(lastBytes));
    EXPECT_EQ(lastBytes, BuiltInPresets::getPresetFile(lastIndex));
    EXPECT_EQ(folder.getNumberOfChildFiles(juce::File::findFiles), shipped + 1) << "no temporary files left behind";
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
