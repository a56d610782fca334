#pragma once
// Colour management at the file seams: a picture with an embedded ICC profile is converted to sRGB
// when it is loaded (the whole program works in sRGB), and can be converted back when saved.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

namespace ColorProfile
{
/** Converts the image's pixels from the embedded profile to sRGB; alpha is left alone.
    Returns false (pixels unchanged) when the profile cannot be used. */
bool convertToSRGB(SxImageRgbaBytes& image, const juce::MemoryBlock& iccProfile);

/** The inverse, for writing a file that keeps its source's profile. */
bool convertFromSRGB(SxImageRgbaBytes& image, const juce::MemoryBlock& iccProfile);

/** The profile's description text, or empty. */
juce::String describe(const juce::MemoryBlock& iccProfile);
} // namespace ColorProfile
