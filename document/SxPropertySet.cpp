#include "document/SxPropertySet.h"
#include "imaging/ImageLimits.h"
#include "imaging/FileBytes.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{
const char* const plistTag = "plist";
const char* const dictTag = "dict";
const char* const keyTag = "key";
const char* const stringTag = "string";

// The read buffer follows the stream's size but never grows past this, so reading a big project
// does not allocate a buffer the size of the file.
constexpr int64_t minReadBuffer = 32;
constexpr int64_t maxReadBuffer = 231072;

int64_t bytesLeft(juce::InputStream& in)
{
    const int64_t total = in.getTotalLength();
    return total < 0 ? -1 : std::max<int64_t>(0, total - in.getPosition());
}

/** Reads zero-terminated strings through a bounded buffer of its own, so that it knows exactly how
    many bytes the pairs used and can leave the source standing right behind them. */
class PairReader
{
public:
    PairReader(juce::InputStream& source, int64_t left)
        : in(source),
          capacity((int) juce::jlimit(minReadBuffer, maxReadBuffer, left < 0 ? maxReadBuffer : left)),
          buffer((size_t) capacity)
    {
    }

    bool readInt32(int32_t& value)
    {
        char bytes[4];
        for (char& b : bytes)
            if (! readByte(b))
                return false;
        value = (int32_t) juce::ByteOrder::littleEndianInt(bytes);
        return true;
    }

    /** False when the stream ends before the closing zero, when the text passes maxBytes (0: no
        limit), or when it is not UTF-8: the writer never produces anything else. */
    bool readString(juce::String& result, int maxBytes)
    {
        text.reset();
        for (;;)
        {
            if (position == end && ! refill())
                return false;
            const char* start = buffer.getData() + position;
            const auto* zero = (const char*) std::memchr(start, 0, (size_t) (end - position));
            const int run = zero != nullptr ? (int) (zero - start) : end - position;
            if (maxBytes > 0 && (int64_t) text.getDataSize() + run > maxBytes)
                return false;
            text.write(start, (size_t) run);
            position += run;
            if (zero != nullptr)
            {
                ++position;
                break;
            }
        }
        const auto* data = (const char*) text.getData();
        const int size = (int) text.getDataSize();
        return FileBytes::toText(data, (size_t) size, result);
    }

    int64_t bytesConsumed() const { return consumedBeforeBuffer + position; }

private:
    bool readByte(char& b)
    {
        if (position == end && ! refill())
            return false;
        b = buffer[position++];
        return true;
    }

    bool refill()
    {
        consumedBeforeBuffer += end;
        position = end = 0;
        const int got = in.read(buffer.getData(), capacity);
        if (got <= 0)
            return false;
        end = got;
        return true;
    }

    juce::InputStream& in;
    int capacity;
    juce::HeapBlock<char> buffer;
    int position = 0, end = 0;
    int64_t consumedBeforeBuffer = 0;
    juce::MemoryOutputStream text;
};

/** MemoryBlock::fromBase64Encoding sizes its block from the number in front of the dot; a corrupt
    number would make it allocate anything. Accept it only when the characters behind the dot can
    hold that many bytes. */
bool decodeBase64(const juce::String& encoded, juce::MemoryBlock& block)
{
    const int dot = encoded.indexOfChar('.');
    if (dot <= 0 || dot > 12)
        return false;
    const juce::String prefix = encoded.substring(0, dot);
    if (! prefix.containsOnly("0123456789"))
        return false;
    const int64_t claimed = prefix.getLargeIntValue();
    const int64_t available = ((int64_t) (encoded.length() - dot - 1) * 6) / 8;
    if (claimed <= 0 || claimed > available)
        return false;
    return block.fromBase64Encoding(encoded);
}

struct PictureHeader
{
    uint8_t byteOrder = 0;
    int width = 0, height = 0;
};

bool readHeader(juce::InputStream& in, PictureHeader& header)
{
    uint8_t bytes[5];
    if (in.read(bytes, 5) != 5)
        return false;
    header.byteOrder = bytes[0];
    header.width = (int16_t) juce::ByteOrder::littleEndianShort(bytes + 1);
    header.height = (int16_t) juce::ByteOrder::littleEndianShort(bytes + 3);
    return header.width > 0 && header.height > 0;
}

/** Inflates the compact form in two passes: the first only counts, so a header that claims more
    pixels than the block really holds is turned away before anything is allocated; the second
    reads into the picture. Gives the header and fills the pixels through fill(). */
template <typename Allocate>
bool readCompact(const juce::MemoryBlock& block, size_t bytesPerPixel, PictureHeader& header, Allocate allocate)
{
    {
        juce::MemoryInputStream source(block, false);
        juce::GZIPDecompressorInputStream gz(source);
        if (! readHeader(gz, header) || ImageLimits::refusal(header.width, header.height).isNotEmpty())
            return false;
        const uint64_t needed = (uint64_t) header.width * (uint64_t) header.height * bytesPerPixel;
        uint64_t got = 0;
        juce::HeapBlock<char> scratch(65536);
        while (got < needed)
        {
            const int n = gz.read(scratch.getData(), (int) std::min<uint64_t>(65536, needed - got));
            if (n <= 0)
                return false;
            got += (uint64_t) n;
        }
    }
    juce::MemoryInputStream source(block, false);
    juce::GZIPDecompressorInputStream gz(source);
    if (! readHeader(gz, header))
        return false;
    uint8_t* pixels = allocate(header.width, header.height);
    const size_t needed = (size_t) header.width * (size_t) header.height * bytesPerPixel;
    size_t got = 0;
    while (got < needed)
    {
        const int n = gz.read(pixels + got, (int) std::min<size_t>(1 << 24, needed - got));
        if (n <= 0)
            return false;
        got += (size_t) n;
    }
    return true;
}

juce::String encodeCompact(const uint8_t* pixels, int width, int height, size_t bytesPerPixel)
{
    juce::MemoryOutputStream packed;
    {
        juce::GZIPCompressorOutputStream gz(packed);
        gz.writeByte(0);
        gz.writeShort((short) width);
        gz.writeShort((short) height);
        gz.write(pixels, (size_t) width * (size_t) height * bytesPerPixel);
        gz.flush();
    }
    return packed.getMemoryBlock().toBase64Encoding();
}

void reversePixelBytes(SxImageRgbaBytes& image)
{
    for (size_t i = 0; i < image.byteCount(); i += 4)
    {
        std::swap(image.pixels[i], image.pixels[i + 3]);
        std::swap(image.pixels[i + 1], image.pixels[i + 2]);
    }
}

/** Raw form: the sides come as floats beside the data; the decoded block must hold exactly the
    pixels they describe. */
template <typename Image>
Image* readRaw(const SxPropertySet& set, const juce::String& name, size_t bytesPerPixel)
{
    const double w = set.getDoubleValue(name + "_width", 0.0);
    const double h = set.getDoubleValue(name + "_height", 0.0);
    if (! (w >= 1.0 && h >= 1.0 && w <= 1.0e6 && h <= 1.0e6))
        return nullptr;
    const int width = (int) w, height = (int) h;
    if (ImageLimits::refusal(width, height).isNotEmpty())
        return nullptr;
    const juce::String encoded = set.getValue(name + "_data");
    juce::MemoryBlock block;
    if (! decodeBase64(encoded, block) || block.getSize() != (size_t) width * (size_t) height * bytesPerPixel)
        return nullptr;
    auto* image = new Image(width, height);
    std::memcpy(image->pixels, block.getData(), block.getSize());
    return image;
}

juce::StringPairArray& pairsOf(const SxPropertySet& set)
{
    // getAllProperties has no const form; callers only read through this.
    return const_cast<SxPropertySet&>(set).getAllProperties();
}
} // namespace

//==============================================================================
SxPropertySet::SxPropertySet(bool ignoreCaseOfKeyNames) : juce::PropertySet(ignoreCaseOfKeyNames) {}

SxPropertySet::SxPropertySet(const SxPropertySet& other)
    : juce::PropertySet(other), children(other.children), childNames(other.childNames)
{
    copyPicturesFrom(other);
}

SxPropertySet& SxPropertySet::operator=(const SxPropertySet& other)
{
    if (this == &other)
        return *this;
    juce::PropertySet::operator=(other);
    clearImages();
    copyPicturesFrom(other);
    children = other.children;
    childNames = other.childNames;
    return *this;
}

SxPropertySet::~SxPropertySet()
{
    clearImages();
}

void SxPropertySet::copyPicturesFrom(const SxPropertySet& other)
{
    for (auto* image : other.images)
        image->retain();
    for (auto* image : other.alphaImages)
        image->retain();
    images = other.images;
    imagePaths = other.imagePaths;
    alphaImages = other.alphaImages;
    alphaImagePaths = other.alphaImagePaths;
}

void SxPropertySet::setString(const juce::String& key, const juce::String& value) { setValue(key, value); }
void SxPropertySet::setFloat(const juce::String& key, float value) { setValue(key, (double) value); }
void SxPropertySet::setInt(const juce::String& key, int value) { setValue(key, juce::String(value)); }
void SxPropertySet::setBool(const juce::String& key, bool value) { setValue(key, value ? "1" : "0"); }

float SxPropertySet::getFloatValue(const juce::String& key, float defaultValue) const
{
    return (float) getDoubleValue(key, (double) defaultValue);
}

int SxPropertySet::size() const
{
    const juce::ScopedLock lock(getLock());
    return pairsOf(*this).size();
}

void SxPropertySet::clearAll()
{
    clear();
    clearImages();
    children.clear();
    childNames.clear();
}

//==============================================================================
void SxPropertySet::addImage(SxImageRgbaBytes* image, const juce::String& path)
{
    if (image == nullptr || std::find(imagePaths.begin(), imagePaths.end(), path) != imagePaths.end())
        return;
    image->retain();
    images.push_back(image);
    imagePaths.push_back(path);
}

void SxPropertySet::addAlphaImage(SxImageAlphaByte* image, const juce::String& path)
{
    if (image == nullptr || std::find(alphaImagePaths.begin(), alphaImagePaths.end(), path) != alphaImagePaths.end())
        return;
    image->retain();
    alphaImages.push_back(image);
    alphaImagePaths.push_back(path);
}

SxImageRgbaBytes* SxPropertySet::getImage(const juce::String& path) const
{
    for (size_t i = 0; i < images.size(); ++i)
        if (imagePaths[i] == path)
            return images[i];
    return nullptr;
}

SxImageAlphaByte* SxPropertySet::getAlphaImage(const juce::String& path) const
{
    for (size_t i = 0; i < alphaImages.size(); ++i)
        if (alphaImagePaths[i] == path)
            return alphaImages[i];
    return nullptr;
}

void SxPropertySet::clearImages()
{
    for (auto* image : images)
        image->release();
    for (auto* image : alphaImages)
        image->release();
    images.clear();
    imagePaths.clear();
    alphaImages.clear();
    alphaImagePaths.clear();
}

void SxPropertySet::addChild(const SxPropertySet& child, const juce::String& name)
{
    children.push_back(child);
    childNames.push_back(name);
}

SxPropertySet SxPropertySet::getChild(const juce::String& name) const
{
    for (size_t i = 0; i < children.size(); ++i)
        if (childNames[i] == name)
            return children[i];
    return SxPropertySet();
}

bool SxPropertySet::hasChild(const juce::String& name) const
{
    return std::find(childNames.begin(), childNames.end(), name) != childNames.end();
}

//==============================================================================
std::unique_ptr<juce::XmlElement> SxPropertySet::toXml() const
{
    SxPropertySet copy(*this);
    if (! images.empty())
    {
        copy.setInt("propertyImageCount", (int) images.size());
        for (size_t i = 0; i < images.size(); ++i)
        {
            const juce::String index((int) i);
            writeImageToDictionary(copy, "propertyImage" + index, *images[i], false);
            copy.setString("propertyPath" + index, imagePaths[i]);
        }
    }
    if (! alphaImages.empty())
    {
        copy.setInt("propertyAlphaImageCount", (int) alphaImages.size());
        for (size_t i = 0; i < alphaImages.size(); ++i)
        {
            const juce::String index((int) i);
            writeAlphaImageToDictionary(copy, "propertyAlphaImage" + index, *alphaImages[i], false);
            copy.setString("propertyAlphaPath" + index, alphaImagePaths[i]);
        }
    }

    const juce::ScopedLock lock(copy.getLock());
    auto root = std::make_unique<juce::XmlElement>(plistTag);
    auto* dict = root->createNewChildElement(dictTag);
    const auto& pairs = copy.getAllProperties();
    for (int i = 0; i < pairs.size(); ++i)
    {
        dict->createNewChildElement(keyTag)->addTextElement(pairs.getAllKeys()[i]);
        dict->createNewChildElement(stringTag)->addTextElement(pairs.getAllValues()[i]);
    }
    return root;
}

void SxPropertySet::fromXml(const juce::XmlElement& element)
{
    clearImages();
    {
        const juce::ScopedLock lock(getLock());
        auto& pairs = getAllProperties();
        pairs.clear();
        const auto* dict = element.hasTagName(plistTag) ? element.getFirstChildElement() : nullptr;
        if (dict != nullptr && dict->hasTagName(dictTag))
        {
            const int n = dict->getNumChildElements();
            for (int k = 0; k + 1 < n; k += 2)
            {
                const juce::String key = dict->getChildElement(k)->getAllSubText();
                if (key.isNotEmpty())
                    pairs.set(key, dict->getChildElement(k + 1)->getAllSubText());
            }
        }
    }

    // Each picture needs at least one key of its own, so a count beyond the number of pairs is a
    // corrupt file and must not drive the loop.
    const int pairCount = size();
    const int imageCount = juce::jlimit(0, pairCount, getIntValue("propertyImageCount", 0));
    for (int i = 0; i < imageCount; ++i)
    {
        const juce::String name = "propertyImage" + juce::String(i);
        if (auto* image = readImageFromDictionary(*this, name, false))
        {
            addImage(image, getValue("propertyPath" + juce::String(i)));
            image->release();
        }
        removeValue(name + "_data");
        removeValue("propertyPath" + juce::String(i));
    }
    removeValue("propertyImageCount");

    const int alphaCount = juce::jlimit(0, pairCount, getIntValue("propertyAlphaImageCount", 0));
    for (int i = 0; i < alphaCount; ++i)
    {
        const juce::String name = "propertyAlphaImage" + juce::String(i);
        if (auto* image = readAlphaImageFromDictionary(*this, name, false))
        {
            addAlphaImage(image, getValue("propertyAlphaPath" + juce::String(i)));
            image->release();
        }
        removeValue(name + "_data");
        removeValue("propertyAlphaPath" + juce::String(i));
    }
    removeValue("propertyAlphaImageCount");
}

namespace
{
/** True when every '&' starts one of XML's five named references or a numeric one of at most
    eight digits, each closed by ';'. JUCE's parser steps over the text's terminating zero after
    a numeric reference that is not closed, so such text must never reach it; XML allows no other
    references without a DTD, which is refused anyway. */
bool referencesAreWellFormed(const juce::String& text)
{
    for (auto p = text.getCharPointer(); !p.isEmpty(); ++p)
    {
        if (*p != '&')
            continue;
        auto q = p + 1;
        bool named = false;
        for (const char* name : { "amp;", "quot;", "apos;", "lt;", "gt;" })
            if (q.compareIgnoreCaseUpTo(juce::CharPointer_ASCII(name), (int) std::strlen(name)) == 0)
                named = true;
        if (named)
            continue;
        if (*q != '#')
            return false;
        ++q;
        const bool hex = *q == 'x' || *q == 'X';
        if (hex)
            ++q;
        int digits = 0;
        for (; !q.isEmpty() && *q != ';'; ++q, ++digits)
            if (digits >= 8 || (hex ? juce::CharacterFunctions::getHexDigitValue(*q) < 0 : !juce::CharacterFunctions::isDigit(*q)))
                return false;
        if (digits == 0 || *q != ';')
            return false;
    }
    return true;
}
} // namespace

std::unique_ptr<juce::XmlElement> SxPropertySet::parseXmlText(const juce::String& text)
{
    juce::String body = text.trimStart();
    if (body.startsWith("<?xml"))
    {
        const int end = body.indexOf("?>");
        if (end < 0)
            return nullptr;
        body = body.substring(end + 2);
    }
    if (body.contains("<?") || body.containsIgnoreCase("<!DOCTYPE") || body.containsIgnoreCase("<!ENTITY")
        || !referencesAreWellFormed(body))
        return nullptr;
    return juce::parseXML(body);
}

//==============================================================================
bool SxPropertySet::readBinary(juce::InputStream& in, int maxStringBytes)
{
    const int64_t start = in.getPosition();
    const int64_t left = bytesLeft(in);
    if (left >= 0 && left < 4)
        return false;

    PairReader reader(in, left);
    int32_t count = 0;
    if (! reader.readInt32(count) || count < 1)
        return false;
    // A pair is at least two closing zeros; a count the stream cannot hold is a corrupt header.
    if (left >= 0 && (int64_t) count > (left - 4) / 2)
        return false;

    // Pairs collect aside and merge only when all arrived, so a truncated file changes nothing.
    juce::StringArray keys, values;
    juce::String key, value;
    for (int32_t i = 0; i < count; ++i)
    {
        if (! reader.readString(key, maxStringBytes) || ! reader.readString(value, maxStringBytes))
            return false;
        keys.add(key);
        values.add(value);
    }
    in.setPosition(start + reader.bytesConsumed());

    {
        const juce::ScopedLock lock(getLock());
        auto& pairs = getAllProperties();
        for (int i = 0; i < keys.size(); ++i)
            if (keys[i].isNotEmpty())
                pairs.set(keys[i], values[i]);
    }
    propertyChanged();
    return true;
}

bool SxPropertySet::writeBinary(juce::OutputStream& out) const
{
    const juce::ScopedLock lock(getLock());
    const auto& pairs = pairsOf(*this);
    bool ok = out.writeInt(pairs.size());
    for (int i = 0; i < pairs.size() && ok; ++i)
        ok = out.writeString(pairs.getAllKeys()[i]) && out.writeString(pairs.getAllValues()[i]);
    return ok;
}

//==============================================================================
namespace
{
// Colour and alpha pictures are stored alike; only the bytes a pixel differ.
template <typename Picture>
void writePicture(SxPropertySet& set, const juce::String& name, const Picture& image, bool raw, int bytesPerPixel)
{
    if (raw)
    {
        set.setFloat(name + "_width", (float) image.width);
        set.setFloat(name + "_height", (float) image.height);
        set.setString(name + "_data", juce::MemoryBlock(image.pixels, image.byteCount()).toBase64Encoding());
        return;
    }
    if (image.width <= 0 || image.height <= 0 || image.width > SxPropertySet::maxCompactSide || image.height > SxPropertySet::maxCompactSide)
        return;
    set.setString(name + "_data", encodeCompact(image.pixels, image.width, image.height, bytesPerPixel));
}

template <typename Picture>
Picture* readPicture(const SxPropertySet& set, const juce::String& name, bool raw, int bytesPerPixel, PictureHeader& header)
{
    if (raw)
        return readRaw<Picture>(set, name, bytesPerPixel);

    juce::MemoryBlock block;
    if (! decodeBase64(set.getValue(name + "_data"), block))
        return nullptr;
    Picture* image = nullptr;
    const bool ok = readCompact(block, bytesPerPixel, header, [&](int w, int h) {
        image = new Picture(w, h);
        return image->pixels;
    });
    if (! ok)
    {
        if (image != nullptr)
            image->release();
        return nullptr;
    }
    return image;
}
} // namespace

void SxPropertySet::writeImageToDictionary(SxPropertySet& set, const juce::String& name, const SxImageRgbaBytes& image, bool raw)
{
    writePicture(set, name, image, raw, 4);
}

SxImageRgbaBytes* SxPropertySet::readImageFromDictionary(const SxPropertySet& set, const juce::String& name, bool raw)
{
    PictureHeader header;
    auto* image = readPicture<SxImageRgbaBytes>(set, name, raw, 4, header);
    if (image != nullptr && ! raw && header.byteOrder != 0)
        reversePixelBytes(*image);
    return image;
}

void SxPropertySet::writeAlphaImageToDictionary(SxPropertySet& set, const juce::String& name, const SxImageAlphaByte& image, bool raw)
{
    writePicture(set, name, image, raw, 1);
}

SxImageAlphaByte* SxPropertySet::readAlphaImageFromDictionary(const SxPropertySet& set, const juce::String& name, bool raw)
{
    PictureHeader header;
    return readPicture<SxImageAlphaByte>(set, name, raw, 1, header);
}
