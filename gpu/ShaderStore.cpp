#include "gpu/ShaderStore.h"

#include <map>
#include <mutex>

const char* tornvale_shaders_find(const char* name, std::size_t* size);

namespace ShaderStore
{
const char* const swizzlePrefix =
    "mediump vec4 swizzleOut(in mediump vec4 c) { return vec4 (c.a, c.r, c.g, c.b);} "
    "mediump vec4 swizzleIn(in mediump vec4 c) { return vec4 (c.g, c.b, c.a, c.r);}";

const char* const alphaPrefix =
    "mediump vec4 deMultiplyAlpha(mediump vec4 co)    {        co.r /= co.a;       co.g /= co.a;       co.b /= co.a;       return co;    }   "
    "mediump vec4 preMultiplyAlpha(mediump vec4 co)    {        co.r *= co.a;       co.g *= co.a;       co.b *= co.a;       return co;    }";

const char* const shaderKey = "kt3xw77qoz";

namespace
{
std::mutex storeLock;

std::map<juce::String, juce::String>& loadedTexts()
{
    static std::map<juce::String, juce::String> texts;
    return texts;
}
} // namespace

bool contains(const juce::String& fileName)
{
    return tornvale_shaders_find(fileName.toRawUTF8(), nullptr) != nullptr;
}

const juce::String& text(const juce::String& fileName)
{
    std::lock_guard<std::mutex> lock(storeLock);
    auto& texts = loadedTexts();
    auto it = texts.find(fileName);
    if (it == texts.end())
    {
        std::size_t size = 0;
        const char* data = tornvale_shaders_find(fileName.toRawUTF8(), &size);
        it = texts.emplace(fileName, data != nullptr ? juce::String::fromUTF8(data, (int) size) : juce::String()).first;
    }
    return it->second;
}

const juce::String& functionText()
{
    return text("hsv_functions.glsl");
}

juce::String composeColourProgram(const juce::String& body)
{
    return juce::String(swizzlePrefix) + "\n" + functionText() + "\n" + body;
}

juce::MemoryBlock base64Decode(const juce::String& text)
{
    juce::MemoryOutputStream out;
    if (!juce::Base64::convertFromBase64(out, text.removeCharacters(" \t\r\n")))
        return {};
    return out.getMemoryBlock();
}

juce::String base64Encode(const juce::MemoryBlock& bytes)
{
    return juce::Base64::toBase64(bytes.getData(), bytes.getSize());
}

juce::String unscrambleText(const juce::String& scrambled, const juce::String& key)
{
    const auto bytes = base64Decode(scrambled);
    const auto* keyText = key.toRawUTF8();
    const auto n = (size_t) key.getNumBytesAsUTF8();
    std::string result;
    result.reserve(bytes.getSize());
    for (size_t i = 0; i < bytes.getSize(); ++i)
        result.push_back((char) (static_cast<const uint8_t*>(bytes.getData())[i] ^ (n > 0 ? (uint8_t) keyText[i % n] : 0)));
    return juce::String::fromUTF8(result.data(), (int) result.size());
}

juce::String scrambleText(const juce::String& plain, const juce::String& key)
{
    const auto* text = plain.toRawUTF8();
    const auto length = (size_t) plain.getNumBytesAsUTF8();
    const auto* keyText = key.toRawUTF8();
    const auto n = (size_t) key.getNumBytesAsUTF8();
    juce::MemoryBlock bytes(length);
    for (size_t i = 0; i < length; ++i)
        static_cast<uint8_t*>(bytes.getData())[i] = (uint8_t) text[i] ^ (n > 0 ? (uint8_t) keyText[i % n] : 0);
    return base64Encode(bytes);
}

const juce::String& unscrambledEntry(const juce::String& scrambled)
{
    static std::map<juce::String, juce::String> entries;
    std::lock_guard<std::mutex> lock(storeLock);
    auto it = entries.find(scrambled);
    if (it == entries.end())
        it = entries.emplace(scrambled, unscrambleText(scrambled, shaderKey)).first;
    return it->second;
}
} // namespace ShaderStore
