#pragma once
// Walks the sections of a JPEG file for the three facts the program needs: the Exif orientation
// (1 to 8) and the X and Y resolution in dots per inch. Files without Exif fall back to the JFIF
// density (which our own writer sets), and to 72 dpi when a file says nothing.

#include <cstddef>

struct ExifInfo
{
    int orientation = 1;
    double resolutionX = 72.0;
    double resolutionY = 72.0;
};

namespace ExifReader
{
/** Never reads outside [data, data + size); garbage gives the defaults. */
ExifInfo readJpeg(const void* data, size_t size);
} // namespace ExifReader
