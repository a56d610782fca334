// Feeds arbitrary bytes to the preset reader, the embedded preview reader and the step that
// applies a preset's keys to a layer's.

#include "presets/EffectPresetValues.h"
#include "presets/PresetFile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    {
        juce::MemoryInputStream in(data, size, false);
        const auto contents = PresetFile::read(in);
        SxPropertySet layer;
        EffectPresets::apply(contents.settings, layer);
    }
    {
        juce::MemoryInputStream in(data, size, false);
        PresetFile::readEmbeddedPreview(in);
    }
    return 0;
}
