#include "imaging/ImageFileWriter.h"

#include <cmath>
#include <csetjmp>

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

bool writeTiff(const SxImageRgbaBytes& image, const ImageWriteOptions& options, const juce::File& file)
{
    TIFF* tiff = TIFFOpen(file.getFullPathName().toRawUTF8(), "w");
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
    TIFFClose(tiff);
    return ok;
}
} // namespace

namespace ImageFileWriter
{
bool encode(const SxImageRgbaBytes& image, ImageFileType type, const ImageWriteOptions& options, juce::MemoryBlock& out)
{
    if (image.width <= 0 || image.height <= 0)
        return false;
    switch (type)
    {
        case ImageFileType::jpeg: return encodeJpeg(image, options, out);
        case ImageFileType::png: return encodePng(image, options, out);
        case ImageFileType::tiff:
        {
            juce::TemporaryFile temp(".tif");
            return writeTiff(image, options, temp.getFile()) && temp.getFile().loadFileAsData(out);
        }
        case ImageFileType::unknown: break;
    }
    return false;
}

juce::Result write(const SxImageRgbaBytes& image, const juce::File& destination, ImageFileType type, const ImageWriteOptions& options)
{
    if (type == ImageFileType::unknown)
        return juce::Result::fail("cannot write: unknown image format");
    if (image.width <= 0 || image.height <= 0)
        return juce::Result::fail("cannot write: the picture is empty");
    if (!destination.getParentDirectory().isDirectory())
        return juce::Result::fail("cannot write: no such folder");

    juce::TemporaryFile temp(destination, juce::TemporaryFile::useHiddenFile);
    bool written = false;
    if (type == ImageFileType::tiff)
        written = writeTiff(image, options, temp.getFile());
    else
    {
        juce::MemoryBlock bytes;
        // replaceWithData does not notice a short write (a full disk, a file size limit): compare
        // the size on disk, or a truncated file would be renamed over the user's good one.
        written = encode(image, type, options, bytes) && temp.getFile().replaceWithData(bytes.getData(), bytes.getSize())
                  && temp.getFile().getSize() == (juce::int64) bytes.getSize();
    }
    if (!written)
        return juce::Result::fail("cannot write: " + destination.getParentDirectory().getFullPathName() + " is not writable or the disk is full");
    if (!temp.overwriteTargetFileWithTemporary())
        return juce::Result::fail("cannot write: could not replace " + destination.getFileName());
    return juce::Result::ok();
}
} // namespace ImageFileWriter
