#include "document/HandOverFiles.h"
#include "imaging/FileBytes.h"
#include "imaging/ImageLimits.h"
#include "imaging/SafeFileWrite.h"

#include <cmath>

namespace HandOverFiles
{
namespace
{
constexpr int maxSide = 1 << 16;
constexpr int maxTitleBytes = 4096;
// A parameter block or colour profile beyond this is not one: profiles are a few kilobytes.
constexpr int maxBlockBytes = 64 << 20;
const char* const appliedMark = "applied";

bool readInt(juce::InputStream& in, int& value)
{
    uint8_t bytes[4];
    if (in.read(bytes, 4) != 4)
        return false;
    value = (int) juce::ByteOrder::littleEndianInt(bytes);
    return true;
}

bool writeInt(juce::OutputStream& out, int value)
{
    return out.writeInt(value); // JUCE writes little-endian
}

bool fitsInStream(juce::InputStream& in, juce::int64 bytes)
{
    const auto remaining = in.getNumBytesRemaining();
    return bytes >= 0 && remaining >= 0 && bytes <= remaining;
}

// A block whose size the file gives: checked against what the stream still holds first, so a
// lying size never becomes an allocation.
bool readBlock(juce::InputStream& in, int size, int limit, juce::MemoryBlock& block)
{
    if (size < 0 || size > limit || !fitsInStream(in, size))
        return false;
    block.setSize((size_t) size);
    return size == 0 || in.read(block.getData(), size) == size;
}

bool readTitleLine(juce::InputStream& in, juce::String& title)
{
    juce::MemoryOutputStream line;
    for (int i = 0;; ++i)
    {
        char c = 0;
        if (in.read(&c, 1) != 1 || i > maxTitleBytes)
            return false;
        if (c == '\n')
            break;
        line.writeByte(c);
    }
    auto length = line.getDataSize();
    if (length == 0)
    {
        title = {};
        return true;
    }
    const auto* text = static_cast<const char*>(line.getData());
    if (length > 0 && text[length - 1] == '\r')
        --length;
    // A title is only shown; one that is not UTF-8 is dropped rather than half-decoded.
    if (! FileBytes::toText(text, (size_t) length, title))
        title = {};
    return true;
}

uint16_t sample16(const uint8_t* p)
{
    return (uint16_t) (p[0] | (p[1] << 8));
}

void putSample16(uint8_t* p, int v)
{
    p[0] = (uint8_t) (v & 0xff);
    p[1] = (uint8_t) ((v >> 8) & 0xff);
}

// The host's sixteen-bit scale has 32768 as white; the factors are those the hosts' own plug-ins
// use, truncating.
uint8_t grey16ToByte(uint16_t v)
{
    return (uint8_t) juce::jmin(255, (int) (v * 0.0078125));
}

uint8_t colour16ToByte(uint16_t v)
{
    return (uint8_t) juce::jmin(255, (int) (v * 3.0517578e-5 * 255.0));
}

int byteTo16(int v)
{
    return (v * 32768 + 127) / 255;
}

int blend(int host, int result, int coverage)
{
    return (host * (255 - coverage) + result * coverage + 127) / 255;
}

int luminance(const uint8_t* argb)
{
    return (299 * argb[1] + 587 * argb[2] + 114 * argb[3] + 500) / 1000;
}
} // namespace

Paths pathsIn(const juce::File& folder)
{
    return { folder.getChildFile(".OmbrikFlag.dat"), folder.getChildFile(".OmbrikImg.dat"),
             folder.getChildFile(".OmbrikData.dat"), folder.getChildFile(".OmbrikActionData.dat") };
}

int Header::colourPlanes() const
{
    switch (imageMode)
    {
        case grey8:
        case grey16: return 1;
        case rgb8:
        case rgb16: return 3;
        default: return 0;
    }
}

int Header::bytesPerSample() const
{
    return imageMode == grey16 || imageMode == rgb16 ? 2 : 1;
}

bool readTitle(juce::InputStream& in, juce::String& title, int& parameterSize)
{
    return readTitleLine(in, title) && readInt(in, parameterSize);
}

bool readImage(juce::InputStream& in, Image& image, juce::String& error)
{
    auto& h = image.header;
    auto fail = [&error](const char* why) {
        error = why;
        return false;
    };
    int parameterSize = 0;
    if (!readTitle(in, h.title, parameterSize))
        return fail("no title line");
    if (!readBlock(in, parameterSize, maxBlockBytes, h.parameterBlock))
        return fail("the parameter block does not fit the file");

    int* fields[] = { &h.hiPlane, &h.loPlane, &h.left, &h.top, &h.right, &h.bottom, &h.imageMode, &h.rowBytes,
                      &h.planeFlag, &h.hostRect[0], &h.hostRect[1], &h.hostRect[2], &h.hostRect[3], &h.maskRowBytes };
    for (auto* field : fields)
        if (!readInt(in, *field))
            return fail("the header is cut short");
    int profileSize = 0;
    if (!readInt(in, profileSize) || !readBlock(in, profileSize, maxBlockBytes, h.profile))
        return fail("the colour profile does not fit the file");

    if (h.colourPlanes() == 0)
        return fail("unknown image mode");
    // Differences in 64 bits: the fields are any int32 a damaged file holds.
    const auto width = (juce::int64) h.right - h.left, height = (juce::int64) h.bottom - h.top;
    const auto planes = (juce::int64) h.hiPlane - h.loPlane + 1;
    if (width < 1 || height < 1 || width > maxSide || height > maxSide)
        return fail("the rectangle is empty or too large");
    if (const auto refused = ImageLimits::refusal(width, height); refused.isNotEmpty())
        return fail(refused.toRawUTF8());
    if (planes < h.colourPlanes() || planes > 4)
        return fail("the planes do not match the image mode");
    const auto rowLength = width * planes * h.bytesPerSample();
    if (h.rowBytes < rowLength)
        return fail("rows are shorter than the picture is wide");

    int pixelSize = 0;
    if (!readInt(in, pixelSize) || pixelSize < (height - 1) * h.rowBytes + rowLength)
        return fail("the pixels do not fill the rectangle");
    if (!readBlock(in, pixelSize, pixelSize, image.pixels))
        return fail("the pixels are cut short");

    int maskSize = 0;
    if (!readInt(in, maskSize))
        return fail("the mask size is missing");
    if (maskSize != 0 && (h.maskRowBytes < width || maskSize < (height - 1) * h.maskRowBytes + width))
        return fail("the mask does not cover the rectangle");
    if (!readBlock(in, maskSize, maskSize, image.mask))
        return fail("the mask is cut short");
    return true;
}

bool readImageFile(const juce::File& file, Image& image, juce::String& error)
{
    juce::FileInputStream in(file);
    if (!in.openedOk())
    {
        error = "cannot open " + file.getFullPathName();
        return false;
    }
    juce::BufferedInputStream buffered(in, 1 << 16);
    return readImage(buffered, image, error);
}

bool writeImage(juce::OutputStream& out, const Image& image)
{
    const auto& h = image.header;
    const auto title = h.title.toUTF8();
    bool ok = out.write(title.getAddress(), title.sizeInBytes() - 1) && out.writeByte('\n')
              && writeInt(out, (int) h.parameterBlock.getSize()) && out.write(h.parameterBlock.getData(), h.parameterBlock.getSize());
    for (int value : { h.hiPlane, h.loPlane, h.left, h.top, h.right, h.bottom, h.imageMode, h.rowBytes, h.planeFlag,
                       h.hostRect[0], h.hostRect[1], h.hostRect[2], h.hostRect[3], h.maskRowBytes })
        ok = ok && writeInt(out, value);
    return ok && writeInt(out, (int) h.profile.getSize()) && out.write(h.profile.getData(), h.profile.getSize())
           && writeInt(out, (int) image.pixels.getSize()) && out.write(image.pixels.getData(), image.pixels.getSize())
           && writeInt(out, (int) image.mask.getSize()) && out.write(image.mask.getData(), image.mask.getSize());
}

SxRef<SxImageRgbaBytes> Image::toPicture() const
{
    const auto& h = header;
    auto picture = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(h.width(), h.height()));
    const int stride = h.samplesPerPixel() * h.bytesPerSample();
    const auto* source = static_cast<const uint8_t*>(pixels.getData());
    for (int y = 0; y < h.height(); ++y)
    {
        const auto* row = source + (size_t) y * (size_t) h.rowBytes;
        auto* out = picture->pixelAt(0, y);
        for (int x = 0; x < h.width(); ++x, out += 4)
        {
            const auto* p = row + (size_t) x * (size_t) stride;
            out[0] = 255;
            switch (h.imageMode)
            {
                case grey8: out[1] = out[2] = out[3] = p[0]; break;
                case rgb8: out[1] = p[0], out[2] = p[1], out[3] = p[2]; break;
                case grey16: out[1] = out[2] = out[3] = grey16ToByte(sample16(p)); break;
                default:
                    for (int c = 0; c < 3; ++c)
                        out[1 + c] = colour16ToByte(sample16(p + 2 * c));
                    break;
            }
        }
    }
    return picture;
}

SxRef<SxImageAlphaByte> Image::toSelectionMask() const
{
    if (mask.isEmpty())
        return {};
    auto selection = SxRef<SxImageAlphaByte>::adopt(new SxImageAlphaByte(header.width(), header.height()));
    for (int y = 0; y < header.height(); ++y)
        std::memcpy(selection->pixelAt(0, y), static_cast<const uint8_t*>(mask.getData()) + (size_t) y * (size_t) header.maskRowBytes,
                    (size_t) header.width());
    return selection;
}

Image withResult(const Image& host, const SxImageRgbaBytes& result)
{
    jassert(result.width == host.header.width() && result.height == host.header.height());
    Image out;
    out.header = host.header;
    out.pixels = host.pixels;
    const auto& h = host.header;
    const int planes = h.colourPlanes(), bytes = h.bytesPerSample(), stride = h.samplesPerPixel() * bytes;
    const auto* mask = static_cast<const uint8_t*>(host.mask.getData());
    auto* target = static_cast<uint8_t*>(out.pixels.getData());
    for (int y = 0; y < h.height(); ++y)
        for (int x = 0; x < h.width(); ++x)
        {
            const int coverage = mask != nullptr ? mask[(size_t) y * (size_t) h.maskRowBytes + (size_t) x] : 255;
            if (coverage == 0)
                continue;
            const auto* argb = result.pixelAt(x, y);
            auto* p = target + (size_t) y * (size_t) h.rowBytes + (size_t) x * (size_t) stride;
            for (int c = 0; c < planes; ++c)
            {
                const int value = planes == 1 ? luminance(argb) : argb[1 + c];
                if (bytes == 1)
                    p[c] = (uint8_t) blend(p[c], value, coverage);
                else
                    putSample16(p + 2 * c, blend(sample16(p + 2 * c), byteTo16(value), coverage));
            }
        }
    return out;
}

juce::Result writeResult(const Paths& paths, const Image& result)
{
    juce::MemoryOutputStream out(result.pixels.getSize() + result.mask.getSize() + 4096);
    if (!writeImage(out, result))
        return juce::Result::fail("cannot write " + paths.image.getFullPathName());
    if (const auto written = SafeFileWrite::replace(paths.image, out.getData(), out.getDataSize()); written.failed())
        return written;
    if (!paths.flag.replaceWithText(appliedMark, false, false, "\n"))
        return juce::Result::fail("cannot mark " + paths.flag.getFullPathName());
    return juce::Result::ok();
}

bool resultWasApplied(const Paths& paths)
{
    juce::MemoryBlock bytes;
    juce::String text;
    return paths.flag.loadFileAsData(bytes) && FileBytes::toText(bytes.getData(), bytes.getSize(), text)
           && text.trim() == appliedMark;
}

bool readActionSettings(juce::InputStream& in, ActionSettings& settings)
{
    constexpr juce::int64 maxActionBytes = 1 << 20;
    const auto size = in.getNumBytesRemaining();
    if (size <= 0 || size > maxActionBytes)
        return false;
    juce::MemoryBlock bytes;
    juce::String text;
    if (in.readIntoMemoryBlock(bytes, (ssize_t) size) != (size_t) size || !FileBytes::toText(bytes.getData(), bytes.getSize(), text))
        return false;
    auto xml = SxPropertySet::parseXmlText(text);
    if (xml == nullptr)
        return false;
    SxPropertySet outer;
    outer.fromXml(*xml);
    settings.effectName = outer.getValue("EffectName");
    auto inner = SxPropertySet::parseXmlText(outer.getValue("EffectDictionary"));
    if (inner == nullptr)
        return false;
    settings.dictionary.fromXml(*inner);
    return true;
}

bool writeActionSettings(juce::OutputStream& out, const ActionSettings& settings)
{
    SxPropertySet outer;
    outer.setString("EffectName", settings.effectName);
    outer.setString("EffectDictionary", settings.dictionary.toXml()->toString());
    return out.writeText(outer.toXml()->toString(), false, false, "\n");
}
} // namespace HandOverFiles
