#include "ui/ColorPaletteFile.h"

#include "document/SxPropertySet.h"

#include <cctype>
#include <cmath>
#include <cstring>
#include <cstdio>

namespace ColorPaletteFile
{
namespace
{
/** The ASCII text from start up to stop. JUCE's length-limited string constructor reads the
    first byte even for no characters, which at the end of the buffer is one byte too far. */
juce::String asciiText(const char* start, const char* stop)
{
    return stop > start ? juce::String(juce::CharPointer_UTF8(start), juce::CharPointer_UTF8(stop)) : juce::String();
}

const char* const channelKeys[4] = { "ColorRed", "ColorGreen", "ColorBlue", "ColorAlpha" };

/** A whole number from text, or fallback when the text is not one. */
bool parseInt(const juce::String& text, int& out)
{
    const auto t = text.trim();
    if (t.isEmpty() || t.length() > 10 || !t.containsOnly("-0123456789") || t.lastIndexOfChar('-') > 0)
        return false;
    out = t.getIntValue();
    return true;
}

/** Reads the one element of a palette, <ColorPalette name="value" ... /> after an optional XML
    declaration, into set. Written by hand over the raw bytes rather than through JUCE's XML
    parser: on damaged text that parser reads past its buffer, loops forever or makes an element
    of a tag cut off among its attributes, and JUCE's UTF-8 walk steps over the end of a broken
    sequence. A palette needs nothing of XML beyond plain ASCII attributes. */
bool parseElement(const char* p, const char* end, SxPropertySet& set)
{
    auto space = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    auto skipSpace = [&] {
        while (p < end && space(*p))
            ++p;
    };
    auto take = [&](const char* literal) {
        const size_t n = std::strlen(literal);
        if ((size_t) (end - p) < n || std::memcmp(p, literal, n) != 0)
            return false;
        p += n;
        return true;
    };
    auto nameChar = [](char c) { return std::isalnum((unsigned char) c) || c == '_' || c == '.' || c == '-'; };
    skipSpace();
    if (take("<?xml"))
    {
        while (p < end && !take("?>"))
            ++p;
        skipSpace();
    }
    if (!take("<ColorPalette"))
        return false;
    for (;;)
    {
        const bool spaced = p < end && space(*p);
        skipSpace();
        if (take("/>"))
            break;
        if (take(">"))
        {
            skipSpace();
            if (!take("</ColorPalette"))
                return false;
            skipSpace();
            if (!take(">"))
                return false;
            break;
        }
        // Keys and numbers are short: a long one is damage.
        const char* nameStart = p;
        while (p < end && nameChar(*p) && p - nameStart <= 64)
            ++p;
        const auto name = asciiText(nameStart, p);
        skipSpace();
        if (!spaced || name.isEmpty() || name.length() > 64 || !take("="))
            return false;
        skipSpace();
        if (p == end || (*p != '"' && *p != '\''))
            return false;
        const char quote = *p++;
        const char* valueStart = p;
        // Our values are numbers: markup, an entity or a long run inside one is damage.
        while (p < end && *p != quote && *p != '<' && *p != '&' && (unsigned char) *p < 0x80 && p - valueStart <= 32)
            ++p;
        if (p == end || *p != quote)
            return false;
        set.setValue(name, asciiText(valueStart, p));
        ++p;
    }
    skipSpace();
    // A zero byte after the element is what some editors leave; anything else is not a palette.
    while (p < end && *p == 0)
        ++p;
    return p == end;
}

ReadResult refuse(const juce::String& why)
{
    return { {}, why };
}

bool writeAndClose(const juce::File& file, const std::function<bool(juce::OutputStream&)>& body)
{
    file.deleteFile();
    juce::FileOutputStream out(file, 16384);
    if (out.failedToOpen() || !body(out))
        return false;
    out.flush();
    return out.getStatus().wasOk();
}
} // namespace

ReadResult read(juce::InputStream& in)
{
    // A palette of the maximum count is well under a megabyte of text.
    constexpr juce::int64 maximumBytes = 4 * 1024 * 1024;
    if (in.getTotalLength() > maximumBytes)
        return refuse("the palette file is too large");
    juce::MemoryBlock bytes;
    in.readIntoMemoryBlock(bytes, maximumBytes);
    SxPropertySet set;
    const auto* data = static_cast<const char*>(bytes.getData());
    if (!parseElement(data, data + bytes.getSize(), set))
        return refuse("not a colour palette");

    int count = defaultCount;
    if (set.containsKey("totalColors") && !parseInt(set.getValue("totalColors"), count))
        return refuse("the colour count is not a number");
    if (count < 0 || count > maximumCount)
        return refuse("the colour count " + juce::String(count) + " is out of range");

    ReadResult result;
    result.colours.reserve((size_t) count);
    for (int i = 0; i < count; ++i)
    {
        int channel[4] = { 255, 255, 255, 255 };
        for (int c = 0; c < 4; ++c)
        {
            const auto key = channelKeys[c] + juce::String(i);
            if (set.containsKey(key) && (!parseInt(set.getValue(key), channel[c]) || channel[c] < 0 || channel[c] > 255))
                return refuse("colour " + juce::String(i) + " has a channel out of range");
        }
        result.colours.push_back(juce::Colour((juce::uint8) channel[0], (juce::uint8) channel[1], (juce::uint8) channel[2],
                                              (juce::uint8) channel[3]));
    }
    return result;
}

ReadResult readFile(const juce::File& file)
{
    if (!file.existsAsFile())
        return {};
    juce::FileInputStream in(file);
    if (!in.openedOk())
        return refuse("cannot read " + file.getFileName());
    return read(in);
}

juce::File pictureFor(const juce::File& file)
{
    return file.withFileExtension("jpg");
}

juce::Image picture(const std::vector<juce::Colour>& colours)
{
    juce::Image image(juce::Image::RGB, pictureSize, pictureSize, true);
    juce::Graphics g(image);
    g.fillAll(juce::Colours::white);
    if (colours.empty())
        return image;
    const int columns = (int) std::ceil(std::sqrt((double) colours.size()));
    const int rows = ((int) colours.size() + columns - 1) / columns;
    const float w = pictureSize / (float) columns, h = pictureSize / (float) rows;
    for (size_t i = 0; i < colours.size(); ++i)
    {
        // A translucent colour is shown as it looks over white.
        g.setColour(colours[i]);
        g.fillRect(juce::Rectangle<float>((float) (i % (size_t) columns) * w, (float) (i / (size_t) columns) * h, w, h));
    }
    return image;
}

juce::Result write(const juce::File& file, const std::vector<juce::Colour>& colours)
{
    if ((int) colours.size() > maximumCount)
        return juce::Result::fail("too many colours for a palette");
    SxPropertySet set;
    set.setValue("totalColors", (int) colours.size());
    for (size_t i = 0; i < colours.size(); ++i)
    {
        const auto& c = colours[i];
        const int channel[4] = { c.getRed(), c.getGreen(), c.getBlue(), c.getAlpha() };
        for (int k = 0; k < 4; ++k)
            set.setValue(channelKeys[k] + juce::String((int) i), channel[k]);
    }
    juce::XmlElement root("ColorPalette");
    const auto& pairs = set.getAllProperties();
    for (int i = 0; i < pairs.size(); ++i)
        root.setAttribute(pairs.getAllKeys()[i], pairs.getAllValues()[i]);

    const auto pictureFile = pictureFor(file);
    const auto tempPalette = file.getSiblingFile(file.getFileName() + ".part");
    const auto tempPicture = pictureFile.getSiblingFile(pictureFile.getFileName() + ".part");
    const bool written = writeAndClose(tempPalette, [&](juce::OutputStream& out) {
        juce::XmlElement::TextFormat format;
        format.customEncoding = "UTF-8";
        root.writeTo(out, format);
        return true;
    }) && writeAndClose(tempPicture, [&](juce::OutputStream& out) {
        juce::JPEGImageFormat jpeg;
        return jpeg.writeImageToStream(picture(colours), out);
    });
    if (!written)
    {
        tempPalette.deleteFile();
        tempPicture.deleteFile();
        return juce::Result::fail("cannot write " + file.getFullPathName());
    }
    // rename() replaces an older palette in one step; the picture follows at once.
    if (std::rename(tempPalette.getFullPathName().toRawUTF8(), file.getFullPathName().toRawUTF8()) != 0
        || std::rename(tempPicture.getFullPathName().toRawUTF8(), pictureFile.getFullPathName().toRawUTF8()) != 0)
    {
        tempPalette.deleteFile();
        tempPicture.deleteFile();
        return juce::Result::fail("cannot write " + file.getFullPathName());
    }
    return juce::Result::ok();
}
} // namespace ColorPaletteFile
