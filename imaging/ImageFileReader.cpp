#include "imaging/ImageFileReader.h"
#include "imaging/ColorProfile.h"
#include "imaging/ExifReader.h"
#include "imaging/FileBytes.h"
#include "imaging/ImageLimits.h"

#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>
#include <jerror.h>
#include <lodepng.h>
#include <tiffio.h>

namespace
{
DecodedImage failure(const juce::String& reason)
{
    DecodedImage result;
    result.error = reason;
    return result;
}

ImageFileType sniff(const uint8_t* b, size_t size)
{
    if (size >= 3 && b[0] == 0xFF && b[1] == 0xD8 && b[2] == 0xFF)
        return ImageFileType::jpeg;
    if (size >= 8 && std::memcmp(b, "\x89PNG\r\n\x1a\n", 8) == 0)
        return ImageFileType::png;
    if (size >= 4 && (std::memcmp(b, "II*\0", 4) == 0 || std::memcmp(b, "MM\0*", 4) == 0))
        return ImageFileType::tiff;
    return ImageFileType::unknown;
}

/** Empty when the header's size may be decoded, else the reason: sizes no picture has are damage,
    sizes over the limit are refused as too large. */
juce::String sizeRefusal(int64_t width, int64_t height)
{
    const auto why = ImageLimits::refusal(width, height);
    if (why.isEmpty())
        return {};
    const bool plausible = width > 0 && height > 0 && width <= 65535 && height <= 65535;
    return (plausible ? "too large: " : "not an image: ") + why;
}

//==============================================================================
// JPEG through libjpeg-turbo. Errors and the warnings that mean damaged data end the decode.
struct JpegErrorManager
{
    jpeg_error_mgr base;
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX] = {};
};

[[noreturn]] void jpegError(j_common_ptr info)
{
    auto* manager = reinterpret_cast<JpegErrorManager*>(info->err);
    (*info->err->format_message)(info, manager->message);
    std::longjmp(manager->jump, 1);
}

void jpegMessage(j_common_ptr info, int level)
{
    // Level -1 is a warning about corrupt data, such as a file that ends early.
    if (level < 0 && info->err->msg_code != JWRN_EXTRANEOUS_DATA)
        jpegError(info);
}

/** The picture as it is meant to be seen, for the Exif orientations 2 to 8 (1 is as stored). */
SxImageRgbaBytes* oriented(const SxImageRgbaBytes& source, int orientation)
{
    const int w = source.width, h = source.height;
    const bool swapsSides = orientation >= 5; // 5 to 8 turn by a quarter, mirrored or not
    auto* result = new SxImageRgbaBytes(swapsSides ? h : w, swapsSides ? w : h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            int dx = x, dy = y;
            switch (orientation)
            {
                case 2: dx = w - 1 - x; break;                        // mirrored left to right
                case 3: dx = w - 1 - x; dy = h - 1 - y; break;        // half a turn
                case 4: dy = h - 1 - y; break;                        // mirrored top to bottom
                case 5: dx = y; dy = x; break;                        // transposed
                case 6: dx = h - 1 - y; dy = x; break;                // 90° clockwise
                case 7: dx = h - 1 - y; dy = w - 1 - x; break;        // transposed across the other diagonal
                case 8: dx = y; dy = w - 1 - x; break;                // 90° counter-clockwise
                default: break;
            }
            std::memcpy(result->pixelAt(dx, dy), source.pixelAt(x, y), 4);
        }
    return result;
}

DecodedImage readJpeg(const uint8_t* data, size_t size)
{
    jpeg_decompress_struct info {};
    JpegErrorManager errors;
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = jpegError;
    errors.base.emit_message = jpegMessage;

    SxImageRgbaBytes* volatile image = nullptr;
    JOCTET* volatile icc = nullptr;
    uint8_t* volatile cmykRow = nullptr; // plain memory: a longjmp skips destructors
    unsigned int iccLength = 0;
    if (setjmp(errors.jump))
    {
        jpeg_destroy_decompress(&info);
        if (image != nullptr)
            image->release();
        std::free(icc);
        std::free(cmykRow);
        if (errors.base.msg_code == JERR_OUT_OF_MEMORY)
            return failure(ImageLimits::outOfMemory);
        return failure("not an image: " + juce::String(errors.message));
    }

    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, data, (unsigned long) size);
    jpeg_save_markers(&info, JPEG_APP0 + 2, 0xFFFF);
    jpeg_read_header(&info, TRUE);
    if (const auto refused = sizeRefusal(info.image_width, info.image_height); refused.isNotEmpty())
    {
        jpeg_destroy_decompress(&info);
        return failure(refused);
    }
    // A sequential Huffman-coded file codes every 8 x 8 block of every component, and no block in
    // fewer than two bits (its DC difference and the end of its block). Fewer bytes than that is a
    // file cut short, turned away before the picture's buffer is made. Progressive and arithmetic
    // coding can go below a bit a block, and are left to the size limit.
    if (! info.progressive_mode && ! info.arith_code)
    {
        uint64_t blocks = 0;
        for (int c = 0; c < info.num_components; ++c)
            blocks += (uint64_t) info.comp_info[c].width_in_blocks * info.comp_info[c].height_in_blocks;
        if (blocks / 4 > size)
        {
            jpeg_destroy_decompress(&info);
            return failure("not an image: the file is shorter than the picture it describes");
        }
    }

    JOCTET* profile = nullptr;
    if (jpeg_read_icc_profile(&info, &profile, &iccLength))
        icc = profile;

    const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    info.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_ARGB; // alpha, red, green, blue: our own order
    jpeg_start_decompress(&info);
    try
    {
        image = new SxImageRgbaBytes((int) info.output_width, (int) info.output_height);
    }
    catch (const std::bad_alloc&)
    {
        jpeg_destroy_decompress(&info);
        std::free(icc);
        return failure("too large: not enough free memory to decode the picture");
    }
    if (cmyk)
        cmykRow = static_cast<uint8_t*>(std::malloc((size_t) info.output_width * 4));
    while (info.output_scanline < info.output_height)
    {
        const int y = (int) info.output_scanline;
        JSAMPROW target = cmyk ? cmykRow : image->pixelAt(0, y);
        jpeg_read_scanlines(&info, &target, 1);
        if (cmyk)
        {
            // Photo editors store CMYK JPEGs inverted (Adobe); multiply out the black plate.
            const bool inverted = info.saw_Adobe_marker;
            uint8_t* out = image->pixelAt(0, y);
            for (JDIMENSION x = 0; x < info.output_width; ++x, out += 4)
            {
                const uint8_t* p = cmykRow + x * 4;
                const int c = inverted ? p[0] : 255 - p[0], m = inverted ? p[1] : 255 - p[1];
                const int ye = inverted ? p[2] : 255 - p[2], k = inverted ? p[3] : 255 - p[3];
                out[0] = 255;
                out[1] = (uint8_t) (c * k / 255);
                out[2] = (uint8_t) (m * k / 255);
                out[3] = (uint8_t) (ye * k / 255);
            }
        }
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    std::free(cmykRow);

    DecodedImage result;
    const auto exif = ExifReader::readJpeg(data, size);
    result.resolutionX = ImageLimits::sanitisedResolution(exif.resolutionX);
    result.resolutionY = ImageLimits::sanitisedResolution(exif.resolutionY);
    result.orientation = exif.orientation;
    if (icc != nullptr && !cmyk)
        result.iccProfile.replaceAll(icc, iccLength);
    std::free(icc);

    if (exif.orientation >= 2 && exif.orientation <= 8)
    {
        result.image = SxRef<SxImageRgbaBytes>::adopt(oriented(*image, exif.orientation));
        image->release();
    }
    else
        result.image = SxRef<SxImageRgbaBytes>::adopt(image);
    return result;
}

//==============================================================================
DecodedImage readPng(const uint8_t* data, size_t size)
{
    unsigned width = 0, height = 0;
    LodePNGState state;
    lodepng_state_init(&state);
    if (lodepng_inspect(&width, &height, &state, data, size) != 0)
    {
        lodepng_state_cleanup(&state);
        return failure("not an image: damaged PNG");
    }
    if (const auto refused = sizeRefusal(width, height); refused.isNotEmpty())
    {
        lodepng_state_cleanup(&state);
        return failure(refused);
    }
    // Deflate turns a byte of data into at most 1032 bytes (a 258-byte match in two bits), so the
    // filtered rows cannot come out of fewer bytes than this: a short file is turned away before
    // the decoder makes buffers for the whole picture.
    const uint64_t bitsPerPixel = lodepng_get_bpp(&state.info_png.color);
    const uint64_t filteredBytes = (uint64_t) height * (1 + ((uint64_t) width * bitsPerPixel + 7) / 8);
    if (filteredBytes / 1032 > size)
    {
        lodepng_state_cleanup(&state);
        return failure("not an image: the file is shorter than the picture it describes");
    }

    state.info_raw.colortype = LCT_RGBA;
    state.info_raw.bitdepth = 8;
    unsigned char* rgba = nullptr;
    const unsigned error = lodepng_decode(&rgba, &width, &height, &state, data, size);
    if (error != 0)
    {
        std::free(rgba);
        lodepng_state_cleanup(&state);
        if (error == 83) // LodePNG's "memory allocation failed"
            return failure(ImageLimits::outOfMemory);
        return failure(juce::String("not an image: ") + lodepng_error_text(error));
    }

    DecodedImage result;
    result.image = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes((int) width, (int) height));
    const uint8_t* in = rgba;
    uint8_t* out = result.image->pixels;
    for (size_t i = 0, n = (size_t) width * height; i < n; ++i, in += 4, out += 4)
    {
        out[0] = in[3];
        out[1] = in[0];
        out[2] = in[1];
        out[3] = in[2];
    }
    std::free(rgba);

    const auto& png = state.info_png;
    result.hasAlpha = lodepng_can_have_alpha(&png.color) != 0;
    if (png.phys_defined && png.phys_unit == 1 && png.phys_x > 0 && png.phys_y > 0)
    {
        result.resolutionX = ImageLimits::sanitisedResolution(png.phys_x * 0.0254);
        result.resolutionY = ImageLimits::sanitisedResolution(png.phys_y * 0.0254);
    }
    if (png.iccp_defined && png.iccp_profile_size > 0)
        result.iccProfile.replaceAll(png.iccp_profile, png.iccp_profile_size);
    lodepng_state_cleanup(&state);
    return result;
}

//==============================================================================
// TIFF through libtiff, reading from memory so that every source takes one path.
struct MemoryTiff
{
    const uint8_t* data;
    toff_t size;
    toff_t position = 0;
};

tsize_t tiffRead(thandle_t handle, tdata_t buffer, tsize_t length)
{
    auto* m = static_cast<MemoryTiff*>(handle);
    if (length < 0 || m->position >= m->size)
        return 0;
    const auto n = std::min<toff_t>((toff_t) length, m->size - m->position);
    std::memcpy(buffer, m->data + m->position, (size_t) n);
    m->position += n;
    return (tsize_t) n;
}

tsize_t tiffWrite(thandle_t, tdata_t, tsize_t) { return 0; }

toff_t tiffSeek(thandle_t handle, toff_t offset, int whence)
{
    auto* m = static_cast<MemoryTiff*>(handle);
    toff_t base = whence == SEEK_CUR ? m->position : (whence == SEEK_END ? m->size : 0);
    m->position = base + offset;
    return m->position;
}

int tiffClose(thandle_t) { return 0; }
toff_t tiffSize(thandle_t handle) { return static_cast<MemoryTiff*>(handle)->size; }
int tiffMap(thandle_t, tdata_t*, toff_t*) { return 0; }
void tiffUnmap(thandle_t, tdata_t, toff_t) {}

thread_local juce::String tiffLastError;

void tiffErrorHandler(const char*, const char* format, va_list arguments)
{
    char text[512];
    std::vsnprintf(text, sizeof(text), format, arguments);
    tiffLastError = text;
}

void tiffWarningHandler(const char*, const char*, va_list) {}

// 8-bit RGB(A) strips, the common case and what we write ourselves, are read as they are: the
// general RGBA interface premultiplies alpha, which would lose precision on every round trip.
SxImageRgbaBytes* readPlainTiff(TIFF* tiff, uint32_t width, uint32_t height)
{
    uint16_t bits = 0, samples = 0, planar = 0, photometric = 0;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planar);
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
    if (TIFFIsTiled(tiff) || bits != 8 || planar != PLANARCONFIG_CONTIG || photometric != PHOTOMETRIC_RGB
        || (samples != 3 && samples != 4) || TIFFScanlineSize(tiff) < (tmsize_t) width * samples)
        return nullptr;

    auto* image = new SxImageRgbaBytes((int) width, (int) height);
    std::vector<uint8_t> row((size_t) TIFFScanlineSize(tiff));
    for (uint32_t y = 0; y < height; ++y)
    {
        if (TIFFReadScanline(tiff, row.data(), y, 0) < 0)
        {
            image->release();
            return nullptr;
        }
        uint8_t* out = image->pixelAt(0, (int) y);
        for (uint32_t x = 0; x < width; ++x, out += 4)
        {
            const uint8_t* p = row.data() + (size_t) x * samples;
            out[0] = samples == 4 ? p[3] : 255;
            out[1] = p[0];
            out[2] = p[1];
            out[3] = p[2];
        }
    }
    return image;
}

SxImageRgbaBytes* readTiffPixels(TIFF* tiff, uint32_t width, uint32_t height, bool hasAlpha)
{
    if (auto* plain = readPlainTiff(tiff, width, height))
        return plain;

    // Everything else (16 bits, palettes, tiles, YCbCr, ...) through libtiff's RGBA interface.
    std::vector<uint32_t> raster;
    try
    {
        raster.resize((size_t) width * height);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
    if (TIFFReadRGBAImage(tiff, width, height, raster.data(), 0) == 0)
        return nullptr;

    auto* image = new SxImageRgbaBytes((int) width, (int) height);
    // The raster's origin is the lower left corner: file row height - 1 - y is image row y.
    for (uint32_t y = 0; y < height; ++y)
    {
        const uint32_t* in = raster.data() + (size_t) (height - 1 - y) * width;
        uint8_t* out = image->pixelAt(0, (int) y);
        for (uint32_t x = 0; x < width; ++x, out += 4)
        {
            const uint32_t a = TIFFGetA(in[x]);
            uint32_t r = TIFFGetR(in[x]), g = TIFFGetG(in[x]), b = TIFFGetB(in[x]);
            if (hasAlpha && a > 0 && a < 255) // the interface hands out premultiplied colour
            {
                r = std::min<uint32_t>(255, (r * 255 + a / 2) / a);
                g = std::min<uint32_t>(255, (g * 255 + a / 2) / a);
                b = std::min<uint32_t>(255, (b * 255 + a / 2) / a);
            }
            out[0] = (uint8_t) a;
            out[1] = (uint8_t) r;
            out[2] = (uint8_t) g;
            out[3] = (uint8_t) b;
        }
    }
    return image;
}

DecodedImage readTiff(const uint8_t* data, size_t size)
{
    TIFFSetErrorHandler(tiffErrorHandler);
    TIFFSetWarningHandler(tiffWarningHandler);
    tiffLastError.clear();

    MemoryTiff memory { data, (toff_t) size };
    TIFF* tiff = TIFFClientOpen("memory", "rm", &memory, tiffRead, tiffWrite, tiffSeek, tiffClose, tiffSize, tiffMap, tiffUnmap);
    if (tiff == nullptr)
        return failure("not an image: " + (tiffLastError.isEmpty() ? juce::String("damaged TIFF") : tiffLastError));

    uint32_t width = 0, height = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    if (const auto refused = sizeRefusal(width, height); refused.isNotEmpty())
    {
        TIFFClose(tiff);
        return failure(refused);
    }
    // Uncompressed rows take their full size in the file: a short file cannot hold the picture,
    // and is turned away before a buffer for all of it is made.
    uint16_t compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &compression);
    if (compression == COMPRESSION_NONE && (uint64_t) TIFFScanlineSize64(tiff) * height > size)
    {
        TIFFClose(tiff);
        return failure("not an image: the file is shorter than the picture it describes");
    }

    uint16_t extraCount = 0;
    uint16_t* extraTypes = nullptr;
    const bool hasAlpha = TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extraTypes) && extraCount > 0;

    DecodedImage result;
    result.hasAlpha = hasAlpha;
    result.image = SxRef<SxImageRgbaBytes>::adopt(readTiffPixels(tiff, width, height, hasAlpha));
    if (!result.ok())
    {
        TIFFClose(tiff);
        return failure("not an image: " + (tiffLastError.isEmpty() ? juce::String("unreadable TIFF") : tiffLastError));
    }

    float x = 0, y = 0;
    uint16_t unit = RESUNIT_INCH;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
    const double toInch = unit == RESUNIT_CENTIMETER ? 2.54 : 1.0;
    if (unit != RESUNIT_NONE && TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x) && x > 0)
        result.resolutionX = ImageLimits::sanitisedResolution(x * toInch);
    if (unit != RESUNIT_NONE && TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y) && y > 0)
        result.resolutionY = ImageLimits::sanitisedResolution(y * toInch);

    uint32_t iccLength = 0;
    void* icc = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &iccLength, &icc) && icc != nullptr && iccLength > 0)
        result.iccProfile.replaceAll(icc, iccLength);

    TIFFClose(tiff);
    return result;
}
} // namespace

namespace ImageFileReader
{
DecodedImage readMemory(const void* data, size_t size, ImageFileType type)
{
    const auto* bytes = static_cast<const uint8_t*>(data);
    const auto actual = sniff(bytes, size);
    // The name decides the codec, but a file whose bytes say otherwise is read for what it is.
    if (actual != ImageFileType::unknown)
        type = actual;
    try
    {
        switch (type)
        {
            case ImageFileType::jpeg: return readJpeg(bytes, size);
            case ImageFileType::png: return readPng(bytes, size);
            case ImageFileType::tiff: return readTiff(bytes, size);
            case ImageFileType::unknown: break;
        }
    }
    catch (const std::bad_alloc&)
    {
        // The header passed the limits, but the machine has less memory than it said it had free.
        return failure("too large: not enough free memory to decode the picture");
    }
    return failure("not an image: unknown format");
}

DecodedImage read(const juce::File& file)
{
    juce::MemoryBlock bytes;
    if (const auto error = FileBytes::read(file, bytes); error.isNotEmpty())
        return failure(error);
    if (bytes.getSize() == 0)
        return failure("not an image: the file is empty");
    auto decoded = readMemory(bytes.getData(), bytes.getSize(), ImageFileTypes::fromPath(file.getFullPathName()));
    if (decoded.ok() && decoded.iccProfile.getSize() > 0)
        decoded.convertedToSRGB = ColorProfile::convertToSRGB(*decoded.image, decoded.iccProfile);
    return decoded;
}
} // namespace ImageFileReader
