// Writes a small corpus of valid project files in all three forms for fuzz_project_reader:
//   make_project_corpus <folder>
// Small pictures keep each input short, so the fuzzer spends its time on structure.

#include "document/ProjectFile.h"
#include "imaging/ImageStream.h"

#include <cstdio>

namespace
{
SxRef<SxImageRgbaBytes> picture(int w, int h)
{
    auto image = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(w, h));
    for (size_t i = 0; i < image->byteCount(); ++i)
        image->pixels[i] = (uint8_t) (i * 37 + (i >> 3));
    return image;
}

SxPropertySet settings(int variant)
{
    SxPropertySet set;
    set.setInt("LayerCount", 1);
    set.setInt("SelectedLayer", 1);
    set.setString("ClassName1", "ProjectFuzzLayer");
    set.setString("EffectDictionary1", "<plist><dict><key>strokeLength</key><string>0.5</string></dict></plist>");
    set.setInt("SubLayerCount1", variant % 2);
    set.setString("SubLayerClassName1Sub0", "ProjectFuzzLayer");
    return set;
}

bool save(const juce::File& file, const juce::MemoryBlock& bytes)
{
    return file.replaceWithData(bytes.getData(), bytes.getSize());
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: make_project_corpus <folder>\n");
        return 2;
    }
    const juce::File folder = juce::File::getCurrentWorkingDirectory().getChildFile(argv[1]);
    folder.createDirectory();
    int failures = 0;
    const int sizes[][2] = { { 1, 1 }, { 3, 2 }, { 8, 5 } };
    for (int i = 0; i < 3; ++i)
    {
        auto image = picture(sizes[i][0], sizes[i][1]);
        const auto set = settings(i);

        juce::MemoryOutputStream current;
        failures += ProjectFile::write(current, set, *image, 72.0, 96.0, image.get()) ? 0 : 1;
        failures += save(folder.getChildFile("ver3_" + juce::String(i) + ".qhp"), current.getMemoryBlock()) ? 0 : 1;

        SxPropertySet withPicture(set);
        ProjectFile::writeDocumentToDictionary(withPicture, *image, 72.0, 72.0);
        juce::MemoryOutputStream version2;
        version2.write("VER2", 4);
        withPicture.writeBinary(version2);
        failures += save(folder.getChildFile("ver2_" + juce::String(i) + ".qhp"), version2.getMemoryBlock()) ? 0 : 1;

        auto xml = set.toXml();
        const juce::String text = xml->toString();
        juce::MemoryOutputStream oldest;
        oldest.writeInt((int) text.getNumBytesAsUTF8());
        oldest.write(text.toRawUTF8(), text.getNumBytesAsUTF8());
        ImageStream::write(*image, oldest);
        failures += save(folder.getChildFile("xml_" + juce::String(i) + ".qhp"), oldest.getMemoryBlock()) ? 0 : 1;
    }
    std::fprintf(stderr, "%d files in %s\n", 9 - failures, folder.getFullPathName().toRawUTF8());
    return failures == 0 ? 0 : 1;
}
