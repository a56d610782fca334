#pragma once
// Project files made by hand for the tests and the fuzzer's corpus: the current form through the
// writer, the two older forms assembled byte by byte, and a set of corrupt files.

#include "document/ProjectFile.h"
#include "imaging/ImageStream.h"

#include <juce_core/juce_core.h>

#include <random>
#include <string>
#include <vector>

namespace ProjectFileTestSupport
{
inline SxRef<SxImageRgbaBytes> makePicture(int w, int h)
{
    auto picture = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(w, h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
        {
            uint8_t* p = picture->pixelAt(x, y);
            p[0] = (uint8_t) (255 - (x + y) % 3);
            p[1] = (uint8_t) (x * 11);
            p[2] = (uint8_t) (y * 13);
            p[3] = (uint8_t) (x * y);
        }
    return picture;
}

inline bool samePixels(const SxImageRgbaBytes& a, const SxImageRgbaBytes& b)
{
    return a.width == b.width && a.height == b.height && std::equal(a.pixels, a.pixels + a.byteCount(), b.pixels);
}

inline juce::MemoryBlock writeProject(const SxPropertySet& settings, const SxImageRgbaBytes& picture, double dpiX, double dpiY)
{
    juce::MemoryOutputStream out;
    ProjectFile::write(out, settings, picture, dpiX, dpiY, &picture);
    return out.getMemoryBlock();
}

inline juce::MemoryBlock writeVersion2(const SxPropertySet& settings, const SxImageRgbaBytes& picture)
{
    SxPropertySet set(settings);
    ProjectFile::writeDocumentToDictionary(set, picture, 72.0, 72.0);
    juce::MemoryOutputStream out;
    out.write("VER2", 4);
    set.writeBinary(out);
    return out.getMemoryBlock();
}

inline juce::MemoryBlock writeOldestForm(const SxPropertySet& settings, const SxImageRgbaBytes& picture)
{
    auto xml = settings.toXml();
    const juce::String text = xml->toString();
    juce::MemoryOutputStream out;
    out.writeInt((int) text.getNumBytesAsUTF8());
    out.write(text.toRawUTF8(), text.getNumBytesAsUTF8());
    ImageStream::write(picture, out);
    return out.getMemoryBlock();
}

/** Where the part of a file that a reader needs ends: everything before the resolution keys in
    the two binary forms (the picture is whole behind that point), the whole oldest form. */
inline size_t dictionaryEndOf(const juce::MemoryBlock& bytes)
{
    const std::string data(static_cast<const char*>(bytes.getData()), bytes.getSize());
    const auto key = data.find("doc_WidthDPI");
    return key == std::string::npos ? bytes.getSize() : key;
}

struct BadInput
{
    std::string name;
    juce::MemoryBlock bytes;
};

inline juce::MemoryBlock intsAfter(const char* tag, std::initializer_list<int32_t> values, const char* tail = "")
{
    juce::MemoryOutputStream out;
    out.write(tag, std::strlen(tag));
    for (auto v : values)
        out.writeInt(v);
    out.write(tail, std::strlen(tail));
    return out.getMemoryBlock();
}

inline std::vector<BadInput> badInputs()
{
    std::vector<BadInput> inputs;
    inputs.push_back({ "empty", {} });
    inputs.push_back({ "short tag", juce::MemoryBlock("VE", 2) });
    inputs.push_back({ "tag only", juce::MemoryBlock("VER3", 4) });
    inputs.push_back({ "tag and half a field", juce::MemoryBlock("VER3\x10\0", 6) });
    inputs.push_back({ "no dictionary", intsAfter("VER3", { 0, 0 }) });
    inputs.push_back({ "huge count", intsAfter("VER2", { 0x7fffffff }, "key") });
    inputs.push_back({ "negative count", intsAfter("VER2", { -5 }, "key") });
    inputs.push_back({ "huge preview and count", intsAfter("VER3", { 0x7ffffff0, 0x7ffffff0, 0x7fffffff }) });
    inputs.push_back({ "count without pairs", intsAfter("VER2", { 3 }) });
    inputs.push_back({ "unterminated key", intsAfter("VER2", { 1 }, "ORIG_IMAGE_da") });
    inputs.push_back({ "dictionary without picture", intsAfter("VER2", { 1 }, "LayerCount\0" "0") });
    inputs.push_back({ "oldest form huge length", intsAfter("", { 0x7fffffff }, "<plist>") });
    inputs.push_back({ "oldest form negative length", intsAfter("", { -1 }, "<plist>") });
    inputs.push_back({ "oldest form short text", intsAfter("", { 100 }, "<plist><dict>") });
    inputs.push_back({ "oldest form not xml", intsAfter("", { 8 }, "notxml!!") });
    // Well-formed text, then a picture header that claims 30000 × 30000 with no pixels. (A whole
    // stream of no pixels is the fuzzer's project_empty_picture.qhp.)
    auto hugePicture = intsAfter("", { 28 }, "<plist><dict></dict></plist>");
    const auto pictureHeader = intsAfter("SXRB", { 1, 30000, 30000 });
    hugePicture.append(pictureHeader.getData(), pictureHeader.getSize());
    inputs.push_back({ "oldest form huge picture", hugePicture });
    // The picture's text goes straight to the property set's picture reader, whose own tests
    // feed it lying sizes; here it is enough that a bad one leaves no document.
    inputs.push_back({ "picture text not base64", juce::MemoryBlock("VER2\1\0\0\0ORIG_IMAGE_data\0!!!!\0", 26) });

    std::mt19937 random(1234); // fixed random seed
    for (int n : { 1, 3, 4, 5, 12, 64, 1000, 70000 })
    {
        juce::MemoryBlock block((size_t) n);
        for (int i = 0; i < n; ++i)
            static_cast<uint8_t*>(block.getData())[i] = (uint8_t) random();
        inputs.push_back({ "random " + std::to_string(n), block });
        juce::MemoryOutputStream tagged;
        tagged.write(n % 2 == 0 ? "VER3" : "VER2", 4);
        tagged.write(block.getData(), block.getSize());
        inputs.push_back({ "tagged random " + std::to_string(n), tagged.getMemoryBlock() });
    }
    return inputs;
}
} // namespace ProjectFileTestSupport
