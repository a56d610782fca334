// Feeds arbitrary bytes to the hand-over readers: the picture file with its conversions to the
// program's picture and mask and the result written back over it, and the scripted-run settings.

#include "document/HandOverFiles.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    {
        juce::MemoryInputStream in(data, size, false);
        HandOverFiles::Image image;
        juce::String error;
        if (HandOverFiles::readImage(in, image, error))
        {
            auto picture = image.toPicture();
            image.toSelectionMask();
            auto back = HandOverFiles::withResult(image, *picture);
            juce::MemoryOutputStream out;
            HandOverFiles::writeImage(out, back);
        }
    }
    {
        juce::MemoryInputStream in(data, size, false);
        HandOverFiles::ActionSettings settings;
        HandOverFiles::readActionSettings(in, settings);
    }
    return 0;
}
