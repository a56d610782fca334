#include "imaging/ColorProfile.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileWriter.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <lcms2.h>
#include <tiffio.h>

namespace
{
struct TempFolder
{
    juce::File folder = juce::File::createTempFile("imagefiles");
    TempFolder() { folder.createDirectory(); }
    ~TempFolder() { folder.deleteRecursively(); }
    juce::File file(const juce::String& name) const { return folder.getChildFile(name); }
};

/** Runs an outside program and returns what it printed; empty when it is not installed. */
juce::String outsideTool(const juce::StringArray& command)
{
    juce::ChildProcess process;
    if (!process.start(command))
        return {};
    const auto text = process.readAllProcessOutput().trim();
    return process.getExitCode() == 0 ? text : juce::String();
}

SxImageRgbaBytes quadrants(int w, int h)
{
    // Top left white, everything else black: every rotation moves the white corner somewhere else.
    SxImageRgbaBytes image(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            uint8_t* p = image.pixelAt(x, y);
            p[0] = 255;
            p[1] = p[2] = p[3] = (x < w / 2 && y < h / 2) ? 255 : 0;
        }
    return image;
}

// Inserts an Exif segment with the orientation tag right after the JPEG's start marker.
juce::MemoryBlock withOrientation(const juce::MemoryBlock& jpeg, int orientation)
{
    const uint8_t exif[] = { 0xFF, 0xE1, 0x00, 0x22, 'E', 'x', 'i', 'f', 0, 0,
                             'I', 'I', 42, 0, 8, 0, 0, 0,         // little-endian TIFF header, IFD at 8
                             1, 0,                                // one entry
                             0x12, 0x01, 3, 0, 1, 0, 0, 0, (uint8_t) orientation, 0, 0, 0,
                             0, 0, 0, 0 };                        // no next IFD
    juce::MemoryBlock result;
    result.append(jpeg.getData(), 2);
    result.append(exif, sizeof(exif));
    result.append(static_cast<const char*>(jpeg.getData()) + 2, jpeg.getSize() - 2);
    return result;
}

bool isBright(const SxImageRgbaBytes& image, int x, int y)
{
    return image.pixelAt(x, y)[1] > 128;
}
} // namespace

TEST(ImageFiles, LosslessFormatsRoundTripEveryByteAndJpegComesClose)
{
    TempFolder temp;
    auto photo = TestImages::photo("chelsea.png");
    ASSERT_NE(photo, nullptr);
    // Give it a real alpha ramp so PNG and TIFF must carry a fourth channel.
    for (int y = 0; y < photo->height; ++y)
        for (int x = 0; x < photo->width; ++x)
            photo->pixelAt(x, y)[0] = (uint8_t) (x * 255 / photo->width);

    for (const char* name : { "round.png", "round.tif" })
    {
        ASSERT_TRUE(ImageFileWriter::write(*photo, temp.file(name), ImageFileTypes::fromPath(name)).wasOk());
        const auto back = ImageFileReader::read(temp.file(name));
        ASSERT_TRUE(back.ok()) << back.error;
        EXPECT_TRUE(back.hasAlpha);
        EXPECT_EQ(TestImages::maxDifference(*photo, *back.image), 0) << name;
    }

    ASSERT_TRUE(ImageFileWriter::write(*photo, temp.file("round.jpg"), ImageFileType::jpeg, { 72, 72, 95, {} }).wasOk());
    const auto jpeg = ImageFileReader::read(temp.file("round.jpg"));
    ASSERT_TRUE(jpeg.ok()) << jpeg.error;
    double total = 0;
    for (size_t i = 0; i < jpeg.image->byteCount(); i += 4)
    {
        ASSERT_EQ(jpeg.image->pixels[i], 255); // JPEG has no alpha
        for (int c = 1; c < 4; ++c)
            total += std::abs(jpeg.image->pixels[i + c] - photo->pixels[i + c]);
    }
    EXPECT_LT(total / (photo->width * photo->height * 3.0), 3.0); // quality 95: mean error of a few levels
}

TEST(ImageFiles, ResolutionIsCarriedIntoEachFormat)
{
    TempFolder temp;
    const auto image = quadrants(40, 30);
    const bool haveIdentify = outsideTool({ "identify", "-version" }).isNotEmpty();
    for (const char* name : { "dpi.png", "dpi.jpg", "dpi.tif" })
    {
        ASSERT_TRUE(ImageFileWriter::write(image, temp.file(name), ImageFileTypes::fromPath(name), { 300, 150, 85, {} }).wasOk());
        const auto back = ImageFileReader::read(temp.file(name));
        ASSERT_TRUE(back.ok()) << back.error;
        EXPECT_NEAR(back.resolutionX, 300, 0.1) << name; // PNG stores dots per metre: 300 dpi is 11811 per metre
        EXPECT_NEAR(back.resolutionY, 150, 0.1) << name;
        if (haveIdentify)
        {
            const auto text = outsideTool({ "identify", "-units", "PixelsPerInch", "-format", "%x %y",
                                            temp.file(name).getFullPathName() });
            const auto values = juce::StringArray::fromTokens(text, " ", "");
            ASSERT_GE(values.size(), 2) << text;
            EXPECT_NEAR(values[0].getDoubleValue(), 300, 0.5) << name << ": " << text;
            EXPECT_NEAR(values[1].getDoubleValue(), 150, 0.5) << name << ": " << text;
        }
    }
    // Nothing said means 72.
    juce::MemoryBlock plain;
    ASSERT_TRUE(ImageFileWriter::encode(image, ImageFileType::jpeg, {}, plain));
    EXPECT_EQ(ImageFileReader::readMemory(plain.getData(), plain.getSize(), ImageFileType::jpeg).resolutionX, 72.0);
}

TEST(ImageFiles, ExifOrientationTurnsThePicture)
{
    juce::MemoryBlock jpeg;
    ASSERT_TRUE(ImageFileWriter::encode(quadrants(64, 32), ImageFileType::jpeg, {}, jpeg));

    struct Case { int orientation, width, height; juce::Point<int> bright; };
    for (const Case c : { Case { 1, 64, 32, { 8, 8 } }, Case { 6, 32, 64, { 24, 8 } },   // 90° clockwise: top left to top right
                          Case { 3, 64, 32, { 56, 24 } }, Case { 8, 32, 64, { 8, 56 } },
                          Case { 2, 64, 32, { 56, 8 } }, Case { 4, 64, 32, { 8, 24 } },   // mirrored
                          Case { 5, 32, 64, { 8, 8 } }, Case { 7, 32, 64, { 24, 56 } } })
    {
        const auto file = withOrientation(jpeg, c.orientation);
        const auto decoded = ImageFileReader::readMemory(file.getData(), file.getSize(), ImageFileType::jpeg);
        ASSERT_TRUE(decoded.ok()) << decoded.error;
        EXPECT_EQ(decoded.orientation, c.orientation);
        EXPECT_EQ(decoded.image->width, c.width);
        EXPECT_EQ(decoded.image->height, c.height);
        EXPECT_TRUE(isBright(*decoded.image, c.bright.x, c.bright.y)) << c.orientation;
        // Exactly one quadrant is bright.
        int brightCorners = 0;
        for (auto corner : { juce::Point<int>(2, 2), { c.width - 3, 2 }, { 2, c.height - 3 }, { c.width - 3, c.height - 3 } })
            brightCorners += isBright(*decoded.image, corner.x, corner.y) ? 1 : 0;
        EXPECT_EQ(brightCorners, 1) << c.orientation;
    }

    // Orientation 5 is the stored picture transposed, pixel for pixel.
    const auto stored = ImageFileReader::readMemory(jpeg.getData(), jpeg.getSize(), ImageFileType::jpeg);
    const auto five = withOrientation(jpeg, 5);
    const auto transposed = ImageFileReader::readMemory(five.getData(), five.getSize(), ImageFileType::jpeg);
    ASSERT_TRUE(stored.ok() && transposed.ok());
    for (int y = 0; y < stored.image->height; ++y)
        for (int x = 0; x < stored.image->width; ++x)
            ASSERT_EQ(std::memcmp(stored.image->pixelAt(x, y), transposed.image->pixelAt(y, x), 4), 0) << x << "," << y;
}

TEST(ImageFiles, TiffFromAnotherWriterKeepsRowOrderAndSixteenBitsAndCapitalExtensions)
{
    TempFolder temp;
    // Written with libtiff directly: row 0 red, the last row blue, 16 bits a sample.
    const auto file = temp.file("outside.TIF");
    TIFF* tiff = TIFFOpen(file.getFullPathName().toRawUTF8(), "w");
    ASSERT_NE(tiff, nullptr);
    const uint32_t w = 5, h = 4;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, w);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, h);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 16);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    for (uint32_t y = 0; y < h; ++y)
    {
        std::vector<uint16_t> row(w * 3, 0);
        for (uint32_t x = 0; x < w; ++x)
        {
            row[x * 3 + 0] = y == 0 ? 65535 : 0;
            row[x * 3 + 1] = (uint16_t) (100 * 257); // a 16-bit value whose top byte is 100
            row[x * 3 + 2] = y == h - 1 ? 65535 : 0;
        }
        TIFFWriteScanline(tiff, row.data(), y, 0);
    }
    TIFFClose(tiff);

    EXPECT_EQ(ImageFileTypes::fromPath(file.getFullPathName()), ImageFileType::tiff);
    const auto decoded = ImageFileReader::read(file);
    ASSERT_TRUE(decoded.ok()) << decoded.error;
    EXPECT_EQ(decoded.image->width, 5);
    EXPECT_EQ(decoded.image->pixelAt(2, 0)[1], 255); // red on top
    EXPECT_EQ(decoded.image->pixelAt(2, 0)[3], 0);
    EXPECT_EQ(decoded.image->pixelAt(2, 3)[3], 255); // blue at the bottom
    EXPECT_EQ(decoded.image->pixelAt(2, 1)[2], 100);
    EXPECT_EQ(decoded.image->pixelAt(2, 1)[0], 255);
    EXPECT_FALSE(decoded.hasAlpha);

    // Our own TIFFs keep four samples a pixel.
    ASSERT_TRUE(ImageFileWriter::write(*decoded.image, temp.file("ours.tiff"), ImageFileType::tiff).wasOk());
    TIFF* ours = TIFFOpen(temp.file("ours.tiff").getFullPathName().toRawUTF8(), "r");
    ASSERT_NE(ours, nullptr);
    uint16_t samples = 0;
    TIFFGetField(ours, TIFFTAG_SAMPLESPERPIXEL, &samples);
    TIFFClose(ours);
    EXPECT_EQ(samples, 4);
}

TEST(ImageFiles, EmbeddedProfileIsConvertedToSRGB)
{
    // A linear-light RGB profile with sRGB's primaries: linear 50 % grey is about 188 in sRGB.
    cmsCIExyY white;
    cmsWhitePointFromTemp(&white, 6504);
    const cmsCIExyYTRIPLE primaries = { { 0.64, 0.33, 1 }, { 0.30, 0.60, 1 }, { 0.15, 0.06, 1 } };
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1.0);
    cmsToneCurve* curves[3] = { linear, linear, linear };
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    juce::MemoryBlock icc(size);
    cmsSaveProfileToMem(profile, icc.getData(), &size);
    cmsCloseProfile(profile);
    cmsFreeToneCurve(linear);

    TempFolder temp;
    SxImageRgbaBytes grey(8, 8);
    for (size_t i = 0; i < grey.byteCount(); i += 4)
    {
        grey.pixels[i] = 200;
        grey.pixels[i + 1] = grey.pixels[i + 2] = grey.pixels[i + 3] = 128;
    }
    for (const char* name : { "linear.png", "linear.jpg", "linear.tif" })
    {
        ImageWriteOptions options;
        options.iccProfile = icc;
        options.jpegQuality = 100;
        ASSERT_TRUE(ImageFileWriter::write(grey, temp.file(name), ImageFileTypes::fromPath(name), options).wasOk());
        const auto decoded = ImageFileReader::read(temp.file(name));
        ASSERT_TRUE(decoded.ok()) << decoded.error;
        EXPECT_TRUE(decoded.convertedToSRGB) << name;
        EXPECT_EQ(decoded.iccProfile.getSize(), icc.getSize()) << name;
        EXPECT_NEAR(decoded.image->pixelAt(3, 3)[2], 188, 3) << name;
        if (juce::String(name).endsWith("png") || juce::String(name).endsWith("tif"))
            EXPECT_EQ(decoded.image->pixelAt(3, 3)[0], 200) << name; // alpha untouched
    }
}

TEST(ImageFiles, BadFilesGiveAClearReasonAndNoPicture)
{
    TempFolder temp;
    juce::MemoryBlock jpeg;
    ASSERT_TRUE(ImageFileWriter::encode(quadrants(200, 100), ImageFileType::jpeg, {}, jpeg));

    temp.file("empty.jpg").create();
    temp.file("truncated.jpg").replaceWithData(jpeg.getData(), jpeg.getSize() / 2);
    juce::MemoryBlock noise(5000);
    juce::Random random(7);
    random.fillBitsRandomly(noise.getData(), noise.getSize());
    temp.file("noise.png").replaceWithData(noise.getData(), noise.getSize());
    temp.file("text.tif").replaceWithText("this is a shopping list, not a picture\n");
    // A PNG header that claims an enormous picture.
    const uint8_t hugePng[] = { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R',
                                0x7f, 0xff, 0xff, 0xff, 0x7f, 0xff, 0xff, 0xff, 8, 6, 0, 0, 0, 0, 0, 0, 0 };
    temp.file("huge.png").replaceWithData(hugePng, sizeof(hugePng));

    for (const char* name : { "empty.jpg", "truncated.jpg", "noise.png", "text.tif", "huge.png" })
    {
        const auto decoded = ImageFileReader::read(temp.file(name));
        EXPECT_FALSE(decoded.ok()) << name;
        EXPECT_TRUE(decoded.error.startsWith("not an image")) << name << ": " << decoded.error;
    }
    const auto missing = ImageFileReader::read(temp.file("missing.png"));
    EXPECT_TRUE(missing.error.startsWith("cannot read")) << missing.error;
    EXPECT_TRUE(ImageFileReader::read(temp.folder).error.startsWith("cannot read"));
}

TEST(ImageFiles, FailedWritesLeaveNoFileAndKeepAnExistingOne)
{
    TempFolder temp;
    const auto image = quadrants(10, 10);
    const auto inMissingFolder = temp.file("no/such/folder/out.png");
    EXPECT_TRUE(ImageFileWriter::write(image, inMissingFolder, ImageFileType::png).failed());
    EXPECT_FALSE(inMissingFolder.exists());

    const auto existing = temp.file("keep.png");
    existing.replaceWithText("precious");
    EXPECT_TRUE(ImageFileWriter::write(SxImageRgbaBytes(0, 0), existing, ImageFileType::png).failed());
    EXPECT_EQ(existing.loadFileAsString(), "precious");
    EXPECT_TRUE(ImageFileWriter::write(image, existing, ImageFileType::unknown).failed());
    EXPECT_EQ(temp.folder.getNumberOfChildFiles(juce::File::findFiles | juce::File::ignoreHiddenFiles), 1);
}

TEST(ImageFiles, ShortWriteOnAFullDiskKeepsTheOldFileByteForByte)
{
    // A file size limit stands in for a full disk. The write runs in a child process with the
    // signal's default action, which kills a writer that does not ignore it.
    TempFolder temp;
    SxImageRgbaBytes noise(300, 300);
    juce::Random random(7);
    for (size_t i = 0; i < noise.byteCount(); ++i)
        noise.pixels[i] = (uint8_t) random.nextInt(256);
    for (auto type : { ImageFileType::png, ImageFileType::jpeg, ImageFileType::tiff })
    {
        const auto existing = temp.file("keep." + ImageFileTypes::extensionFor(type));
        ASSERT_TRUE(ImageFileWriter::write(quadrants(20, 20), existing, type).wasOk());
        juce::MemoryBlock before;
        existing.loadFileAsData(before);

        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            std::signal(SIGXFSZ, SIG_DFL);
            rlimit small { 4096, 4096 };
            ::setrlimit(RLIMIT_FSIZE, &small);
            ::_exit(ImageFileWriter::write(noise, existing, type).failed() ? 0 : 1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << ImageFileTypes::extensionFor(type) << " status " << status;

        juce::MemoryBlock after;
        existing.loadFileAsData(after);
        EXPECT_EQ(after, before) << ImageFileTypes::extensionFor(type);
    }
    // No temporary file is left, hidden or not.
    EXPECT_EQ(temp.folder.getNumberOfChildFiles(juce::File::findFiles), 3);
}
