// Feeds arbitrary bytes to the binary property set reader, and every picture key it yields to the
// picture decoders: all or nothing, no crash, no allocation sized by a header.

#include "document/SxPropertySet.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    SxPropertySet set;
    set.setString("kept", "1");
    juce::MemoryInputStream in(data, size, false);
    const bool read = set.readBinary(in);
    if (! read && set.size() != 1)
        __builtin_trap(); // a failed read must leave the set as it was

    const auto keys = set.getAllProperties().getAllKeys();
    for (const auto& key : keys)
        if (key.endsWith("_data"))
        {
            const auto name = key.dropLastCharacters(5);
            for (bool raw : { false, true })
            {
                if (auto* image = SxPropertySet::readImageFromDictionary(set, name, raw))
                    image->release();
                if (auto* alpha = SxPropertySet::readAlphaImageFromDictionary(set, name, raw))
                    alpha->release();
            }
        }
    return 0;
}
