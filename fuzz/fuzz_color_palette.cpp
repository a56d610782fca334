// Feeds arbitrary bytes to the palette reader.

#include "ui/ColorPaletteFile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    juce::MemoryInputStream in(data, size, false);
    ColorPaletteFile::read(in);
    return 0;
}
