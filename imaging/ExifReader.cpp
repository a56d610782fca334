#include "imaging/ExifReader.h"

#include <cstdint>
#include <cstring>

namespace
{
// A bounds-checked view of the TIFF structure inside an Exif segment.
struct TiffView
{
    const uint8_t* data;
    size_t size;
    bool bigEndian;

    bool has(size_t offset, size_t length) const { return offset <= size && length <= size - offset; }

    uint16_t u16(size_t offset) const
    {
        if (!has(offset, 2))
            return 0;
        return bigEndian ? (uint16_t) ((data[offset] << 8) | data[offset + 1]) : (uint16_t) ((data[offset + 1] << 8) | data[offset]);
    }

    uint32_t u32(size_t offset) const
    {
        if (!has(offset, 4))
            return 0;
        const uint8_t* p = data + offset;
        return bigEndian ? ((uint32_t) p[0] << 24) | ((uint32_t) p[1] << 16) | ((uint32_t) p[2] << 8) | p[3]
                         : ((uint32_t) p[3] << 24) | ((uint32_t) p[2] << 16) | ((uint32_t) p[1] << 8) | p[0];
    }

    double rational(size_t offset) const
    {
        const uint32_t numerator = u32(offset), denominator = u32(offset + 4);
        return denominator == 0 ? 0.0 : (double) numerator / (double) denominator;
    }
};

constexpr uint16_t tagOrientation = 0x0112, tagXResolution = 0x011A, tagYResolution = 0x011B, tagResolutionUnit = 0x0128;

void readExif(const uint8_t* segment, size_t length, ExifInfo& info)
{
    if (length < 14 || std::memcmp(segment, "Exif\0\0", 6) != 0)
        return;
    TiffView tiff { segment + 6, length - 6, segment[6] == 'M' };
    if (tiff.u16(2) != 42)
        return;

    const uint32_t ifd = tiff.u32(4);
    const uint16_t entries = tiff.u16(ifd);
    if (!tiff.has(ifd + 2, (size_t) entries * 12))
        return;

    double x = 0, y = 0;
    int unit = 2;
    for (uint16_t i = 0; i < entries; ++i)
    {
        const size_t entry = ifd + 2 + (size_t) i * 12;
        const uint16_t tag = tiff.u16(entry), type = tiff.u16(entry + 2);
        if (tag == tagOrientation && type == 3)
        {
            const int value = tiff.u16(entry + 8);
            if (value >= 1 && value <= 8)
                info.orientation = value;
        }
        else if ((tag == tagXResolution || tag == tagYResolution) && type == 5)
            (tag == tagXResolution ? x : y) = tiff.rational(tiff.u32(entry + 8));
        else if (tag == tagResolutionUnit && type == 3)
            unit = tiff.u16(entry + 8);
    }
    const double toInch = unit == 3 ? 2.54 : 1.0;
    if (x > 0 && unit != 1)
        info.resolutionX = x * toInch;
    if (y > 0 && unit != 1)
        info.resolutionY = y * toInch;
}
} // namespace

namespace ExifReader
{
ExifInfo readJpeg(const void* data, size_t size)
{
    ExifInfo info;
    const auto* bytes = static_cast<const uint8_t*>(data);
    if (size < 4 || bytes[0] != 0xFF || bytes[1] != 0xD8)
        return info;

    bool exifSeen = false;
    size_t pos = 2;
    while (pos + 4 <= size)
    {
        if (bytes[pos] != 0xFF)
            break;
        const uint8_t marker = bytes[pos + 1];
        if (marker == 0xFF) // fill byte
        {
            ++pos;
            continue;
        }
        if (marker == 0xDA || marker == 0xD9) // image data follows: no more metadata
            break;
        const size_t length = ((size_t) bytes[pos + 2] << 8) | bytes[pos + 3];
        if (length < 2 || pos + 2 + length > size)
            break;
        const uint8_t* segment = bytes + pos + 4;
        const size_t segmentLength = length - 2;

        if (marker == 0xE1 && !exifSeen && segmentLength >= 6 && std::memcmp(segment, "Exif\0\0", 6) == 0)
        {
            ExifInfo fromExif;
            readExif(segment, segmentLength, fromExif);
            if (fromExif.resolutionX == 72.0 && fromExif.resolutionY == 72.0)
            {
                // Exif without resolution keeps what JFIF said.
                fromExif.resolutionX = info.resolutionX;
                fromExif.resolutionY = info.resolutionY;
            }
            info = fromExif;
            exifSeen = true;
        }
        else if (marker == 0xE0 && !exifSeen && segmentLength >= 12 && std::memcmp(segment, "JFIF\0", 5) == 0)
        {
            const int unit = segment[7];
            const double x = (segment[8] << 8) | segment[9], y = (segment[10] << 8) | segment[11];
            if ((unit == 1 || unit == 2) && x > 0 && y > 0)
            {
                const double toInch = unit == 2 ? 2.54 : 1.0;
                info.resolutionX = x * toInch;
                info.resolutionY = y * toInch;
            }
        }
        pos += 2 + length;
    }
    return info;
}
} // namespace ExifReader
