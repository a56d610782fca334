#include "imaging/ImageStream.h"
#include "imaging/SafeFileWrite.h"

namespace ImageStream
{
namespace
{
constexpr char magic[4] = { 'S', 'X', 'R', 'B' };
constexpr int version = 1;
constexpr int maxSide = 1 << 16;
} // namespace

bool write(const SxImageRgbaBytes& image, juce::OutputStream& out)
{
    return out.write(magic, 4) && out.writeInt(version) && out.writeInt(image.width) && out.writeInt(image.height)
           && out.write(image.pixels, image.byteCount());
}

SxImageRgbaBytes* read(juce::InputStream& in)
{
    // The whole header is read at once: a short stream must not read as zeros.
    uint8_t header[16] = {};
    if (in.read(header, 16) != 16 || std::memcmp(header, magic, 4) != 0)
        return nullptr;
    if ((int) juce::ByteOrder::littleEndianInt(header + 4) != version)
        return nullptr;
    const int width = (int) juce::ByteOrder::littleEndianInt(header + 8);
    const int height = (int) juce::ByteOrder::littleEndianInt(header + 12);
    if (width < 0 || height < 0 || width > maxSide || height > maxSide)
        return nullptr;

    const auto bytes = (juce::int64) width * height * 4;
    const auto remaining = in.getNumBytesRemaining();
    if (remaining >= 0 && remaining < bytes)
        return nullptr;

    auto* image = new SxImageRgbaBytes(width, height);
    if (in.read(image->pixels, (size_t) bytes) != bytes)
    {
        image->release();
        return nullptr;
    }
    return image;
}

bool writeFile(const SxImageRgbaBytes& image, const juce::File& file)
{
    juce::MemoryOutputStream out(image.byteCount() + 16);
    return write(image, out) && SafeFileWrite::replace(file, out.getData(), out.getDataSize()).wasOk();
}

SxImageRgbaBytes* readFile(const juce::File& file)
{
    juce::FileInputStream in(file);
    if (!in.openedOk())
        return nullptr;
    return read(in);
}
} // namespace ImageStream
