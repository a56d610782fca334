// Property set readers meeting garbage: short, empty, random and lying input gives an empty
// result, leaves what the set held, and never allocates what a header claims. The allocation
// bound itself is enforced in the sanitizer run (max_allocation_size_mb), where these also run.

#include "CompactPictureStream.h"

#include "document/SxPropertySet.h"
#include "imaging/FileBytes.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
/** A stream that does not know its length, so no size check can lean on it. */
class UnsizedStream : public juce::InputStream
{
public:
    explicit UnsizedStream(const juce::MemoryBlock& b) : block(b) {}
    juce::int64 getTotalLength() override { return -1; }
    bool isExhausted() override { return position >= (juce::int64) block.getSize(); }
    int read(void* dest, int n) override
    {
        const int count = (int) std::min<juce::int64>(n, (juce::int64) block.getSize() - position);
        if (count <= 0)
            return 0;
        std::memcpy(dest, (const char*) block.getData() + position, (size_t) count);
        position += count;
        return count;
    }
    juce::int64 getPosition() override { return position; }
    bool setPosition(juce::int64) override { return false; }

private:
    juce::MemoryBlock block;
    juce::int64 position = 0;
};

juce::MemoryBlock validBinary()
{
    SxPropertySet set;
    set.setString("layerName", juce::String::fromUTF8("Zeichnung ü"));
    set.setString("strokeLength", "0.51");
    set.setString("empty", {});
    juce::MemoryOutputStream out;
    set.writeBinary(out);
    return out.getMemoryBlock();
}

SxPropertySet withContent()
{
    SxPropertySet set;
    set.setString("kept", "yes");
    return set;
}

void expectUntouched(SxPropertySet& set)
{
    EXPECT_EQ(set.size(), 1);
    EXPECT_EQ(set.getValue("kept"), "yes");
}

// A stream that knows its length and one that does not must both refuse the bytes and leave
// what the set held.
void expectRefusedFromBothStreams(const juce::MemoryBlock& bytes)
{
    SxPropertySet set = withContent();
    juce::MemoryInputStream in(bytes, false);
    EXPECT_FALSE(set.readBinary(in));
    expectUntouched(set);
    UnsizedStream unsized(bytes);
    EXPECT_FALSE(set.readBinary(unsized));
    expectUntouched(set);
}

juce::MemoryBlock header(int32_t count, const std::string& tail)
{
    juce::MemoryOutputStream out;
    out.writeInt(count);
    out.write(tail.data(), tail.size());
    return out.getMemoryBlock();
}
} // namespace

TEST(SxPropertySetBadInput, EveryTruncationLeavesTheSetAsItWas)
{
    const auto bytes = validBinary();
    for (size_t length = 0; length < bytes.getSize(); ++length)
    {
        SCOPED_TRACE((int) length);
        expectRefusedFromBothStreams(juce::MemoryBlock(bytes.getData(), length));
    }
}

TEST(SxPropertySetBadInput, HugeAndNegativeCountsAreRejected)
{
    for (int32_t count : { std::numeric_limits<int32_t>::max(), 1000000, -1, std::numeric_limits<int32_t>::min() })
    {
        SCOPED_TRACE(count);
        // Without a known length the loop must end with the data, not with the count.
        const auto started = juce::Time::getMillisecondCounterHiRes();
        expectRefusedFromBothStreams(header(count, std::string("a\0b\0", 4)));
        EXPECT_LT(juce::Time::getMillisecondCounterHiRes() - started, 1000.0);
    }
}

TEST(SxPropertySetBadInput, RandomBytesGiveNothing)
{
    std::mt19937 generator(2024);
    for (int round = 0; round < 2000; ++round)
    {
        juce::MemoryBlock bytes((size_t) (generator() % 600));
        for (size_t i = 0; i < bytes.getSize(); ++i)
            bytes[i] = (char) (generator() & 0xff);
        SxPropertySet set = withContent();
        juce::MemoryInputStream in(bytes, false);
        EXPECT_FALSE(set.readBinary(in)) << "round " << round;
        expectUntouched(set);
    }
}

TEST(SxPropertySetBadInput, InvalidUtf8AndOverlongStringsAreRefused)
{
    SxPropertySet set = withContent();
    // Bytes that are no UTF-8, and UTF-8 that is not in its shortest form: JUCE's own check lets
    // the overlong forms through, and its strings then overflow their copies.
    for (const std::string key : { std::string("\xff\xfe"), std::string("\xe0\x9a\x91"), std::string("\xc1\x81"),
                                   std::string("\xf0\x8f\xbf\xbf"), std::string("\xed\xa0\x80"),
                                   std::string("\xf4\x90\x80\x80"), std::string("a\xe2\x82") })
    {
        const auto invalid = header(1, key + std::string("\x00v\x00", 3));
        juce::MemoryInputStream in(invalid.getData(), invalid.getSize(), false);
        EXPECT_FALSE(set.readBinary(in)) << juce::String::toHexString(key.data(), (int) key.size());
        EXPECT_FALSE(FileBytes::isStrictUtf8(key.data(), key.size()));
        // Each byte here starts no whole sequence, save the letter: one U+FFFD a byte.
        EXPECT_EQ(FileBytes::toTextReplacingBadBytes(key.data(), key.size()).length(), (int) key.size());
        expectUntouched(set);
    }
    // The edges of the shortest forms pass, and read back as the same bytes.
    const std::string edges("\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
    juce::String text;
    ASSERT_TRUE(FileBytes::toText(edges.data(), edges.size(), text));
    EXPECT_EQ(text.toStdString(), edges);

    juce::MemoryOutputStream out;
    out.writeInt(1);
    out.writeString("k");
    out.writeString(juce::String::repeatedString("x", 5000));
    juce::MemoryInputStream limited(out.getData(), out.getDataSize(), false);
    EXPECT_FALSE(set.readBinary(limited, 4096));
    expectUntouched(set);
}

TEST(SxPropertySetBadInput, XmlThatIsNotAPlistOrLiesAboutPicturesGivesNothing)
{
    for (const char* text : { "<other><dict><key>a</key><string>1</string></dict></other>",
                              "<plist><array><key>a</key><string>1</string></array></plist>", "<plist/>" })
    {
        SCOPED_TRACE(text);
        SxPropertySet set = withContent();
        auto xml = juce::parseXML(text);
        ASSERT_NE(xml, nullptr);
        set.fromXml(*xml);
        EXPECT_EQ(set.size(), 0);
    }
    // A dangling key without its value is dropped; the pairs before it stay.
    SxPropertySet set;
    set.fromXml(*juce::parseXML("<plist><dict><key>a</key><string>1</string><key>b</key></dict></plist>"));
    EXPECT_EQ(set.getAllProperties().getAllKeys(), juce::StringArray({ "a" }));

    // A lying picture count must neither allocate nor loop for it; the corrupt picture is dropped.
    const auto started = juce::Time::getMillisecondCounterHiRes();
    set.fromXml(*juce::parseXML("<plist><dict><key>propertyImageCount</key><string>2000000000</string>"
                                "<key>propertyImage0_data</key><string>12.garbage</string></dict></plist>"));
    EXPECT_LT(juce::Time::getMillisecondCounterHiRes() - started, 1000.0);
    EXPECT_EQ(set.getNumImages(), 0);
}

TEST(SxPropertySetBadInput, PictureHeadersThatLieGiveNoPicture)
{
    auto readBack = [](const juce::String& data, bool raw, const char* width = "0", const char* height = "0") {
        SxPropertySet set;
        set.setString("p_data", data);
        set.setString("p_width", width);
        set.setString("p_height", height);
        auto colour = SxRef<SxImageRgbaBytes>::adopt(SxPropertySet::readImageFromDictionary(set, "p", raw));
        auto alpha = SxRef<SxImageAlphaByte>::adopt(SxPropertySet::readAlphaImageFromDictionary(set, "p", raw));
        return colour.get() != nullptr || alpha.get() != nullptr;
    };

    // The number before the dot sizes the decoded block; it must not be believed.
    for (const char* data : { "2000000000.AAAA", "-5.AAAA", "", "not base64 at all" })
        EXPECT_FALSE(readBack(data, false)) << data;

    // Gzip blocks whose headers claim 32767 × 32767 pixels, or zero or negative sides, but hold
    // four bytes of pixels.
    const std::pair<int16_t, int16_t> lyingSides[] = { { 32767, 32767 }, { 0, 4 }, { -1, 4 } };
    const uint8_t fourBytesOfPixels[4] = {};
    for (const auto& [w, h] : lyingSides)
        EXPECT_FALSE(readBack(compactStream(0, w, h, fourBytesOfPixels, 4).toBase64Encoding(), false)) << w << " x " << h;

    // Not gzip at all.
    EXPECT_FALSE(readBack(juce::MemoryBlock("plain text, no zlib", 19).toBase64Encoding(), false));

    // Raw form: sides that do not match the data, or are absurd.
    const juce::String fourBytes = juce::MemoryBlock("abcd", 4).toBase64Encoding();
    const std::pair<const char*, const char*> wrongSides[] = { { "1000000", "1000000" }, { "2", "1" }, { "-1", "-4" }, { "nan", "1" } };
    for (const auto& [w, h] : wrongSides)
        EXPECT_FALSE(readBack(fourBytes, true, w, h)) << w << " x " << h;
    EXPECT_TRUE(readBack(fourBytes, true, "1", "1")) << "the same data is fine with true sides";
}

TEST(SxPropertySetBadInput, XmlTextThatHangsTheParserIsRefused)
{
    // Found by the XML fuzzer: text, a processing instruction and text again inside one element
    // send juce::parseXML into an endless loop. Such text must be refused before it gets there.
    const char found[] =
        "<\077xml version=\0421.0\042 encoding=\042UTF-8\042\077>\015\012\015\012<plist>\015\012  <dict>\015"
        "\012    <key>layerName</key>\015\012    <string>Zeichn\213\213g &#252;</string>\015\012    <key>stro"
        "keLength</key>\015\012    <string>0.5099999904632568</string>\015\012    <key>compositeMode</key>"
        "\015\012    <string>0</string>\015\012    <key>visible</key>\015\012    <string>1</string>\015\012  "
        "  <key>propertyImageCount</key>\015\012    <string>1</string>\015\012  <\077xml versi<\077xml versio"
        "o  <key>propertyImage0_data</key>\015\012    <string>14.3w4XfIFXlAbA..vn.X.</string>\015\012    <key"
        ">propertyPath0</key>\015\012    <sn=\0421.0\042 encoding=\042UTF-8\042\077>\015\012\015\012tring>sou"
        "rce.png</stri<pling>\015\012  </dstictn=>\015\012\042><";
    const auto started = juce::Time::getMillisecondCounterHiRes();
    EXPECT_EQ(SxPropertySet::parseXmlText(juce::String::fromUTF8(found, (int) sizeof(found) - 1)), nullptr);
    EXPECT_EQ(SxPropertySet::parseXmlText("<plist><dict><key>a</key>x<?p?>y<string>1</string></dict></plist>"), nullptr);
    EXPECT_EQ(SxPropertySet::parseXmlText("<!DOCTYPE p [<!ENTITY e \"<x/>\">]><plist>&e;</plist>"), nullptr);
    // Found by the preset, project and hand-over fuzzers: an unclosed numeric reference makes the
    // parser step over the end of the text.
    for (const char* text : { "<.Fc>&#X", "<a>&#12</a>", "<a>&#x;</a>", "<a>&#123456789;</a>", "<a>&b;</a>", "<a>&</a>" })
        EXPECT_EQ(SxPropertySet::parseXmlText(text), nullptr) << text;
    const auto references = SxPropertySet::parseXmlText("<a>&amp;&LT;&#252;&#x41;</a>");
    ASSERT_NE(references, nullptr);
    EXPECT_EQ(references->getAllSubText(), juce::String::fromUTF8("&<\xc3\xbc" "A"));
    EXPECT_LT(juce::Time::getMillisecondCounterHiRes() - started, 1000.0);
}
