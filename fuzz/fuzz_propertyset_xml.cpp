// Feeds arbitrary text to the XML form of a property set: the parser, the plist walk and the
// pictures that the walk turns back from keys.

#include "document/SxPropertySet.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Every reader checks its bytes before making text of them (fromUTF8 turns some malformed
    // sequences into a zero character, past which juce::parseXML reads out of bounds).
    if (size > (size_t) std::numeric_limits<int>::max() || std::memchr(data, 0, size) != nullptr
        || ! juce::CharPointer_UTF8::isValidString((const char*) data, (int) size))
        return 0;
    const auto text = juce::String::fromUTF8((const char*) data, (int) size);
    auto xml = SxPropertySet::parseXmlText(text);
    if (xml == nullptr)
        return 0;
    SxPropertySet set;
    set.fromXml(*xml);
    // Whatever came in must go out again in the same form.
    auto again = set.toXml();
    if (again == nullptr || ! again->hasTagName("plist"))
        __builtin_trap();
    return 0;
}
