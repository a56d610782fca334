#pragma once
// Where the filters' GLSL texts come from. Each program is a file in gpu/shaders/, embedded into
// the binary at build time and looked up by file name. The store also keeps the prefixes that
// colour programs are prepended with, and the routine that reads texts kept scrambled.

#include <juce_core/juce_core.h>

namespace ShaderStore
{
/** The embedded text of gpu/shaders/<fileName>; an empty string (which fails to compile, as a
    missing program should) when there is no such file. */
const juce::String& text(const juce::String& fileName);

/** True when gpu/shaders/<fileName> is embedded. */
bool contains(const juce::String& fileName);

/** swizzleIn turns a sampled texel (alpha, red, green, blue in .rgba) into colour order;
    swizzleOut turns a colour back into the stored order. */
extern const char* const swizzlePrefix;

/** deMultiplyAlpha / preMultiplyAlpha, for programs that average colours weighted by alpha. */
extern const char* const alphaPrefix;

/** The RGB and HSV conversions some colour programs call. */
const juce::String& functionText();

/** Swizzle prefix + function text + body: how a colour program is put together. */
juce::String composeColourProgram(const juce::String& body);

/** The key with which stored scrambled texts are read. */
extern const char* const shaderKey;

juce::MemoryBlock base64Decode(const juce::String& text);
juce::String base64Encode(const juce::MemoryBlock& bytes);

/** XOR of the base64-decoded bytes with the key, the key's index wrapping at its length. */
juce::String unscrambleText(const juce::String& scrambled, const juce::String& key);
/** The inverse: XOR with the key, then base64. */
juce::String scrambleText(const juce::String& plain, const juce::String& key);

/** A scrambled text, unscrambled once and kept, since chains rebuild their filters per tile. */
const juce::String& unscrambledEntry(const juce::String& scrambled);
} // namespace ShaderStore
