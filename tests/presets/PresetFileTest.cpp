// Preset files: "VER2" and "VER3" carry the same state, the writer's embedded preview is a real
// 400 × 400 JPEG where its header says, and saving replaces a preset without leaving strays.

#include "document/LayerManager.h"
#include "document/ProjectFile.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"
#include "presets/EffectPresetValues.h"
#include "presets/PresetFile.h"
#include "imaging/ImageRGBAPixelData.h"

#include <gtest/gtest.h>

namespace
{
SxPropertySet effectKeys()
{
    EffectPresetValues v;
    v.layerName = juce::String::fromUTF8("Kohle ü");
    v.layerOpacity = 0.75f;
    v.visible = false;
    v.compositeMode = 3;
    v.preSharpen = 0.33f;
    v.preSharpenSize = 2;
    v.colorizeEdges = 0.9f;
    v.strokeLength = 0.51f;
    v.sharpen = 0.125f;
    v.brightenLight = 1.0f;
    v.postSharpen = 0.65f;
    v.saturation = 0.25f;
    v.contrast = 0.4f;
    v.smoothing = 0.76f;
    v.strokeStyle = 1;
    SxPropertySet set;
    v.writeTo(set);
    return set;
}

juce::MemoryBlock version2(const SxPropertySet& set)
{
    juce::MemoryOutputStream out;
    out.write("VER2", 4);
    set.writeBinary(out);
    return out.getMemoryBlock();
}

juce::MemoryBlock version3(const SxPropertySet& set, const SxImageRgbaBytes* composite)
{
    juce::MemoryOutputStream out;
    EXPECT_TRUE(PresetFile::write(out, set, composite));
    return out.getMemoryBlock();
}

PresetFile::Contents readBytes(const juce::MemoryBlock& bytes)
{
    juce::MemoryInputStream in(bytes, false);
    return PresetFile::read(in);
}

SxImageRgbaBytes* solid(int w, int h, uint8_t r, uint8_t g, uint8_t b)
{
    auto* image = new SxImageRgbaBytes(w, h);
    for (size_t i = 0; i < image->byteCount(); i += 4)
    {
        image->pixels[i] = 255;
        image->pixels[i + 1] = r;
        image->pixels[i + 2] = g;
        image->pixels[i + 3] = b;
    }
    return image;
}

int32_t wordAt(const juce::MemoryBlock& bytes, size_t offset)
{
    return (int32_t) juce::ByteOrder::littleEndianInt((const char*) bytes.getData() + offset);
}
} // namespace

TEST(PresetFileRead, BothVersionsRestoreTheSameState)
{
    const SxPropertySet keys = effectKeys();
    auto composite = SxRef<SxImageRgbaBytes>::adopt(solid(64, 32, 200, 10, 10));
    const auto two = readBytes(version2(keys));
    const auto three = readBytes(version3(keys, composite.get()));
    EXPECT_EQ(two.form, PresetFile::Form::version2);
    EXPECT_EQ(three.form, PresetFile::Form::version3);
    auto twoSettings = two.settings, threeSettings = three.settings, expected = keys;
    EXPECT_EQ(twoSettings.getAllProperties(), expected.getAllProperties());
    EXPECT_EQ(threeSettings.getAllProperties(), expected.getAllProperties());

    SxPropertySet fromTwo, fromThree;
    ASSERT_TRUE(EffectPresets::apply(two.settings, fromTwo));
    ASSERT_TRUE(EffectPresets::apply(three.settings, fromThree));
    EXPECT_EQ(fromTwo.getAllProperties(), fromThree.getAllProperties());
    EXPECT_TRUE(EffectPresetValues::readFrom(fromThree) == EffectPresetValues::readFrom(keys));
}

TEST(PresetFileRead, InterruptedSaveStillApplies)
{
    // The words stay zero when a save dies before seeking back.
    juce::MemoryOutputStream out;
    out.write("VER3", 4);
    out.writeInt(0);
    out.writeInt(0);
    effectKeys().writeBinary(out);
    const auto bytes = out.getMemoryBlock();
    const auto contents = readBytes(bytes);
    EXPECT_EQ(contents.form, PresetFile::Form::version3);
    EXPECT_EQ(contents.jpegOffset, 0);
    EXPECT_EQ(EffectPresetValues::readFrom(contents.settings).strokeStyle, 1);
    juce::MemoryInputStream in(bytes, false);
    EXPECT_FALSE(PresetFile::readEmbeddedPreview(in).isValid()) << "no preview: it will be rendered";
}

TEST(PresetFileRead, ShortPresetSetsMissingControlsToDefaults)
{
    SxPropertySet layer = effectKeys();
    SxPropertySet preset;
    preset.setString("strokeLength", "0.2");
    preset.setString("strokeLength", "0.3");
    ASSERT_TRUE(EffectPresets::apply(preset, layer));
    const auto v = EffectPresetValues::readFrom(layer);
    EXPECT_FLOAT_EQ(v.strokeLength, 0.3f);
    EXPECT_FLOAT_EQ(v.smoothing, 0.0f);
    EXPECT_EQ(v.strokeStyle, 0);
    EXPECT_FLOAT_EQ(v.layerOpacity, 1.0f);
    EXPECT_TRUE(v.visible);
    EXPECT_EQ(v.layerName, "");

    SxPropertySet untouched = effectKeys();
    EXPECT_FALSE(EffectPresets::apply(SxPropertySet(), untouched)) << "an empty preset applies nothing";
    EXPECT_TRUE(EffectPresetValues::readFrom(untouched) == EffectPresetValues::readFrom(effectKeys()));
}

TEST(PresetFileRead, LegacyFormsAreRecognised)
{
    const juce::String xml = "<PROPERTIES strokeLength=\"0.4\"><VALUE name=\"smoothing\" val=\"0.6\"/></PROPERTIES>";
    const auto legacyXml = readBytes(juce::MemoryBlock(xml.toRawUTF8(), xml.getNumBytesAsUTF8()));
    EXPECT_EQ(legacyXml.form, PresetFile::Form::legacyXml);
    EXPECT_EQ(legacyXml.settings.getValue("strokeLength"), "0.4");
    EXPECT_EQ(legacyXml.settings.getValue("smoothing"), "0.6");

    SxPropertySet keys;
    keys.setString("contrast", "0.9");
    const juce::String plist = keys.toXml()->toString();
    const auto legacyPlist = readBytes(juce::MemoryBlock(plist.toRawUTF8(), plist.getNumBytesAsUTF8()));
    EXPECT_EQ(legacyPlist.form, PresetFile::Form::legacyXml);
    EXPECT_EQ(legacyPlist.settings.getValue("contrast"), "0.9");

    const char text[] = "strokeLength 0.5\nsmoothing 0.2\n";
    const auto legacyText = readBytes(juce::MemoryBlock(text, sizeof(text) - 1));
    EXPECT_EQ(legacyText.form, PresetFile::Form::legacyText);
    EXPECT_EQ(legacyText.settings.size(), 0);
    EXPECT_EQ(legacyText.legacyLines[1], "smoothing 0.2");
}

TEST(PresetFileWrite, EmbeddedPreviewIsA400SquareJpegAtItsStatedOffset)
{
    // A wide red picture: red in the middle, black letterbox bars above and below.
    auto composite = SxRef<SxImageRgbaBytes>::adopt(solid(800, 200, 220, 20, 20));
    const auto bytes = version3(effectKeys(), composite.get());
    ASSERT_EQ(std::memcmp(bytes.getData(), "VER3", 4), 0);
    const int32_t offset = wordAt(bytes, 4), length = wordAt(bytes, 8);
    EXPECT_EQ(offset + length, (int32_t) bytes.getSize()) << "the picture ends the file";

    // Decode only the stated range, as an outside reader would.
    juce::MemoryInputStream range((const char*) bytes.getData() + offset, (size_t) length, false);
    juce::JPEGImageFormat jpeg;
    ASSERT_TRUE(jpeg.canUnderstand(range));
    range.setPosition(0);
    const juce::Image picture = jpeg.decodeImage(range);
    ASSERT_TRUE(picture.isValid());
    EXPECT_EQ(picture.getWidth(), 400);
    EXPECT_EQ(picture.getHeight(), 400);
    // JPEG is lossy; 40 levels is well inside the difference between the colours compared.
    const auto centre = picture.getPixelAt(200, 200);
    EXPECT_NEAR(centre.getRed(), 220, 40);
    EXPECT_NEAR(centre.getGreen(), 20, 40);
    const auto bar = picture.getPixelAt(200, 20);
    EXPECT_LT(bar.getRed() + bar.getGreen() + bar.getBlue(), 60) << "letterbox bars are black";

    juce::MemoryInputStream whole(bytes, false);
    const juce::Image embedded = PresetFile::readEmbeddedPreview(whole);
    ASSERT_TRUE(embedded.isValid());
    EXPECT_EQ(embedded.getWidth(), 400);
}

TEST(PresetFileWrite, SavingReplacesThePresetAndRemovesStrays)
{
    const juce::TemporaryFile scratch;
    const juce::File folder = scratch.getFile();
    const juce::File preset = folder.getChildFile("Mine.pre");
    ASSERT_TRUE(folder.createDirectory());
    ASSERT_TRUE(preset.replaceWithText("an old preset"));
    ASSERT_TRUE(folder.getChildFile("Mine.jpg").replaceWithText("stale"));
    ASSERT_TRUE(folder.getChildFile("Mine.prel").replaceWithText("older form"));

    auto composite = SxRef<SxImageRgbaBytes>::adopt(solid(30, 40, 0, 0, 255));
    ASSERT_TRUE(PresetFile::writeFile(preset, effectKeys(), composite.get()));
    EXPECT_EQ(folder.getNumberOfChildFiles(juce::File::findFiles), 1);
    const auto contents = PresetFile::readFile(preset);
    EXPECT_EQ(contents.form, PresetFile::Form::version3);
    EXPECT_EQ(EffectPresetValues::readFrom(contents.settings).layerName, juce::String::fromUTF8("Kohle ü"));

    // A folder that cannot be made leaves nothing half written and reports failure.
    const juce::File blocked = folder.getChildFile("Mine.pre").getChildFile("inside.pre");
    EXPECT_FALSE(PresetFile::writeFile(blocked, effectKeys(), composite.get()));
    EXPECT_EQ(PresetFile::readFile(preset).settings.size(), effectKeys().size()) << "the existing preset is intact";
    folder.deleteRecursively();
}

namespace
{
juce::StringArray effectKeysInOrder(SxPropertySet set)
{
    juce::StringArray keys;
    for (const auto& key : set.getAllProperties().getAllKeys())
        if (EffectParameterTable::find(key) != nullptr)
            keys.add(key);
    return keys;
}
} // namespace

TEST(EffectSettingsFiles, PresetsAndProjectsListTheKeysInTheSavedOrderAndAMissingKeyReadsZero)
{
    // The order files have always had: "smoothing" tenth, after "contrast".
    const juce::StringArray order { "preSharpen", "preSharpenSize", "colorizeEdges", "strokeLength", "sharpen", "brightenLight",
                                    "postSharpen", "saturation", "contrast", "smoothing", "strokeStyle" };
    registerTornvaleEffect();
    auto picture = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(32, 24));
    LayerManager stack;
    stack.addLayer(new StaticImageLayer(picture.get()));
    auto* effect = new TornvaleEffect(TornvaleEffect::DefaultsOnly {});
    stack.addLayer(effect);
    effect->smoothing = 0.6f;

    SxPropertySet layerKeys;
    effect->saveToDictionary(layerKeys, {});
    juce::MemoryOutputStream presetBytes;
    ASSERT_TRUE(PresetFile::write(presetBytes, layerKeys, picture.get()));
    const auto preset = readBytes(presetBytes.getMemoryBlock());
    EXPECT_EQ(effectKeysInOrder(preset.settings), order);

    juce::TemporaryFile projectFile(".qhp");
    ASSERT_TRUE(ProjectFile::save(projectFile.getFile(), stack, *picture, 72.0, 72.0));
    const auto project = ProjectFile::readFile(projectFile.getFile());
    ASSERT_NE(project, nullptr);
    auto xml = Layer::parseDictionaryXml(project->settings.getValue("EffectDictionary1", {}));
    ASSERT_NE(xml, nullptr);
    SxPropertySet projectKeys;
    projectKeys.fromXml(*xml);
    EXPECT_EQ(effectKeysInOrder(projectKeys), order);

    // A preset is a whole state: without "smoothing" it sets smoothing to 0.
    SxPropertySet withoutSmoothing = preset.settings;
    withoutSmoothing.removeValue("smoothing");
    effect->restoreFromDictionary(withoutSmoothing, {});
    EXPECT_EQ(effect->smoothing, 0.0f);
    EXPECT_FLOAT_EQ(effect->strokeLength, 0.5f);
}
