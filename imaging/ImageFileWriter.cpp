#include "imaging/ImageFileWriter.h"
#include "imaging/ImageLimits.h"
#include "imaging/SafeFileWrite.h"

#include <cmath>
#include <csetjmp>
#include <cstring>

#include <jpeglib.h>
#include <lodepng.h>
#include <tiffio.h>

namespace
{
struct JpegErrorManager
{
    jpeg_error_mgr base;
    std::jmp_buf jump;
};

[[noreturn]] void jpegError(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<JpegErrorManager*>(info->err)->jump, 1);
}

bool encodeJpeg(const SxImageRgbaBytes& image, const ImageWriteOptions& options, juce::MemoryBlock& out)
{
    jpeg_compress_struct info {};
    JpegErrorManager errors;
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = jpegError;
    unsigned char* volatile buffer = nullptr;
    unsigned long size = 0;
    if (setjmp(errors.jump))
    {
        jpeg_destroy_compress(&info);
        std::free(buffer);
        return false;
    }

    jpeg_create_compress(&info);
    unsigned char* target = nullptr;
    jpeg_mem_dest(&info, &target, &size);
    info.image_width = (JDIMENSION) image.width;
    info.image_height = (JDIMENSION) image.height;
    info.input_components = 4;
    info.in_color_space = JCS_EXT_ARGB; // our byte order; the alpha byte is skipped
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, juce::jlimit(1, 100, options.jpegQuality), TRUE);
    info.write_JFIF_header = TRUE;
    info.density_unit = 1; // dots per inch
    info.X_density = (UINT16) juce::jlimit(1, 65535, (int) std::lround(options.resolutionX));
    info.Y_density = (UINT16) juce::jlimit(1, 65535, (int) std::lround(options.resolutionY));
    jpeg_start_compress(&info, TRUE);
    if (options.iccProfile.getSize() > 0)
        jpeg_write_icc_profile(&info, static_cast<const JOCTET*>(options.iccProfile.getData()),
                               (unsigned int) options.iccProfile.getSize());
    while (info.next_scanline < info.image_height)
    {
        JSAMPROW row = const_cast<uint8_t*>(image.pixelAt(0, (int) info.next_scanline));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    buffer = target;
    out.replaceAll(buffer, size);
    jpeg_destroy_compress(&info);
    std::free(buffer);
    return true;
}

bool encodePng(const SxImageRgbaBytes& image, const ImageWriteOptions& options, juce::MemoryBlock& out)
{
    std::vector<uint8_t> rgba(image.byteCount());
    const uint8_t* in = image.pixels;
    for (size_t i = 0; i < rgba.size(); i += 4, in += 4)
    {
        rgba[i] = in[1];
        rgba[i + 1] = in[2];
        rgba[i + 2] = in[3];
        rgba[i + 3] = in[0];
    }

    LodePNGState state;
    lodepng_state_init(&state);
    state.info_raw.colortype = LCT_RGBA;
    state.info_raw.bitdepth = 8;
    state.info_png.phys_defined = 1;
    state.info_png.phys_unit = 1; // metre
    state.info_png.phys_x = (unsigned) std::lround(options.resolutionX / 0.0254);
    state.info_png.phys_y = (unsigned) std::lround(options.resolutionY / 0.0254);
    if (options.iccProfile.getSize() > 0)
        lodepng_set_icc(&state.info_png, "embedded", static_cast<const unsigned char*>(options.iccProfile.getData()),
                        (unsigned) options.iccProfile.getSize());

    unsigned char* encoded = nullptr;
    size_t size = 0;
    const unsigned error = lodepng_encode(&encoded, &size, rgba.data(), (unsigned) image.width, (unsigned) image.height, &state);
    lodepng_state_cleanup(&state);
    if (error == 0)
        out.replaceAll(encoded, size);
    std::free(encoded);
    return error == 0;
}

// libtiff writes through these callbacks into memory, so that a TIFF reaches the disk through the
// same checked path as the other formats. It seeks back to patch offsets and reads the directory
// it wrote, hence the full set.
struct GrowingTiff
{
    std::vector<uint8_t> bytes;
    toff_t position = 0;
};

tsize_t tiffRead(thandle_t handle, tdata_t buffer, tsize_t length)
{
    auto* m = static_cast<GrowingTiff*>(handle);
    if (length <= 0 || m->position >= m->bytes.size())
        return 0;
    const auto n = std::min<toff_t>((toff_t) length, m->bytes.size() - m->position);
    std::memcpy(buffer, m->bytes.data() + m->position, (size_t) n);
    m->position += n;
    return (tsize_t) n;
}

tsize_t tiffWrite(thandle_t handle, tdata_t buffer, tsize_t length)
{
    auto* m = static_cast<GrowingTiff*>(handle);
    if (length < 0)
        return -1;
    try
    {
        if (m->position + (toff_t) length > m->bytes.size())
            m->bytes.resize((size_t) (m->position + (toff_t) length));
    }
    catch (const std::bad_alloc&)
    {
        return -1;
    }
    std::memcpy(m->bytes.data() + m->position, buffer, (size_t) length);
    m->position += (toff_t) length;
    return length;
}

toff_t tiffSeek(thandle_t handle, toff_t offset, int whence)
{
    auto* m = static_cast<GrowingTiff*>(handle);
    const toff_t base = whence == SEEK_CUR ? m->position : (whence == SEEK_END ? (toff_t) m->bytes.size() : 0);
    m->position = base + offset;
    return m->position;
}

int tiffClose(thandle_t) { return 0; }
toff_t tiffSize(thandle_t handle) { return static_cast<GrowingTiff*>(handle)->bytes.size(); }
int tiffMap(thandle_t, tdata_t*, toff_t*) { return 0; }
void tiffUnmap(thandle_t, tdata_t, toff_t) {}
void tiffQuiet(const char*, const char*, va_list) {}

bool encodeTiff(const SxImageRgbaBytes& image, const ImageWriteOptions& options, juce::MemoryBlock& out)
{
    TIFFSetErrorHandler(tiffQuiet);
    TIFFSetWarningHandler(tiffQuiet);
    GrowingTiff memory;
    TIFF* tiff = TIFFClientOpen("memory", "w", &memory, tiffRead, tiffWrite, tiffSeek, tiffClose, tiffSize, tiffMap, tiffUnmap);
    if (tiff == nullptr)
        return false;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, (uint32_t) image.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, (uint32_t) image.height);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
    const uint16_t extra[] = { EXTRASAMPLE_UNASSALPHA }; // straight alpha, as we hold it
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extra);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, (float) options.resolutionX);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, (float) options.resolutionY);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
    if (options.iccProfile.getSize() > 0)
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, (uint32_t) options.iccProfile.getSize(), options.iccProfile.getData());

    std::vector<uint8_t> row((size_t) image.width * 4);
    bool ok = true;
    for (int y = 0; y < image.height && ok; ++y)
    {
        const uint8_t* in = image.pixelAt(0, y);
        for (size_t i = 0; i < row.size(); i += 4, in += 4)
        {
            row[i] = in[1];
            row[i + 1] = in[2];
            row[i + 2] = in[3];
            row[i + 3] = in[0];
        }
        ok = TIFFWriteScanline(tiff, row.data(), (uint32_t) y, 0) >= 0;
    }
    // The directory is written on flush; a failure there leaves a TIFF without one.
    ok = ok && TIFFFlush(tiff) == 1;
    TIFFClose(tiff);
    if (ok)
        out.replaceAll(memory.bytes.data(), memory.bytes.size());
    return ok;
}
} // namespace

namespace ImageFileWriter
{
bool encode(const SxImageRgbaBytes& image, ImageFileType type, const ImageWriteOptions& given, juce::MemoryBlock& out)
{
    if (image.width <= 0 || image.height <= 0)
        return false;
    // A resolution no file should carry (negative, zero, absurd) is written as the default.
    ImageWriteOptions options = given;
    options.resolutionX = ImageLimits::sanitisedResolution(given.resolutionX);
    options.resolutionY = ImageLimits::sanitisedResolution(given.resolutionY);
    switch (type)
    {
        case ImageFileType::jpeg: return encodeJpeg(image, options, out);
        case ImageFileType::png: return encodePng(image, options, out);
        case ImageFileType::tiff: return encodeTiff(image, options, out);
        case ImageFileType::unknown: break;
    }
    return false;
}

namespace
{
/** The checks every file write shares, then the picture encoded into bytes. */
juce::Result encodeFor(const SxImageRgbaBytes& image, const juce::File& destination, ImageFileType type,
                       const ImageWriteOptions& options, juce::MemoryBlock& bytes)
{
    if (type == ImageFileType::unknown)
        return juce::Result::fail("cannot write: unknown image format");
    if (image.width <= 0 || image.height <= 0)
        return juce::Result::fail("cannot write: the picture is empty");
    if (!destination.getParentDirectory().isDirectory())
        return juce::Result::fail("cannot write: no such folder");
    if (!encode(image, type, options, bytes))
        return juce::Result::fail("cannot write: the picture could not be encoded");
    return juce::Result::ok();
}
} // namespace

juce::Result write(const SxImageRgbaBytes& image, const juce::File& destination, ImageFileType type, const ImageWriteOptions& options)
{
    juce::MemoryBlock bytes;
    const auto encoded = encodeFor(image, destination, type, options, bytes);
    return encoded.failed() ? encoded : SafeFileWrite::replace(destination, bytes.getData(), bytes.getSize());
}

juce::Result writeNew(const SxImageRgbaBytes& image, const juce::File& destination, ImageFileType type,
                      const ImageWriteOptions& options, bool& nameTaken)
{
    nameTaken = false;
    juce::MemoryBlock bytes;
    const auto encoded = encodeFor(image, destination, type, options, bytes);
    return encoded.failed() ? encoded : SafeFileWrite::createNew(destination, bytes.getData(), bytes.getSize(), nameTaken);
}
} // namespace ImageFileWriter
