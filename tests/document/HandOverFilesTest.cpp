// Hand-over picture files: the byte layout a host writes, every image mode through the reader and
// back out through the result writer, the selection keeping unselected samples exact, and
// damaged files refused before anything is allocated from them.

#include "document/HandOverFiles.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

using namespace HandOverFiles;

namespace
{
// An independent little-endian writer, so that the layout test does not lean on the code under
// test.
void le32(juce::MemoryOutputStream& out, int v)
{
    for (int i = 0; i < 4; ++i)
        out.writeByte((char) ((unsigned) v >> (8 * i)));
}

struct ModeCase
{
    int mode, planes, bytes;
};
const ModeCase allModes[] = { { grey8, 1, 1 }, { rgb8, 3, 1 }, { grey16, 1, 2 }, { rgb16, 3, 2 }, { rgb8, 4, 1 } };

Image makeImage(const ModeCase& m, int width, int height, bool withMask, unsigned salt)
{
    std::mt19937 random(salt);
    Image image;
    auto& h = image.header;
    h.title = juce::String::fromUTF8("/photos/Schnee ü.tif");
    h.parameterBlock.append("PARAMS", 6);
    h.hiPlane = m.planes - 1;
    h.left = 7, h.top = 3, h.right = 7 + width, h.bottom = 3 + height;
    h.imageMode = m.mode;
    h.rowBytes = width * m.planes * m.bytes + 3; // padded rows, as hosts align them
    h.planeFlag = 5;
    h.hostRect[2] = 640, h.hostRect[3] = 480;
    h.profile.append("ICCPROFILE", 10);
    image.pixels.setSize((size_t) (h.rowBytes * height));
    auto* p = static_cast<uint8_t*>(image.pixels.getData());
    for (size_t i = 0; i < image.pixels.getSize(); ++i)
        p[i] = (uint8_t) random();
    if (m.bytes == 2) // keep samples on the host's 0..32768 scale
        for (size_t i = 1; i < image.pixels.getSize(); i += 2)
            p[i] &= 0x7f;
    if (withMask)
    {
        h.maskRowBytes = width + 1;
        image.mask.setSize((size_t) (h.maskRowBytes * height));
        auto* mask = static_cast<uint8_t*>(image.mask.getData());
        for (size_t i = 0; i < image.mask.getSize(); ++i)
            mask[i] = (uint8_t) (i % 3 == 0 ? 0 : i % 3 == 1 ? 255 : random());
    }
    return image;
}

juce::MemoryBlock bytesOf(const Image& image)
{
    juce::MemoryOutputStream out;
    EXPECT_TRUE(writeImage(out, image));
    return out.getMemoryBlock();
}

bool readBytes(const juce::MemoryBlock& bytes, Image& image, juce::String& error)
{
    juce::MemoryInputStream in(bytes, false);
    return readImage(in, image, error);
}

SxRef<SxImageRgbaBytes> randomResult(int width, int height, unsigned salt)
{
    std::mt19937 random(salt);
    auto result = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(width, height));
    for (size_t i = 0; i < result->byteCount(); ++i)
        result->pixels[i] = (uint8_t) random();
    return result;
}
} // namespace

TEST(HandOverFiles, ReadsTheHostsByteLayout)
{
    // A 2 × 1 RGB picture with a mask, written byte by byte as a host would.
    juce::MemoryOutputStream out;
    out.writeText("My Photo\r\n", false, false, nullptr);
    le32(out, 2);
    out.write("ab", 2);
    for (int v : { 2, 0, 10, 20, 12, 21, (int) rgb8, 8, 1, 0, 0, 100, 50, 4 })
        le32(out, v);
    le32(out, 0); // no profile
    le32(out, 8);
    out.write("\x10\x20\x30\x40\x50\x60\0\0", 8);
    le32(out, 4);
    out.write("\x00\xff\x09\x09", 4);

    Image image;
    juce::String error;
    ASSERT_TRUE(readBytes(out.getMemoryBlock(), image, error)) << error;
    EXPECT_EQ(image.header.title, "My Photo");
    EXPECT_EQ(image.header.hostRect[2], 100);
    auto picture = image.toPicture();
    ASSERT_EQ(picture->width, 2);
    ASSERT_EQ(picture->height, 1);
    const uint8_t expected[8] = { 255, 0x10, 0x20, 0x30, 255, 0x40, 0x50, 0x60 };
    EXPECT_EQ(0, std::memcmp(picture->pixels, expected, 8));
    auto mask = image.toSelectionMask();
    EXPECT_EQ(mask->pixels[0], 0);
    EXPECT_EQ(mask->pixels[1], 255);

    // Written back, the file is the host's own bytes but for the title's line end.
    auto rewritten = bytesOf(image);
    auto original = out.getMemoryBlock();
    original.removeSection(8, 1); // the '\r'
    EXPECT_EQ(rewritten, original);
}

TEST(HandOverFiles, EveryModeRoundTripsWithAndWithoutMask)
{
    for (const auto& m : allModes)
        for (bool withMask : { false, true })
        {
            SCOPED_TRACE("mode " + std::to_string(m.mode) + " planes " + std::to_string(m.planes) + " mask " + std::to_string(withMask));
            const auto written = makeImage(m, 5, 4, withMask, (unsigned) m.mode);
            Image read;
            juce::String error;
            ASSERT_TRUE(readBytes(bytesOf(written), read, error)) << error;
            // The header's fields and blocks show in the rewritten bytes; the samples are
            // compared directly, so that a writer that lost them would not hide a reader that did.
            EXPECT_EQ(read.pixels, written.pixels);
            EXPECT_EQ(read.mask, written.mask);
            EXPECT_EQ(bytesOf(read), bytesOf(written));
            EXPECT_EQ(read.toSelectionMask().get() != nullptr, withMask);
        }
}

TEST(HandOverFiles, SixteenBitSamplesHaveWhiteAt32768)
{
    for (int mode : { grey16, rgb16 })
    {
        Image image = makeImage({ mode, mode == grey16 ? 1 : 3, 2 }, 4, 1, false, 1);
        auto* sample = static_cast<uint8_t*>(image.pixels.getData());
        for (int value : { 0, 16384, 32768, 65535 })
            for (int c = 0; c < image.header.colourPlanes(); ++c, sample += 2)
                sample[0] = (uint8_t) (value & 0xff), sample[1] = (uint8_t) (value >> 8);
        auto picture = image.toPicture();
        EXPECT_EQ(picture->pixelAt(0, 0)[1], 0);
        EXPECT_NEAR(picture->pixelAt(1, 0)[2], 127, 1);
        EXPECT_GE(picture->pixelAt(2, 0)[3], 254); // white
        EXPECT_EQ(picture->pixelAt(3, 0)[1], 255); // above the host's white still clamps
    }
}

TEST(HandOverFiles, ResultKeepsUnselectedSamplesAndTakesSelectedOnes)
{
    for (const auto& m : allModes)
    {
        SCOPED_TRACE("mode " + std::to_string(m.mode) + " planes " + std::to_string(m.planes));
        const auto host = makeImage(m, 6, 5, true, 7);
        const auto result = randomResult(6, 5, 11);
        const auto out = withResult(host, *result);
        ASSERT_EQ(out.pixels.getSize(), host.pixels.getSize());
        const auto back = out.toPicture();
        const auto& h = host.header;
        const int stride = m.planes * m.bytes;
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 6; ++x)
            {
                const int coverage = static_cast<const uint8_t*>(host.mask.getData())[y * h.maskRowBytes + x];
                const auto offset = (size_t) (y * h.rowBytes + x * stride);
                const auto* before = static_cast<const uint8_t*>(host.pixels.getData()) + offset;
                const auto* after = static_cast<const uint8_t*>(out.pixels.getData()) + offset;
                if (coverage == 0)
                    EXPECT_EQ(0, std::memcmp(before, after, (size_t) stride)) << x << "," << y;
                if (m.planes == 4)
                    EXPECT_EQ(before[3], after[3]); // the host's alpha plane is never touched
                if (coverage == 255)
                {
                    const auto* r = result->pixelAt(x, y);
                    const int grey = (299 * r[1] + 587 * r[2] + 114 * r[3] + 500) / 1000;
                    for (int c = 1; c < 4; ++c) // 16-bit modes go through the host's scale and back
                        EXPECT_NEAR(back->pixelAt(x, y)[c], m.planes == 1 ? grey : r[c], m.bytes == 2 ? 1 : 0);
                }
            }
        // The row padding is the host's.
        EXPECT_EQ(static_cast<const uint8_t*>(out.pixels.getData())[h.rowBytes - 1],
                  static_cast<const uint8_t*>(host.pixels.getData())[h.rowBytes - 1]);
    }
}

TEST(HandOverFiles, RefusesDamagedFiles)
{
    const auto good = bytesOf(makeImage(allModes[3], 3, 2, true, 3));
    Image image;
    juce::String error;
    ASSERT_TRUE(readBytes(good, image, error));

    // Cut anywhere, the file is refused.
    for (size_t length = 0; length < good.getSize(); ++length)
        EXPECT_FALSE(readBytes(juce::MemoryBlock(good.getData(), length), image, error)) << length;

    // One header field at a time set to a value that does not add up. Offsets from the start of
    // the fields behind the title line and the 6-byte parameter block.
    const auto* start = static_cast<const char*>(good.getData());
    const size_t fields = (size_t) (static_cast<const char*>(std::memchr(start, '\n', good.getSize())) - start) + 1 + 4 + 6;
    auto withInt = [&](size_t offset, int value) {
        juce::MemoryBlock bad(good);
        for (int i = 0; i < 4; ++i)
            static_cast<uint8_t*>(bad.getData())[offset + (size_t) i] = (uint8_t) ((unsigned) value >> (8 * i));
        return bad;
    };
    const std::pair<int, int> lies[] = {
        { 6, 2 },           { 6, 12 },           { 6, -1 },        // unknown image modes
        { 4, 7 },           { 5, 3 },            { 4, INT_MIN },   // empty or reversed rectangle
        { 2, INT_MIN + 1 }, { 4, 1 << 30 },                        // rectangle far too large
        { 7, 1 },           { 0, 5 },            { 0, 0 },         // rows too short, plane counts off
        { 13, 1 },          { 14, INT_MAX },     { 14, -4 },       // mask rows short, profile size lies
    };
    for (const auto& [index, value] : lies)
        EXPECT_FALSE(readBytes(withInt(fields + (size_t) index * 4, value), image, error)) << index << "=" << value;

    // A pixel size larger than the file, and one smaller than the rectangle needs; the size
    // stands behind the fields and the 10-byte profile.
    for (int size : { INT_MAX, -1, 4 })
        EXPECT_FALSE(readBytes(withInt(fields + 15 * 4 + 10, size), image, error)) << size;

    // A title line with no end.
    juce::MemoryBlock endless(8192);
    endless.fillWith('x');
    EXPECT_FALSE(readBytes(endless, image, error));
}

TEST(HandOverFiles, ResultFileAndFlag)
{
    juce::TemporaryFile folderName;
    const auto folder = folderName.getFile();
    ASSERT_TRUE(folder.createDirectory());
    const auto paths = pathsIn(folder);
    EXPECT_EQ(paths.image.getFileName(), ".OmbrikImg.dat");
    ASSERT_TRUE(paths.flag.replaceWithText(""));
    EXPECT_FALSE(resultWasApplied(paths));

    const auto host = makeImage(allModes[1], 4, 3, false, 5);
    ASSERT_TRUE(writeResult(paths, withResult(host, *randomResult(4, 3, 2))).wasOk());
    EXPECT_TRUE(resultWasApplied(paths));
    Image back;
    juce::String error;
    ASSERT_TRUE(readImageFile(paths.image, back, error)) << error;
    EXPECT_EQ(back.header.width(), 4);
    EXPECT_EQ(folder.getNumberOfChildFiles(juce::File::findFiles, "*"), 2); // no temporary left
    folder.deleteRecursively();
}

TEST(HandOverFiles, ActionSettingsRoundTripAndRefuseGarbage)
{
    ActionSettings written;
    written.effectName = "Tornvale";
    written.dictionary.setString("strokeLength", "0.75");
    written.dictionary.setString("detail", "<&\">");
    juce::MemoryOutputStream out;
    ASSERT_TRUE(writeActionSettings(out, written));

    ActionSettings read;
    juce::MemoryInputStream in(out.getMemoryBlock(), true);
    ASSERT_TRUE(readActionSettings(in, read));
    EXPECT_EQ(read.effectName, "Tornvale");
    EXPECT_EQ(read.dictionary.getValue("strokeLength"), "0.75");
    EXPECT_EQ(read.dictionary.getValue("detail"), "<&\">");

    for (const char* garbage : { "", "not xml", "<plist><dict><key>EffectName</key></dict>", "\xff\xfe<plist/>" })
    {
        juce::MemoryInputStream bad(garbage, strlen(garbage), false);
        ActionSettings ignored;
        EXPECT_FALSE(readActionSettings(bad, ignored)) << garbage;
    }
}
