#include "presets/PresetFile.h"

#include "imaging/ImageFileReader.h"
#include "imaging/FileBytes.h"
#include "imaging/ImageRGBAPixelData.h"
#include "imaging/SafeFileWrite.h"

namespace PresetFile
{
namespace
{
bool hasTag(const char (&bytes)[4], const char* tag)
{
    return std::memcmp(bytes, tag, 4) == 0;
}

/** Attributes of the root and its children become pairs: a child written by juce::PropertySet
    (<VALUE name=".." val=".."/>) by its name and value, any other child by its tag and text. */
void importLegacyXml(const juce::XmlElement& root, SxPropertySet& set)
{
    if (root.hasTagName("plist"))
    {
        set.fromXml(root);
        return;
    }
    for (int i = 0; i < root.getNumAttributes(); ++i)
        set.setString(root.getAttributeName(i), root.getAttributeValue(i));
    for (auto* child : root.getChildIterator())
    {
        if (child->hasTagName("VALUE") && child->hasAttribute("name"))
            set.setString(child->getStringAttribute("name"), child->getStringAttribute("val"));
        else if (child->getTagName().isNotEmpty())
            set.setString(child->getTagName(), child->getAllSubText());
    }
}

Contents readLegacy(juce::InputStream& in, const char* head, int headBytes)
{
    Contents result;
    const int64_t total = in.getTotalLength();
    if (total > maxLegacyBytes)
        return result;
    juce::MemoryBlock bytes(head, (size_t) headBytes);
    // readIntoMemoryBlock grows with what arrives; the limit stops an endless stream.
    in.readIntoMemoryBlock(bytes, (ssize_t) (maxLegacyBytes + 1 - headBytes));
    if ((int64_t) bytes.getSize() > maxLegacyBytes || bytes.isEmpty())
        return result;
    const auto* data = (const char*) bytes.getData();
    juce::String text;
    if (! FileBytes::toText(data, bytes.getSize(), text))
        return result;

    if (auto xml = SxPropertySet::parseXmlText(text))
    {
        result.form = Form::legacyXml;
        importLegacyXml(*xml, result.settings);
        return result;
    }
    result.form = Form::legacyText;
    result.legacyLines.addLines(text);
    return result;
}
} // namespace

Contents read(juce::InputStream& in)
{
    char tag[4] = {};
    const int got = in.read(tag, 4);
    if (got < 4)
        return got > 0 ? readLegacy(in, tag, got) : Contents {};

    Contents result;
    if (hasTag(tag, "VER3"))
    {
        if (in.read(&result.jpegOffset, 4) != 4 || in.read(&result.jpegLength, 4) != 4)
            return {};
        result.jpegOffset = (int32_t) juce::ByteOrder::swapIfBigEndian((uint32_t) result.jpegOffset);
        result.jpegLength = (int32_t) juce::ByteOrder::swapIfBigEndian((uint32_t) result.jpegLength);
        result.form = Form::version3;
    }
    else if (hasTag(tag, "VER2"))
        result.form = Form::version2;
    else
        return readLegacy(in, tag, 4);

    if (! result.settings.readBinary(in, maxStringBytes))
        return Contents {};
    return result;
}

Contents readFile(const juce::File& file)
{
    juce::FileInputStream in(file);
    if (! in.openedOk())
        return {};
    return read(in);
}

SxImageRgbaBytes* makePreview(const SxImageRgbaBytes* composite)
{
    auto* preview = new SxImageRgbaBytes(previewSide, previewSide);
    for (size_t i = 0; i < preview->byteCount(); i += 4)
    {
        preview->pixels[i] = 255;
        preview->pixels[i + 1] = preview->pixels[i + 2] = preview->pixels[i + 3] = 127;
    }
    SxImageRgbaBytes fitted(previewSide, previewSide);
    for (size_t i = 0; i < fitted.byteCount(); i += 4)
        fitted.pixels[i] = 255;
    if (composite != nullptr && composite->width > 0 && composite->height > 0)
    {
        // Fitted into 399 rather than 400, centred; the black bars are part of the look.
        const int box = previewSide - 1;
        const double f = std::min((double) box / composite->width, (double) box / composite->height);
        const int w = juce::jlimit(1, box, juce::roundToInt(composite->width * f));
        const int h = juce::jlimit(1, box, juce::roundToInt(composite->height * f));
        const juce::Rectangle<int> dest((previewSide - w) / 2, (previewSide - h) / 2, w, h);
        fitted.scaleInto(*composite, dest, composite->bounds(), 3);
        // The composite may carry transparency; the black picture underneath stays opaque.
        for (size_t i = 0; i < fitted.byteCount(); i += 4)
            fitted.pixels[i] = 255;
    }
    preview->compositeOver(fitted, preview->bounds());
    return preview;
}

bool write(juce::OutputStream& out, const SxPropertySet& settings, const SxImageRgbaBytes* composite)
{
    const int64_t start = out.getPosition();
    if (! out.write("VER3", 4) || ! out.writeInt(0) || ! out.writeInt(0) || ! settings.writeBinary(out))
        return false;
    out.flush();
    const int64_t jpegStart = out.getPosition() - start;

    SxRef<SxImageRgbaBytes> preview = SxRef<SxImageRgbaBytes>::adopt(makePreview(composite));
    juce::JPEGImageFormat jpeg;
    jpeg.setQuality(-1.0f);
    if (! jpeg.writeImageToStream(SxImageConversion::toJuceImage(*preview), out))
        return false;
    out.flush();
    const int64_t end = out.getPosition();
    const int64_t jpegLength = end - start - jpegStart;
    if (jpegStart > std::numeric_limits<int32_t>::max() || jpegLength > std::numeric_limits<int32_t>::max())
        return false;

    if (! out.setPosition(start + 4))
        return false;
    const bool ok = out.writeInt((int) jpegStart) && out.writeInt((int) jpegLength);
    out.flush();
    return out.setPosition(end) && ok;
}

bool writeFile(const juce::File& presetFile, const SxPropertySet& settings, const SxImageRgbaBytes* composite)
{
    const juce::File multiLayer = presetFile.withFileExtension("prel");
    if (multiLayer.existsAsFile())
        multiLayer.deleteFile();
    if (! presetFile.getParentDirectory().createDirectory())
        return false;

    juce::MemoryOutputStream out;
    if (! write(out, settings, composite) || SafeFileWrite::replace(presetFile, out.getData(), out.getDataSize()).failed())
        return false;
    // A companion picture would be shown instead of the new embedded preview.
    const juce::File companion = presetFile.withFileExtension("jpg");
    if (companion.existsAsFile())
        companion.deleteFile();
    return true;
}

juce::Image readEmbeddedPreview(juce::InputStream& in)
{
    const int64_t start = in.getPosition();
    char tag[4] = {};
    if (in.read(tag, 4) != 4 || ! hasTag(tag, "VER3"))
        return {};
    const int32_t offset = in.readInt();
    // A zero offset is an interrupted save: there is nothing to decode there.
    if (offset <= 0)
        return {};
    const int64_t total = in.getTotalLength();
    int64_t position = start + offset;
    if (total >= 0)
        position = std::min(position, total);
    if (! in.setPosition(position))
        return {};
    // The preview ends the file; readIntoMemoryBlock grows with what really arrives.
    juce::MemoryBlock jpeg;
    in.readIntoMemoryBlock(jpeg, (ssize_t) maxPreviewBytes + 1);
    if (jpeg.isEmpty() || jpeg.getSize() > maxPreviewBytes)
        return {};
    // Not juce::JPEGImageFormat: built against the system libjpeg its error handler returns
    // where libjpeg requires it not to, and a corrupt preview takes the process down.
    const DecodedImage decoded = ImageFileReader::readMemory(jpeg.getData(), jpeg.getSize(), ImageFileType::jpeg);
    if (! decoded.ok())
        return {};
    return SxImageConversion::toJuceImage(*decoded.image);
}
} // namespace PresetFile
