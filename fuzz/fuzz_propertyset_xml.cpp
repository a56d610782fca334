// Feeds arbitrary text to the XML form of a property set: the parser, the plist walk and the
// pictures that the walk turns back from keys.

#include "document/SxPropertySet.h"
#include "imaging/FileBytes.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Every reader checks its bytes before making text of them, as here.
    juce::String text;
    if (! FileBytes::toText(data, size, text))
        return 0;
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
