#include "imaging/ImageStream.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

namespace
{
juce::MemoryBlock streamOf(const SxImageRgbaBytes& image)
{
    juce::MemoryOutputStream out;
    EXPECT_TRUE(ImageStream::write(image, out));
    return out.getMemoryBlock();
}

SxRef<SxImageRgbaBytes> readBack(const void* data, size_t size)
{
    juce::MemoryInputStream in(data, size, false);
    return SxRef<SxImageRgbaBytes>::adopt(ImageStream::read(in));
}
} // namespace

TEST(ImageStream, RoundTripKeepsSizeAndEveryByte)
{
    for (auto size : { juce::Point<int>(1, 1), juce::Point<int>(0, 0), juce::Point<int>(123, 45) })
    {
        SxImageRgbaBytes image(size.x, size.y);
        TestImages::fillRandom(image);
        const auto bytes = streamOf(image);
        EXPECT_EQ(bytes.getSize(), 16 + image.byteCount());
        auto back = readBack(bytes.getData(), bytes.getSize());
        ASSERT_TRUE(back);
        EXPECT_EQ(TestImages::maxDifference(image, *back), 0);
    }
}

TEST(ImageStream, LayoutIsMagicVersionSizeThenPixels)
{
    SxImageRgbaBytes image(2, 1);
    image.pixels[0] = 0xAA;
    const auto bytes = streamOf(image);
    const auto* b = static_cast<const uint8_t*>(bytes.getData());
    EXPECT_EQ(0, std::memcmp(b, "SXRB", 4));
    EXPECT_EQ(b[4], 1);   // version, little-endian
    EXPECT_EQ(b[8], 2);   // width
    EXPECT_EQ(b[12], 1);  // height
    EXPECT_EQ(b[16], 0xAA);
}

TEST(ImageStream, BadStreamsGiveNothing)
{
    SxImageRgbaBytes image(30, 20);
    auto bytes = streamOf(image);

    EXPECT_FALSE(readBack(bytes.getData(), 0));
    EXPECT_FALSE(readBack(bytes.getData(), 10));
    EXPECT_FALSE(readBack(bytes.getData(), bytes.getSize() - 1)); // one pixel byte short

    // A header claiming a huge picture is refused before anything is allocated.
    auto* b = static_cast<uint8_t*>(bytes.getData());
    b[8] = 0xff; b[9] = 0xff; b[10] = 0; b[11] = 0;
    b[12] = 0xff; b[13] = 0xff; b[14] = 0; b[15] = 0;
    EXPECT_FALSE(readBack(bytes.getData(), bytes.getSize()));
    b[11] = 0x80; // negative width
    EXPECT_FALSE(readBack(bytes.getData(), bytes.getSize()));

    const char text[] = "not an image at all";
    EXPECT_FALSE(readBack(text, sizeof(text)));
}

TEST(ImageStream, FileWriteGoesThroughATemporaryName)
{
    juce::TemporaryFile temp(".tmp");
    const auto file = temp.getFile();
    SxImageRgbaBytes image(64, 64);
    TestImages::fillRandom(image);
    ASSERT_TRUE(ImageStream::writeFile(image, file));
    auto back = SxRef<SxImageRgbaBytes>::adopt(ImageStream::readFile(file));
    ASSERT_TRUE(back);
    EXPECT_EQ(TestImages::maxDifference(image, *back), 0);

    // An unwritable place fails without leaving anything behind.
    EXPECT_FALSE(ImageStream::writeFile(image, juce::File("/proc/definitely/not/here.tmp")));
}
