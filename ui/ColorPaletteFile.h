#pragma once
// Palette files: an XML element "ColorPalette" whose attributes hold the count and the four
// channels of each colour, with a 200 x 200 JPEG swatch of the same name beside it for lists.
// The reader trusts nothing in the file: a count or a channel out of range refuses the whole
// file, so a damaged palette never half-loads.

#include <juce_graphics/juce_graphics.h>

#include <vector>

namespace ColorPaletteFile
{
/** Colours a palette without a count is read with (all white). */
constexpr int defaultCount = 27;
/** More colours than any grid shows; a larger count is damage. */
constexpr int maximumCount = 4096;
/** Side of the swatch picture. */
constexpr int pictureSize = 200;

struct ReadResult
{
    std::vector<juce::Colour> colours;
    juce::String error; ///< empty when the palette was read
    bool ok() const { return error.isEmpty(); }
};

/** Reads a palette from its XML text. */
ReadResult read(juce::InputStream& in);
/** Reads the file; a missing file gives no colours and no error. */
ReadResult readFile(const juce::File& file);

/** Writes file (a .qpl) and its picture beside it. Each goes to a temporary name first and
    replaces an older palette of that name only once both are whole. */
juce::Result write(const juce::File& file, const std::vector<juce::Colour>& colours);

/** The picture beside a palette file. */
juce::File pictureFor(const juce::File& file);
/** The swatch: the colours in a square grid of equal cells, over white. */
juce::Image picture(const std::vector<juce::Colour>& colours);
} // namespace ColorPaletteFile
