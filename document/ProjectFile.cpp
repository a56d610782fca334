#include "document/ProjectFile.h"

#include <cstring>

#include "document/LayerManager.h"
#include "imaging/ImageFileReader.h"
#include "imaging/FileBytes.h"
#include "imaging/ImageLimits.h"
#include "imaging/ImageRGBAPixelData.h"
#include "imaging/ImageStream.h"
#include "imaging/SafeFileWrite.h"

namespace ProjectFile
{
namespace
{
const char* const imageKey = "ORIG_IMAGE";

int64_t bytesLeft(juce::InputStream& in)
{
    const int64_t total = in.getTotalLength();
    return total < 0 ? -1 : std::max<int64_t>(0, total - in.getPosition());
}

bool readTag(juce::InputStream& in, char (&tag)[4])
{
    return in.read(tag, 4) == 4;
}

/** The oldest form: a length-prefixed XML dictionary followed by the picture's stream form. */
bool readOldestForm(juce::InputStream& in, const char (&lengthBytes)[4], ProjectDocument& document)
{
    const int32_t length = (int32_t) juce::ByteOrder::littleEndianInt(lengthBytes);
    const int64_t left = bytesLeft(in);
    if (length <= 0 || (left >= 0 && length > left))
        return false;

    // readIntoMemoryBlock grows with what actually arrives, so even a stream of unknown length
    // cannot make the claimed length allocate up front.
    juce::MemoryBlock text;
    if (in.readIntoMemoryBlock(text, length) != (size_t) length)
        return false;
    // Text that is not strict UTF-8, or holds a zero byte, is damage; the parser hangs on some
    // shapes of text, which the property set's guarded parser refuses.
    juce::String xmlText;
    if (! FileBytes::toText(text.getData(), text.getSize(), xmlText))
        return false;
    auto xml = SxPropertySet::parseXmlText(xmlText);
    if (xml == nullptr)
        return false;
    document.settings.fromXml(*xml);

    auto picture = SxRef<SxImageRgbaBytes>::adopt(ImageStream::read(in));
    if (picture.get() != nullptr && picture->width > 0 && picture->height > 0)
        document.image = picture;
    return true;
}
} // namespace

void writeDocumentToDictionary(SxPropertySet& set, const SxImageRgbaBytes& image, double widthDpi, double heightDpi)
{
    SxPropertySet::writeImageToDictionary(set, imageKey, image, false);
    set.setValue("doc_WidthDPI", widthDpi);
    set.setValue("doc_HeightDPI", heightDpi);
}

bool readDocumentFromDictionary(SxPropertySet& set, ProjectDocument& document)
{
    if (document.image.get() == nullptr)
    {
        SxImageRgbaBytes* picture = SxPropertySet::readImageFromDictionary(set, imageKey, false);
        if (picture != nullptr && picture->width > 0 && picture->height > 0)
            document.image = SxRef<SxImageRgbaBytes>::adopt(picture);
        else if (picture != nullptr)
            picture->release();
    }
    // The picture's text is megabytes; once decoded it has no business in the settings.
    set.removeValue(juce::String(imageKey) + "_data");
    document.widthDpi = ImageLimits::sanitisedResolution(set.getDoubleValue("doc_WidthDPI", ImageLimits::defaultResolution));
    document.heightDpi = ImageLimits::sanitisedResolution(set.getDoubleValue("doc_HeightDPI", ImageLimits::defaultResolution));
    return document.image.get() != nullptr && document.image->width > 0 && document.image->height > 0;
}

SxImageRgbaBytes* makePreview(const SxImageRgbaBytes& result)
{
    auto* preview = new SxImageRgbaBytes(previewSide, previewSide);
    for (size_t i = 0; i < preview->byteCount(); i += 4)
    {
        preview->pixels[i] = 255;
        preview->pixels[i + 1] = preview->pixels[i + 2] = preview->pixels[i + 3] = 127;
    }
    if (result.width <= 0 || result.height <= 0)
        return preview;

    const double fit = std::min((double) previewSide / result.width, (double) previewSide / result.height);
    const int w = juce::jlimit(1, previewSide, juce::roundToInt(result.width * fit));
    const int h = juce::jlimit(1, previewSide, juce::roundToInt(result.height * fit));
    const juce::Rectangle<int> fitted((previewSide - w) / 2, (previewSide - h) / 2, w, h);

    SxImageRgbaBytes fittedResult(previewSide, previewSide);
    fittedResult.scaleInto(result, fitted, result.bounds(), 3);
    preview->compositeOver(fittedResult, preview->bounds());
    return preview;
}

bool write(juce::OutputStream& out, const SxPropertySet& settings, const SxImageRgbaBytes& source, double widthDpi,
           double heightDpi, const SxImageRgbaBytes* result)
{
    const int64_t start = out.getPosition();
    out.write("VER3", 4);
    out.writeInt(0);
    out.writeInt(0);

    SxPropertySet set(settings);
    writeDocumentToDictionary(set, source, widthDpi, heightDpi);
    if (! set.writeBinary(out))
        return false;

    const int64_t previewOffset = out.getPosition() - start;
    SxRef<SxImageRgbaBytes> preview = SxRef<SxImageRgbaBytes>::adopt(makePreview(result != nullptr ? *result : source));
    juce::JPEGImageFormat jpeg;
    jpeg.setQuality(-1.0f);
    if (! jpeg.writeImageToStream(SxImageConversion::toJuceImage(*preview), out))
        return false;
    out.flush();

    const int64_t previewSize = out.getPosition() - start - previewOffset;
    if (previewOffset > std::numeric_limits<int32_t>::max() || previewSize > std::numeric_limits<int32_t>::max())
        return false;
    const int64_t end = out.getPosition();
    if (! out.setPosition(start + 4))
        return false;
    out.writeInt((int) previewOffset);
    out.writeInt((int) previewSize);
    out.flush();
    return out.setPosition(end);
}

bool save(const juce::File& file, LayerManager& layers, const SxImageRgbaBytes& source, double widthDpi, double heightDpi)
{
    SxPropertySet settings;
    layers.saveToDictionary(settings, LayerSaveOptions {});
    SxImageRgbaBytes* result = layers.render(nullptr, false, false);

    if (! file.getParentDirectory().createDirectory())
        return false;
    // Built in memory (the writer seeks back to fill in the preview's place) and put on disk whole.
    juce::MemoryOutputStream out;
    if (! write(out, settings, source, widthDpi, heightDpi, result))
        return false;
    return SafeFileWrite::replace(file, out.getData(), out.getDataSize()).wasOk();
}

std::unique_ptr<ProjectDocument> read(juce::InputStream& in)
{
    char tag[4];
    if (! readTag(in, tag))
        return nullptr;

    auto document = std::make_unique<ProjectDocument>();
    if (std::memcmp(tag, "VER3", 4) == 0 || std::memcmp(tag, "VER2", 4) == 0)
    {
        document->version = tag[3] == '3' ? 3 : 2;
        if (document->version == 3)
        {
            // The preview fields are informational only: a writer that died before the seek-back
            // left zeros there, and the dictionary is still whole.
            char fields[8];
            if (in.read(fields, 8) != 8)
                return nullptr;
            document->previewOffset = (int32_t) juce::ByteOrder::littleEndianInt(fields);
            document->previewSize = (int32_t) juce::ByteOrder::littleEndianInt(fields + 4);
        }
        if (! document->settings.readBinary(in))
            return nullptr;
    }
    else
    {
        document->version = 1;
        if (! readOldestForm(in, tag, *document))
            return nullptr;
    }

    if (! readDocumentFromDictionary(document->settings, *document))
        return nullptr;
    return document;
}

std::unique_ptr<ProjectDocument> readFile(const juce::File& file)
{
    if (FileBytes::checkRegular(file).isNotEmpty())
        return nullptr;
    juce::FileInputStream in(file);
    if (in.failedToOpen())
        return nullptr;
    return read(in);
}

SxRef<SxImageRgbaBytes> readPreview(juce::InputStream& in)
{
    const int64_t start = in.getPosition();
    char header[12];
    if (in.read(header, 12) != 12 || std::memcmp(header, "VER3", 4) != 0)
        return {};
    const int32_t offset = (int32_t) juce::ByteOrder::littleEndianInt(header + 4);
    const int32_t size = (int32_t) juce::ByteOrder::littleEndianInt(header + 8);
    const int64_t total = in.getTotalLength();
    if (offset < 12 || size <= 0 || (total >= 0 && (int64_t) offset + size > total - start))
        return {};
    if (! in.setPosition(start + offset))
        return {};
    juce::MemoryBlock block;
    if (in.readIntoMemoryBlock(block, size) != (size_t) size)
        return {};
    // A damaged preview must not take the browser down: JUCE's JPEG loader reads on after
    // libjpeg reports a fatal error, the program's reader does not.
    return ImageFileReader::readMemory(block.getData(), block.getSize(), ImageFileType::jpeg).image;
}
} // namespace ProjectFile
