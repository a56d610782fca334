// Property sets: both forms on disk round-trip keys, values, order and pictures; pictures are
// shared between copies, never duplicated.

#include "document/SxPropertySet.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

namespace
{
juce::MemoryBlock binaryOf(const SxPropertySet& set)
{
    juce::MemoryOutputStream out;
    EXPECT_TRUE(set.writeBinary(out));
    return out.getMemoryBlock();
}

SxPropertySet throughBinary(const SxPropertySet& set)
{
    const auto bytes = binaryOf(set);
    juce::MemoryInputStream in(bytes, false);
    SxPropertySet back;
    back.readBinary(in);
    return back;
}

SxPropertySet throughXmlText(const SxPropertySet& set)
{
    const juce::String text = set.toXml()->toString();
    SxPropertySet back;
    if (auto xml = juce::parseXML(text))
        back.fromXml(*xml);
    return back;
}

void expectSamePairs(SxPropertySet& a, SxPropertySet& b)
{
    EXPECT_EQ(a.getAllProperties().getAllKeys(), b.getAllProperties().getAllKeys());
    EXPECT_EQ(a.getAllProperties().getAllValues(), b.getAllProperties().getAllValues());
}

SxPropertySet sampleSet()
{
    SxPropertySet set;
    set.setString("layerName", juce::String::fromUTF8("Glühen – 線画 🎨"));
    set.setFloat("layerOpacity", 0.25f);
    set.setBool("visible", false);
    set.setInt("compositeMode", -7);
    set.setString("empty", {});
    set.setString("markup", "<a href=\"x\">&amp; \t tab</a>");
    set.setString("zLast", "1");
    return set;
}

SxImageRgbaBytes* patterned(int w, int h)
{
    auto* image = new SxImageRgbaBytes(w, h);
    if (image->byteCount() < 1000000)
    {
        TestImages::fillRandom(*image, 99);
        return image;
    }
    // Big pictures get a photo-like pattern: noise defeats the compressor and only costs time,
    // while every channel still differs from its neighbours so a shifted or swapped byte shows.
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            uint8_t* p = image->pixelAt(x, y);
            p[0] = (uint8_t) (255 - (x & 15));
            p[1] = (uint8_t) (x * 7 / 3);
            p[2] = (uint8_t) (y * 5 / 2);
            p[3] = (uint8_t) ((x ^ y) * 3);
        }
    return image;
}

/** Little-endian form of the compact picture stream, before gzip. */
juce::MemoryBlock compactStream(uint8_t byteOrder, int16_t w, int16_t h, const uint8_t* pixels, size_t bytes)
{
    juce::MemoryOutputStream packed;
    {
        juce::GZIPCompressorOutputStream gz(packed);
        gz.writeByte((char) byteOrder);
        gz.writeShort(w);
        gz.writeShort(h);
        gz.write(pixels, bytes);
    }
    return packed.getMemoryBlock();
}
} // namespace

TEST(SxPropertySetForms, BinaryLayoutIsCountThenZeroTerminatedPairsOfPlainText)
{
    SxPropertySet set;
    set.setString("ab", juce::String::fromUTF8("\xc3\xbc"));
    set.setString("c", {});
    set.setFloat("f", 0.25f);
    set.setBool("y", true);
    set.setBool("n", false);
    set.setInt("i", -42);
    const auto bytes = binaryOf(set);
    const char expected[] = "\6\0\0\0" "ab\0\xc3\xbc\0" "c\0\0" "f\0" "0.25\0" "y\0" "1\0" "n\0" "0\0" "i\0" "-42"; // and the final zero
    ASSERT_EQ(bytes.getSize(), sizeof(expected));
    EXPECT_EQ(std::memcmp(bytes.getData(), expected, sizeof(expected)), 0);
    EXPECT_FLOAT_EQ(set.getFloatValue("missing", 3.5f), 3.5f);
}

TEST(SxPropertySetForms, BothFormsKeepKeysValuesAndOrder)
{
    SxPropertySet original = sampleSet();
    SxPropertySet binary = throughBinary(original);
    SxPropertySet xml = throughXmlText(original);
    expectSamePairs(original, binary);
    expectSamePairs(original, xml);
    EXPECT_EQ(xml.getValue("layerName"), juce::String::fromUTF8("Glühen – 線画 🎨"));
}

TEST(SxPropertySetForms, XmlIsAPlistOfAlternatingKeyAndString)
{
    SxPropertySet set;
    set.setString("a", "1");
    set.setString("b", "2");
    auto xml = set.toXml();
    ASSERT_TRUE(xml->hasTagName("plist"));
    auto* dict = xml->getFirstChildElement();
    ASSERT_NE(dict, nullptr);
    EXPECT_TRUE(dict->hasTagName("dict"));
    ASSERT_EQ(dict->getNumChildElements(), 4);
    const char* tags[] = { "key", "string", "key", "string" };
    const char* texts[] = { "a", "1", "b", "2" };
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_TRUE(dict->getChildElement(i)->hasTagName(tags[i]));
        EXPECT_EQ(dict->getChildElement(i)->getAllSubText(), texts[i]);
    }
}

TEST(SxPropertySetForms, LaterDuplicateWinsAtTheFirstPosition)
{
    juce::MemoryOutputStream out;
    out.writeInt(4);
    for (const char* s : { "a", "1", "b", "2", "", "skipped", "a", "3" })
        out.writeString(s);
    juce::MemoryInputStream in(out.getData(), out.getDataSize(), false);
    SxPropertySet set;
    ASSERT_TRUE(set.readBinary(in));
    EXPECT_EQ(set.getAllProperties().getAllKeys(), juce::StringArray({ "a", "b" }));
    EXPECT_EQ(set.getValue("a"), "3");
}

TEST(SxPropertySetForms, EmptySetWritesZeroAndReadingItKeepsContent)
{
    const auto bytes = binaryOf(SxPropertySet());
    ASSERT_EQ(bytes.getSize(), 4u);
    EXPECT_EQ(juce::ByteOrder::littleEndianInt(bytes.getData()), 0u);

    SxPropertySet target;
    target.setString("kept", "yes");
    juce::MemoryInputStream in(bytes, false);
    EXPECT_FALSE(target.readBinary(in));
    EXPECT_EQ(target.size(), 1);
    EXPECT_EQ(target.getValue("kept"), "yes");
    EXPECT_EQ(throughBinary(SxPropertySet()).size(), 0);
    EXPECT_EQ(throughXmlText(SxPropertySet()).size(), 0);
}

TEST(SxPropertySetForms, ReadingMergesAndLeavesTheStreamBehindTheSet)
{
    SxPropertySet target;
    target.setString("a", "old");
    target.setString("keep", "x");
    SxPropertySet incoming;
    incoming.setString("a", "new");
    incoming.setString("b", "2");
    juce::MemoryOutputStream out;
    incoming.writeBinary(out);
    out.writeInt(0x12345678);

    juce::MemoryInputStream in(out.getData(), out.getDataSize(), false);
    ASSERT_TRUE(target.readBinary(in));
    EXPECT_EQ(target.getAllProperties().getAllKeys(), juce::StringArray({ "a", "keep", "b" }));
    EXPECT_EQ(target.getValue("a"), "new");
    EXPECT_EQ(in.readInt(), 0x12345678) << "what follows the set is still there to read";
}

TEST(SxPropertySetPictures, CopiesShareImagesAndNamesAreUnique)
{
    auto* picture = patterned(8, 4);
    {
        SxPropertySet set;
        set.addImage(picture, "source");
        set.addImage(picture, "source");
        EXPECT_EQ(set.getNumImages(), 1) << "a second picture of the same name is ignored";
        EXPECT_EQ(picture->getReferenceCount(), 2);
        SxPropertySet copy(set);
        SxPropertySet assigned;
        assigned = copy;
        EXPECT_EQ(picture->getReferenceCount(), 4);
        EXPECT_EQ(copy.getImage("source"), picture);
        SxPropertySet child;
        child.setString("x", "1");
        set.addChild(child, "nested");
        EXPECT_EQ(set.getChild("nested").getValue("x"), "1");
        EXPECT_EQ(set.getChild("absent").size(), 0);
    }
    EXPECT_EQ(picture->getReferenceCount(), 1);
    picture->release();
}

TEST(SxPropertySetPictures, BothEncodingsRoundTripSmallAndLargePictures)
{
    for (auto size : { juce::Point<int>(1, 1), juce::Point<int>(3000, 2000) })
        for (bool raw : { false, true })
        {
            SCOPED_TRACE(juce::String(size.x) + "x" + juce::String(size.y) + (raw ? " raw" : " compact"));
            auto picture = SxRef<SxImageRgbaBytes>::adopt(patterned(size.x, size.y));
            SxPropertySet set;
            SxPropertySet::writeImageToDictionary(set, "pic", *picture, raw);
            EXPECT_EQ(set.containsKey("pic_width"), raw);
            // Through the binary form too, as a project file stores it.
            SxPropertySet back = throughBinary(set);
            auto read = SxRef<SxImageRgbaBytes>::adopt(SxPropertySet::readImageFromDictionary(back, "pic", raw));
            ASSERT_TRUE(read);
            EXPECT_EQ(TestImages::maxDifference(*read, *picture), 0);
        }
}

TEST(SxPropertySetPictures, XmlCarriesColourAndAlphaPicturesWithTheirPaths)
{
    auto one = SxRef<SxImageRgbaBytes>::adopt(patterned(1, 1));
    auto wide = SxRef<SxImageRgbaBytes>::adopt(patterned(300, 7));
    auto mask = SxRef<SxImageAlphaByte>::adopt(new SxImageAlphaByte(5, 3));
    for (int i = 0; i < 15; ++i)
        mask->pixels[i] = (uint8_t) (i * 17);
    SxPropertySet set;
    set.setString("strokeLength", "0.5");
    set.addImage(one.get(), "one.png");
    set.addImage(wide.get(), juce::String::fromUTF8("wide ü.png"));
    set.addAlphaImage(mask.get(), "mask");

    SxPropertySet back = throughXmlText(set);
    EXPECT_EQ(back.getAllProperties().getAllKeys(), juce::StringArray({ "strokeLength" }))
        << "picture keys are turned back into pictures";
    ASSERT_EQ(back.getNumImages(), 2);
    ASSERT_NE(back.getImage("one.png"), nullptr);
    ASSERT_NE(back.getImage(juce::String::fromUTF8("wide ü.png")), nullptr);
    EXPECT_EQ(TestImages::maxDifference(*back.getImage("one.png"), *one), 0);
    EXPECT_EQ(TestImages::maxDifference(*back.getImage(juce::String::fromUTF8("wide ü.png")), *wide), 0);
    auto* backMask = back.getAlphaImage("mask");
    ASSERT_NE(backMask, nullptr);
    ASSERT_EQ(backMask->byteCount(), mask->byteCount());
    EXPECT_EQ(std::memcmp(backMask->pixels, mask->pixels, mask->byteCount()), 0);
}

TEST(SxPropertySetPictures, ByteOrderOneReversesEachPixel)
{
    const uint8_t pixels[] = { 1, 2, 3, 4, 10, 20, 30, 40 };
    SxPropertySet set;
    set.setString("p_data", compactStream(1, 2, 1, pixels, sizeof(pixels)).toBase64Encoding());
    auto read = SxRef<SxImageRgbaBytes>::adopt(SxPropertySet::readImageFromDictionary(set, "p", false));
    ASSERT_TRUE(read);
    const uint8_t reversed[] = { 4, 3, 2, 1, 40, 30, 20, 10 };
    EXPECT_EQ(std::memcmp(read->pixels, reversed, sizeof(reversed)), 0);

    set.setString("p_data", compactStream(0, 2, 1, pixels, sizeof(pixels)).toBase64Encoding());
    read = SxRef<SxImageRgbaBytes>::adopt(SxPropertySet::readImageFromDictionary(set, "p", false));
    ASSERT_TRUE(read);
    EXPECT_EQ(std::memcmp(read->pixels, pixels, sizeof(pixels)), 0);
}
