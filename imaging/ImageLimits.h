#pragma once
// How large a picture the readers agree to make, and which resolutions they believe. Every reader
// asks before it allocates pixels, from the sizes its header claims: a few hostile bytes must not
// be able to take gigabytes of memory.

#include <juce_core/juce_core.h>

namespace ImageLimits
{
constexpr double defaultMegapixels = 150.0;

/** Raises (or lowers) the limit for the whole process: the command line and the window's setting. */
void setMaximumMegapixels(double megapixels);
double maximumMegapixels();

/** Empty when a picture of this size may be made; otherwise why not, in a sentence. Pictures over
    the limit, and pictures whose buffers would not fit into the memory the machine has free,
    are refused. */
juce::String refusal(int64_t width, int64_t height);

/** The reason given when memory ran out while a picture was read or rendered. */
inline const char* const outOfMemory = "out of memory: the picture needs more memory than is free";

constexpr double defaultResolution = 72.0;

/** A resolution in pixels per inch as given, or the default when it is outside 1 to 100,000. */
double sanitisedResolution(double pixelsPerInch);
} // namespace ImageLimits
