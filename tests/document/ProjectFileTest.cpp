// Project files: the current form with its preview, the two older forms, and what a reader does
// with files that are short, corrupt or lie about their sizes.

#include "ProjectFileTestSupport.h"
#include "TestLayers.h"

#include "document/StaticImageLayer.h"
#include "imaging/ImageRGBAPixelData.h"

#include <gtest/gtest.h>

using namespace ProjectFileTestSupport;

static juce::File regressionFile(const char* name)
{
    return juce::File(TORNVALE_SOURCE_DIR).getChildFile("tests/document/regressions").getChildFile(name);
}

TEST(ProjectFileRead, EveryFormRoundTripsSettingsAndPicture)
{
    // "VER3" with its resolution and preview; "VER2" has no preview; the oldest form is XML text
    // with the picture stream behind it.
    auto picture = makePicture(37, 23);
    SxPropertySet settings;
    settings.setString("strokeLength", "0.75");
    settings.setString("name", juce::String::fromUTF8("Ström"));
    for (const auto& [version, bytes] : { std::make_pair(3, writeProject(settings, *picture, 300.0, 150.0)),
                                          std::make_pair(2, writeVersion2(settings, *picture)),
                                          std::make_pair(1, writeOldestForm(settings, *picture)) })
    {
        juce::MemoryInputStream in(bytes, false);
        auto document = ProjectFile::read(in);
        ASSERT_NE(document, nullptr) << version;
        EXPECT_EQ(document->version, version);
        ASSERT_NE(document->image.get(), nullptr) << version;
        EXPECT_TRUE(samePixels(*document->image, *picture)) << version;
        EXPECT_EQ(document->settings.getValue("strokeLength", {}), "0.75") << version;
        EXPECT_EQ(document->settings.getValue("name", {}), juce::String::fromUTF8("Ström")) << version;
        EXPECT_FALSE(document->settings.containsKey("ORIG_IMAGE_data")) << version;
        if (version == 3)
        {
            EXPECT_EQ(std::memcmp(bytes.getData(), "VER3", 4), 0);
            EXPECT_DOUBLE_EQ(document->widthDpi, 300.0);
            EXPECT_DOUBLE_EQ(document->heightDpi, 150.0);
        }
    }
}

TEST(ProjectFileWrite, PreviewIsA400SquareJpegAtItsStatedOffset)
{
    auto picture = makePicture(120, 60);
    const auto bytes = writeProject(SxPropertySet(), *picture, 72.0, 72.0);
    const auto* data = static_cast<const uint8_t*>(bytes.getData());
    const int32_t offset = (int32_t) juce::ByteOrder::littleEndianInt(data + 4);
    const int32_t size = (int32_t) juce::ByteOrder::littleEndianInt(data + 8);
    ASSERT_GT(offset, 12);
    ASSERT_EQ((size_t) offset + (size_t) size, bytes.getSize()) << "the preview is the last block";

    // Decoded by the codec directly from the stated offset, not through the project reader.
    juce::MemoryInputStream jpegBytes(data + offset, (size_t) size, false);
    juce::JPEGImageFormat jpeg;
    const juce::Image preview = jpeg.decodeImage(jpegBytes);
    ASSERT_TRUE(preview.isValid());
    EXPECT_EQ(preview.getWidth(), 400);
    EXPECT_EQ(preview.getHeight(), 400);
    // A wide picture fits across and leaves grey bands above and below.
    const juce::Colour band = preview.getPixelAt(200, 10);
    for (int channel : { band.getRed(), band.getGreen(), band.getBlue() })
        EXPECT_NEAR(channel, 127, 4);

    juce::MemoryInputStream whole(bytes, false);
    auto decoded = ProjectFile::readPreview(whole);
    ASSERT_NE(decoded.get(), nullptr);
    EXPECT_EQ(decoded->width, 400);
    EXPECT_EQ(decoded->height, 400);
}

TEST(ProjectFileWrite, SavedFileHoldsTheStackAndLoadsBack)
{
    TestPrototypes prototypes;
    auto picture = makePicture(64, 48);
    LayerManager manager;
    manager.addLayer(new StaticImageLayer(picture.get()));
    auto* tint = new TintLayer();
    tint->red = 180;
    tint->alpha = 200;
    manager.addLayer(tint);

    juce::TemporaryFile folder;
    const juce::File file = folder.getFile().getChildFile("nested").getChildFile("work.qhp");
    ASSERT_TRUE(ProjectFile::save(file, manager, *picture, 96.0, 96.0));

    auto document = ProjectFile::readFile(file);
    ASSERT_NE(document, nullptr);
    EXPECT_TRUE(samePixels(*document->image, *picture));

    // The tint's settings show in the rendered pixels.
    LayerManager restored;
    restored.addLayer(new StaticImageLayer(document->image.get()));
    restored.restoreFromDictionary(document->settings, nullptr, {}, false);
    ASSERT_EQ(restored.getNumLayers(), 2);
    EXPECT_TRUE(samePixels(*restored.render(nullptr, false, false), *manager.render(nullptr, false, false)));
    folder.getFile().deleteRecursively();
}

TEST(ProjectFileRead, ZeroPreviewFieldsStillLoadTheDictionary)
{
    auto picture = makePicture(9, 7);
    auto bytes = writeProject(SxPropertySet(), *picture, 72.0, 72.0);
    // As a writer that stopped before the seek-back leaves it.
    std::memset(static_cast<char*>(bytes.getData()) + 4, 0, 8);
    juce::MemoryInputStream in(bytes, false);
    auto document = ProjectFile::read(in);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->previewOffset, 0);
    EXPECT_TRUE(samePixels(*document->image, *picture));
    juce::MemoryInputStream again(bytes, false);
    EXPECT_EQ(ProjectFile::readPreview(again).get(), nullptr);
}

TEST(ProjectFileRead, GarbageAndFuzzerFindingsGiveNoDocument)
{
    // Besides the made-up damage, the fuzzer's finds: an oldest-form file whose picture stream is
    // whole but holds no pixels, and one whose XML text is not UTF-8, which JUCE's parser would
    // read past the end of.
    auto inputs = badInputs();
    for (const char* name : { "project_empty_picture.qhp", "project_invalid_utf8.qhp" })
    {
        inputs.push_back({ name, {} });
        ASSERT_TRUE(regressionFile(name).loadFileAsData(inputs.back().bytes)) << name;
    }
    for (const auto& bad : inputs)
    {
        juce::MemoryInputStream in(bad.bytes, false);
        EXPECT_EQ(ProjectFile::read(in), nullptr) << bad.name;
        juce::MemoryInputStream previewIn(bad.bytes, false);
        ProjectFile::readPreview(previewIn);
    }
}

TEST(ProjectFileRead, UnreadableLayerTextRestoresDefaults)
{
    // Text that is not UTF-8 in a layer's dictionary, which the stack parses on restore.
    TestPrototypes prototypes;
    SxPropertySet set;
    set.setInt("LayerCount", 1);
    set.setString("ClassName1", "TintLayer");
    // Zero padding behind the bytes, because JUCE's string walks a bad lead byte's tail too.
    const char text[64] = "<plist><dict><key>tintRed</key>\xff\xff\xff";
    set.setString("EffectDictionary1", juce::String::fromUTF8(text, (int) std::strlen(text)));
    LayerManager manager;
    auto picture = makePicture(4, 4);
    manager.addLayer(new StaticImageLayer(picture.get()));
    manager.restoreFromDictionary(set, nullptr, {}, false);
    ASSERT_EQ(manager.getNumLayers(), 2);
    EXPECT_EQ(static_cast<TintLayer*>(manager.getLayer(1))->red, 0) << "unreadable text restores defaults";
}

TEST(ProjectFileRead, DamagedPreviewIsRefusedWhileTheDocumentLoads)
{
    // Found by fuzz_project_reader: a preview whose JPEG data was overwritten made the codec
    // write outside its buffers.
    juce::MemoryBlock bytes;
    ASSERT_TRUE(regressionFile("project_damaged_preview.qhp").loadFileAsData(bytes));
    juce::MemoryInputStream in(bytes, false);
    EXPECT_EQ(ProjectFile::readPreview(in).get(), nullptr);
    juce::MemoryInputStream whole(bytes, false);
    ProjectFile::read(whole);

    // The same kind of damage made on purpose: a run of repeated bytes inside the preview's scan.
    auto picture = makePicture(30, 30);
    auto project = writeProject(SxPropertySet(), *picture, 72.0, 72.0);
    auto* data = static_cast<uint8_t*>(project.getData());
    const int32_t offset = (int32_t) juce::ByteOrder::littleEndianInt(data + 4);
    const int32_t size = (int32_t) juce::ByteOrder::littleEndianInt(data + 8);
    for (int32_t i = offset + size / 2; i < offset + size / 2 + 64 && i < offset + size; ++i)
        data[i] = 0xC4;
    juce::MemoryInputStream damaged(project, false);
    auto preview = ProjectFile::readPreview(damaged);
    if (preview.get() != nullptr)
        EXPECT_EQ(preview->width, 400) << "a decoder may repair the scan, but never change the size";
    juce::MemoryInputStream document(project, false);
    EXPECT_NE(ProjectFile::read(document), nullptr) << "the settings do not depend on the preview";
}

TEST(ProjectFileRead, EveryTruncationOfAValidFileIsSafe)
{
    auto picture = makePicture(20, 10);
    SxPropertySet settings;
    settings.setString("strokeLength", "0.5");
    for (const auto& bytes : { writeProject(settings, *picture, 72.0, 72.0), writeVersion2(settings, *picture),
                               writeOldestForm(settings, *picture) })
    {
        const auto* data = static_cast<const char*>(bytes.getData());
        // Cut before the end of the dictionary: no picture, no document. (A "VER3" cut inside
        // the preview still loads, since the preview is not needed.)
        const size_t dictionaryEnd = dictionaryEndOf(bytes);
        for (size_t length = 0; length < dictionaryEnd; length += 1 + length / 16)
        {
            juce::MemoryInputStream in(data, length, false);
            EXPECT_EQ(ProjectFile::read(in), nullptr) << "length " << length;
        }
    }
}
