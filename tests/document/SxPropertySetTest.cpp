// Property sets: both forms on disk round-trip keys, values, order and pictures; pictures are
// shared between copies, never duplicated.

#include "CompactPictureStream.h"

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

// Through the guarded parser that every reader of these texts uses, which must accept all that
// this program writes.
SxPropertySet throughXmlText(const SxPropertySet& set)
{
    SxPropertySet back;
    if (auto xml = SxPropertySet::parseXmlText(set.toXml()->toString()))
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
    set.setString("markup", "<a href=\"x\">&amp; \t tab ?></a>");
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
}

TEST(SxPropertySetForms, BothFormsKeepKeysValuesAndOrder)
{
    for (SxPropertySet original : { sampleSet(), SxPropertySet() })
    {
        SxPropertySet binary = throughBinary(original);
        SxPropertySet xml = throughXmlText(original);
        expectSamePairs(original, binary);
        expectSamePairs(original, xml);
    }
}

TEST(SxPropertySetForms, XmlIsAPlistOfAlternatingKeyAndString)
{
    SxPropertySet set;
    set.setString("a", "1");
    set.setString("b", "2");
    EXPECT_EQ(set.toXml()->toString(juce::XmlElement::TextFormat().singleLine().withoutHeader()),
              "<plist><dict><key>a</key><string>1</string><key>b</key><string>2</string></dict></plist>");
}

TEST(SxPropertySetForms, ReadingMergesLaterDuplicatesWinAndTheStreamStaysBehindTheSet)
{
    // Duplicates within the stream and against what the set held keep the first position and
    // take the last value; an empty key is skipped.
    SxPropertySet target;
    target.setString("a", "old");
    target.setString("keep", "x");
    juce::MemoryOutputStream out;
    out.writeInt(4);
    for (const char* s : { "a", "new", "b", "2", "", "skipped", "a", "newest" })
        out.writeString(s);
    out.writeInt(0x12345678);

    juce::MemoryInputStream in(out.getData(), out.getDataSize(), false);
    ASSERT_TRUE(target.readBinary(in));
    EXPECT_EQ(target.getAllProperties().getAllKeys(), juce::StringArray({ "a", "keep", "b" }));
    EXPECT_EQ(target.getValue("a"), "newest");
    EXPECT_EQ(in.readInt(), 0x12345678) << "what follows the set is still there to read";

    // An empty set is a zero count, and reading one leaves what the set held.
    const auto empty = binaryOf(SxPropertySet());
    EXPECT_EQ(empty, juce::MemoryBlock(4, true));
    juce::MemoryInputStream emptyIn(empty, false);
    EXPECT_FALSE(target.readBinary(emptyIn));
    EXPECT_EQ(target.size(), 3);
}

TEST(SxPropertySetPictures, CopiesShareImagesAndNamesAreUnique)
{
    auto* picture = patterned(8, 4);
    {
        SxPropertySet set;
        set.addImage(picture, "source");
        set.addImage(picture, "source");
        EXPECT_EQ(set.getNumImages(), 1) << "a second picture of the same name is ignored";
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
    for (const auto& [path, picture] : { std::make_pair(juce::String("one.png"), one.get()),
                                         std::make_pair(juce::String::fromUTF8("wide ü.png"), wide.get()) })
    {
        ASSERT_NE(back.getImage(path), nullptr) << path;
        EXPECT_EQ(TestImages::maxDifference(*back.getImage(path), *picture), 0) << path;
    }
    auto* backMask = back.getAlphaImage("mask");
    ASSERT_NE(backMask, nullptr);
    ASSERT_EQ(backMask->byteCount(), mask->byteCount());
    EXPECT_EQ(std::memcmp(backMask->pixels, mask->pixels, mask->byteCount()), 0);
}

TEST(SxPropertySetPictures, ByteOrderOneReversesEachPixel)
{
    const uint8_t pixels[] = { 1, 2, 3, 4, 10, 20, 30, 40 };
    const uint8_t reversed[] = { 4, 3, 2, 1, 40, 30, 20, 10 };
    for (uint8_t byteOrder : { 0, 1 })
    {
        SxPropertySet set;
        set.setString("p_data", compactStream(byteOrder, 2, 1, pixels, sizeof(pixels)).toBase64Encoding());
        auto read = SxRef<SxImageRgbaBytes>::adopt(SxPropertySet::readImageFromDictionary(set, "p", false));
        ASSERT_TRUE(read);
        EXPECT_EQ(std::memcmp(read->pixels, byteOrder == 1 ? reversed : pixels, sizeof(pixels)), 0) << (int) byteOrder;
    }
}
