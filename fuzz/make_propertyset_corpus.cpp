// Writes a starting corpus for the property set and preset fuzzers: make_propertyset_corpus <folder>
// creates <folder>/binary, <folder>/xml and <folder>/preset with small valid files of each form.

#include "document/SxPropertySet.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetFile.h"

#include <iostream>

namespace
{
void save(const juce::File& file, const void* data, size_t size)
{
    file.getParentDirectory().createDirectory();
    file.replaceWithData(data, size);
}

SxPropertySet sample(int variant)
{
    SxPropertySet set;
    set.setString("layerName", juce::String::fromUTF8("Zeichnung ü"));
    set.setFloat("strokeLength", 0.51f);
    set.setInt("compositeMode", variant);
    set.setBool("visible", variant % 2 == 0);
    if (variant > 0)
    {
        SxImageRgbaBytes picture(3 + variant, 2);
        for (size_t i = 0; i < picture.byteCount(); ++i)
            picture.pixels[i] = (uint8_t) (i * 37);
        SxPropertySet::writeImageToDictionary(set, "pic", picture, variant % 2 == 1);
        SxImageAlphaByte mask(2, 2);
        SxPropertySet::writeAlphaImageToDictionary(set, "mask", mask, false);
    }
    return set;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::cerr << "usage: make_propertyset_corpus <folder>\n";
        return 2;
    }
    const juce::File root = juce::File::getCurrentWorkingDirectory().getChildFile(argv[1]);
    for (int v = 0; v < 3; ++v)
    {
        SxPropertySet set = sample(v);
        juce::MemoryOutputStream binary;
        set.writeBinary(binary);
        save(root.getChildFile("binary").getChildFile("set" + juce::String(v)), binary.getData(), binary.getDataSize());

        auto picture = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(2, 3));
        set.addImage(picture.get(), "source.png");
        const juce::String xml = set.toXml()->toString();
        save(root.getChildFile("xml").getChildFile("set" + juce::String(v) + ".xml"), xml.toRawUTF8(), xml.getNumBytesAsUTF8());
    }
    for (int i : { 0, 13, 17 })
    {
        const auto bytes = BuiltInPresets::getPresetFile(i);
        save(root.getChildFile("preset").getChildFile(BuiltInPresets::getName(i) + ".pre"), bytes.getData(), bytes.getSize());
    }
    SxImageRgbaBytes composite(8, 4);
    juce::MemoryOutputStream ver3;
    PresetFile::write(ver3, sample(0), &composite);
    save(root.getChildFile("preset").getChildFile("written.pre"), ver3.getData(), ver3.getDataSize());
    const juce::String legacy = "<PROPERTIES strokeLength=\"0.4\"><VALUE name=\"smoothing\" val=\"0.6\"/></PROPERTIES>";
    save(root.getChildFile("preset").getChildFile("legacy.pre"), legacy.toRawUTF8(), legacy.getNumBytesAsUTF8());
    return 0;
}
