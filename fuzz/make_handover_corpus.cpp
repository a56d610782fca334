// Writes a starting corpus for the hand-over fuzzer: make_handover_corpus <folder> creates one
// small valid picture file for each image mode, with and without a selection mask, and one
// scripted-run settings file.

#include "document/HandOverFiles.h"

#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::cerr << "usage: make_handover_corpus <folder>\n";
        return 2;
    }
    const juce::File folder(juce::File::getCurrentWorkingDirectory().getChildFile(argv[1]));
    folder.createDirectory();
    const int modes[][2] = { { HandOverFiles::grey8, 1 }, { HandOverFiles::rgb8, 3 }, { HandOverFiles::grey16, 1 },
                             { HandOverFiles::rgb16, 3 } };
    for (const auto& [mode, planes] : modes)
        for (bool withMask : { false, true })
        {
            HandOverFiles::Image image;
            auto& h = image.header;
            h.title = "photo.tif";
            h.hiPlane = planes - 1;
            h.right = 3, h.bottom = 2;
            h.imageMode = mode;
            const int bytes = mode >= HandOverFiles::grey16 ? 2 : 1;
            h.rowBytes = 3 * planes * bytes;
            image.pixels.setSize((size_t) (h.rowBytes * 2));
            for (size_t i = 0; i < image.pixels.getSize(); ++i)
                static_cast<uint8_t*>(image.pixels.getData())[i] = (uint8_t) (i * 29);
            if (withMask)
            {
                h.maskRowBytes = 3;
                image.mask.setSize(6);
                image.mask.fillWith(128);
            }
            juce::MemoryOutputStream out;
            HandOverFiles::writeImage(out, image);
            folder.getChildFile("mode" + juce::String(mode) + (withMask ? "_mask" : "")).replaceWithData(out.getData(), out.getDataSize());
        }
    HandOverFiles::ActionSettings settings;
    settings.effectName = "Tornvale";
    settings.dictionary.setString("strokeLength", "0.5");
    juce::MemoryOutputStream out;
    HandOverFiles::writeActionSettings(out, settings);
    folder.getChildFile("action").replaceWithData(out.getData(), out.getDataSize());
    return 0;
}
