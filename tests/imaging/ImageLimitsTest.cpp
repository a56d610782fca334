#include "document/ProjectFile.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileWriter.h"
#include "imaging/ImageLimits.h"

#include <gtest/gtest.h>

#include <lodepng.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>

namespace
{
constexpr int claimedSide = 16384; // 268 megapixels: a gigabyte once decoded

struct TempFolder
{
    juce::File folder = juce::File::createTempFile("imagelimits");
    TempFolder() { folder.createDirectory(); }
    ~TempFolder() { folder.deleteRecursively(); }
    juce::File file(const juce::String& name) const { return folder.getChildFile(name); }
};

void putBigEndian(uint8_t* at, uint32_t value)
{
    at[0] = (uint8_t) (value >> 24);
    at[1] = (uint8_t) (value >> 16);
    at[2] = (uint8_t) (value >> 8);
    at[3] = (uint8_t) value;
}

// A PNG signature and an IHDR chunk with a valid checksum: the header alone says 16384 x 16384.
juce::MemoryBlock hugePng()
{
    uint8_t bytes[33] = { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R' };
    putBigEndian(bytes + 16, claimedSide);
    putBigEndian(bytes + 20, claimedSide);
    bytes[24] = 8; // bit depth
    bytes[25] = 6; // RGBA
    putBigEndian(bytes + 29, lodepng_crc32(bytes + 12, 17));
    return { bytes, sizeof(bytes) };
}

// A small real JPEG whose frame header is patched to claim the huge size: the data ends long
// before the rows it promises, as in a truncated download.
juce::MemoryBlock hugeTruncatedJpeg()
{
    juce::MemoryBlock jpeg;
    EXPECT_TRUE(ImageFileWriter::encode(SxImageRgbaBytes(16, 16), ImageFileType::jpeg, {}, jpeg));
    auto* b = static_cast<uint8_t*>(jpeg.getData());
    for (size_t i = 2; i + 9 < jpeg.getSize(); ++i)
        if (b[i] == 0xFF && b[i + 1] == 0xC0) // baseline frame: length, precision, height, width
        {
            b[i + 5] = b[i + 7] = (uint8_t) (claimedSide >> 8);
            b[i + 6] = b[i + 8] = (uint8_t) (claimedSide & 0xFF);
            break;
        }
    return jpeg;
}

// A TIFF that describes the huge picture and holds 16 bytes of it.
void writeHugeTiff(const juce::File& file)
{
    TIFF* tiff = TIFFOpen(file.getFullPathName().toRawUTF8(), "w");
    ASSERT_NE(tiff, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, (uint32_t) claimedSide);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, (uint32_t) claimedSide);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, (uint32_t) claimedSide);
    uint8_t strip[16] = {};
    TIFFWriteRawStrip(tiff, 0, strip, sizeof(strip));
    TIFFClose(tiff);
}

long peakMegabytes()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024; // kilobytes on Linux
}
} // namespace

TEST(ImageLimits, HugeHeadersAreRefusedByNameWithoutTakingTheMemory)
{
    TempFolder temp;
    temp.file("huge.png").replaceWithData(hugePng().getData(), hugePng().getSize());
    const auto jpeg = hugeTruncatedJpeg();
    temp.file("huge.jpg").replaceWithData(jpeg.getData(), jpeg.getSize());
    writeHugeTiff(temp.file("huge.tif"));

    for (const char* name : { "huge.png", "huge.jpg", "huge.tif" })
    {
        const auto decoded = ImageFileReader::read(temp.file(name));
        EXPECT_FALSE(decoded.ok()) << name;
        EXPECT_TRUE(decoded.error.startsWith("too large")) << name << ": " << decoded.error;
        EXPECT_TRUE(decoded.error.contains("16384 x 16384")) << decoded.error;
    }

    // A project whose embedded preview is the same JPEG.
    juce::MemoryOutputStream project;
    project.write("VER3", 4);
    project.writeInt(12);
    project.writeInt((int) jpeg.getSize());
    project.write(jpeg.getData(), jpeg.getSize());
    juce::MemoryInputStream in(project.getMemoryBlock(), false);
    EXPECT_EQ(ProjectFile::readPreview(in).get(), nullptr);

    // With the limit raised, each is still measured against its bytes (or, on a small machine,
    // against the free memory) before a buffer is made.
    ImageLimits::setMaximumMegapixels(300);
    for (const char* name : { "huge.png", "huge.jpg", "huge.tif" })
        EXPECT_FALSE(ImageFileReader::read(temp.file(name)).ok()) << name;
    ImageLimits::setMaximumMegapixels(ImageLimits::defaultMegapixels);

    EXPECT_LT(peakMegabytes(), 300);
}

TEST(ImageLimits, TheLimitCanBeRaisedAndResolutionsOutOfRangeFallBack)
{
    EXPECT_TRUE(ImageLimits::refusal(20000, 10000).isNotEmpty()); // 200 megapixels
    ImageLimits::setMaximumMegapixels(250);
    EXPECT_TRUE(ImageLimits::refusal(20000, 10000).isEmpty());
    ImageLimits::setMaximumMegapixels(ImageLimits::defaultMegapixels);
    EXPECT_TRUE(ImageLimits::refusal(0, 10).isNotEmpty());

    // Written with a negative resolution, read back: the default, in every format.
    ImageWriteOptions options;
    options.resolutionX = -3.0e6;
    options.resolutionY = 1.0e9;
    for (auto type : { ImageFileType::png, ImageFileType::jpeg, ImageFileType::tiff })
    {
        juce::MemoryBlock bytes;
        ASSERT_TRUE(ImageFileWriter::encode(SxImageRgbaBytes(4, 4), type, options, bytes));
        const auto decoded = ImageFileReader::readMemory(bytes.getData(), bytes.getSize(), type);
        // PNG stores whole pixels per metre: 72 ppi comes back as 72.009.
        EXPECT_NEAR(decoded.resolutionX, ImageLimits::defaultResolution, 0.01) << ImageFileTypes::extensionFor(type);
        EXPECT_NEAR(decoded.resolutionY, ImageLimits::defaultResolution, 0.01) << ImageFileTypes::extensionFor(type);
    }
}

TEST(ImageLimits, InputsThatAreNotRegularFilesAreRefused)
{
    TempFolder temp;
    const auto fifo = temp.file("pipe.png");
    ASSERT_EQ(::mkfifo(fifo.getFullPathName().toRawUTF8(), 0600), 0);
    const auto endless = temp.file("endless.png");
    ASSERT_TRUE(juce::File("/dev/zero").createSymbolicLink(endless, true));
    for (const auto& file : { fifo, endless })
    {
        const auto decoded = ImageFileReader::read(file);
        EXPECT_TRUE(decoded.error.startsWith("cannot read: not a regular file")) << decoded.error;
    }
    EXPECT_EQ(ProjectFile::readFile(fifo), nullptr);
}
