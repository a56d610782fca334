// Preset reader meeting garbage: whatever arrives, the answer is an empty set and no crash.
// These cases also run under AddressSanitizer, which refuses oversized allocations there.

#include "presets/PresetFile.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
juce::MemoryBlock validVersion3()
{
    SxPropertySet set;
    set.setString("strokeLength", "0.51");
    set.setString("layerName", juce::String::fromUTF8("ü"));
    juce::MemoryOutputStream out;
    out.write("VER3", 4);
    out.writeInt(0);
    out.writeInt(0);
    set.writeBinary(out);
    return out.getMemoryBlock();
}

PresetFile::Contents readBytes(const void* data, size_t size)
{
    juce::MemoryInputStream in(data, size, false);
    return PresetFile::read(in);
}
} // namespace

TEST(PresetFileBadInput, TruncatedFilesGiveNothing)
{
    const auto bytes = validVersion3();
    for (size_t length = 0; length < bytes.getSize(); ++length)
        EXPECT_EQ(readBytes(bytes.getData(), length).settings.size(), 0) << length;
    EXPECT_EQ(readBytes(bytes.getData(), bytes.getSize()).settings.size(), 2);
}

TEST(PresetFileBadInput, RandomBytesGiveNothing)
{
    std::mt19937 generator(7);
    for (int round = 0; round < 2000; ++round)
    {
        std::vector<char> bytes(generator() % 700);
        for (auto& b : bytes)
            b = (char) (generator() & 0xff);
        // Half the rounds wear a valid tag, so the pair reader sees the garbage too.
        if (round % 2 == 0 && bytes.size() >= 4)
            std::memcpy(bytes.data(), round % 4 == 0 ? "VER2" : "VER3", 4);
        const auto contents = readBytes(bytes.data(), bytes.size());
        EXPECT_EQ(contents.settings.size(), 0) << "round " << round;
    }
}

TEST(PresetFileBadInput, HugeCountsAndStringsGiveNothing)
{
    juce::MemoryOutputStream huge;
    huge.write("VER2", 4);
    huge.writeInt(std::numeric_limits<int32_t>::max());
    huge.writeString("k");
    huge.writeString("v");
    EXPECT_EQ(readBytes(huge.getData(), huge.getDataSize()).settings.size(), 0);

    // One value longer than any preset could hold.
    juce::MemoryOutputStream longValue;
    longValue.write("VER2", 4);
    longValue.writeInt(1);
    longValue.writeString("k");
    longValue.writeString(juce::String::repeatedString("x", PresetFile::maxStringBytes + 1));
    EXPECT_EQ(readBytes(longValue.getData(), longValue.getDataSize()).settings.size(), 0);
}

TEST(PresetFileBadInput, PreviewOffsetsOutsideTheFileGiveNoPicture)
{
    for (int32_t offset : { -100, 3, 1 << 30, std::numeric_limits<int32_t>::max() })
    {
        auto bytes = validVersion3();
        std::memcpy((char*) bytes.getData() + 4, &offset, 4);
        juce::MemoryInputStream in(bytes, false);
        EXPECT_FALSE(PresetFile::readEmbeddedPreview(in).isValid()) << offset;
        EXPECT_EQ(readBytes(bytes.getData(), bytes.getSize()).settings.size(), 2) << "the words do not matter to the pairs";
    }
}

TEST(PresetFileBadInput, MissingFileAndBinaryLegacyDataGiveNothing)
{
    EXPECT_EQ(PresetFile::readFile(juce::File("/nonexistent/folder/x.pre")).form, PresetFile::Form::unreadable);
    const char binary[] = "\x01\x02\x03\x04\xff\xfe\x00\x10";
    const auto contents = readBytes(binary, sizeof(binary));
    EXPECT_EQ(contents.form, PresetFile::Form::unreadable);
    EXPECT_EQ(contents.settings.size(), 0);
}

TEST(PresetFileBadInput, CorruptEmbeddedPreviewDoesNotTakeTheProcessDown)
{
    // Found by the preset fuzzer: a "VER3" file whose preview is a damaged JPEG. The pairs are
    // still a matter of the pair reader; the preview must simply not decode.
    const juce::File file = juce::File(TORNVALE_SOURCE_DIR).getChildFile("tests/presets/regressions/corrupt-preview-jpeg.pre");
    juce::MemoryBlock bytes;
    ASSERT_TRUE(file.loadFileAsData(bytes));
    juce::MemoryInputStream in(bytes, false);
    const juce::Image preview = PresetFile::readEmbeddedPreview(in);
    EXPECT_TRUE(! preview.isValid() || (preview.getWidth() <= 400 && preview.getHeight() <= 400));
    readBytes(bytes.getData(), bytes.getSize());
}

TEST(PresetFileBadInput, LegacyXmlWithBrokenUtf8GivesNothing)
{
    // Found by the XML fuzzer: made into text unchecked, these bytes gain a zero character and
    // send juce::parseXML past the end of its buffer. The legacy reader must refuse them first.
    const char found[] =
        "<\077xml version=\0421.0\042 encoding=\042UTF-8\042\077>\015\012\015\012<plist>\015\012  <dict>\015"
        "\012    <key>laeichnung &\3402u2;</string>\015\012    <key1stro\377\377\377\377\377\377\377\377\377"
        "\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377"
        "\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377"
        "\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377"
        "\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377keLeng</key>\015"
        " s  <\012 trkey>compositeMode</key>\015\012    <string>2</string>\015\012  FXlAbA..vn.}X.</striing>s"
        "ource.p</dict>\015\012</plist>\015\012";
    const auto contents = readBytes(found, sizeof(found) - 1);
    EXPECT_EQ(contents.form, PresetFile::Form::unreadable);
    EXPECT_EQ(contents.settings.size(), 0);
}
