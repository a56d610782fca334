#pragma once
// Images the tests share: real photos from samples/ and small synthetic patterns.

#include "imaging/ImageRGBAPixelData.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_graphics/juce_graphics.h>

#include <cstdlib>
#include <memory>
#include <random>

namespace TestImages
{
inline juce::File samplesFolder()
{
    return juce::File(TORNVALE_SOURCE_DIR).getChildFile("samples");
}

/** A sample photo as an owned image (null if it is missing). */
inline std::unique_ptr<SxImageRgbaBytes, void (*)(SxImageRgbaBytes*)> photo(const juce::String& name)
{
    const auto image = juce::ImageFileFormat::loadFrom(samplesFolder().getChildFile(name));
    return { SxImageConversion::fromJuceImage(image), [](SxImageRgbaBytes* i) { if (i) i->release(); } };
}

/** Random bytes in all four channels, from a fixed generator so failures repeat. */
inline void fillRandom(SxImageRgbaBytes& image, unsigned int generatorStart = 12345)
{
    std::mt19937 generator(generatorStart);
    for (size_t i = 0; i < image.byteCount(); ++i)
        image.pixels[i] = (uint8_t) (generator() & 0xff);
}

/** Lowers the tile limit for a scope, so that a small image is cut into many tiles. */
struct TileLimit
{
    explicit TileLimit(int size) { setenv("TORNVALE_MAX_TILE", juce::String(size).toRawUTF8(), 1); }
    ~TileLimit() { unsetenv("TORNVALE_MAX_TILE"); }
    TileLimit(const TileLimit&) = delete;
    TileLimit& operator=(const TileLimit&) = delete;
};

/** One operation run on two copies of a start image, the second cut into tiles of at most
    `limit` pixels: the pair that a tiling test compares. */
struct WholeAndTiled
{
    template <typename Operation>
    WholeAndTiled(const SxImageRgbaBytes& start, int limit, Operation&& operation) : whole(start), tiled(start)
    {
        operation(whole);
        const TileLimit tiles(limit);
        operation(tiled);
    }
    SxImageRgbaBytes whole, tiled;
};

/** Largest difference between two equally sized images, over all bytes. */
inline int maxDifference(const SxImageRgbaBytes& a, const SxImageRgbaBytes& b)
{
    if (a.width != b.width || a.height != b.height)
        return 256;
    int worst = 0;
    for (size_t i = 0; i < a.byteCount(); ++i)
        worst = std::max(worst, std::abs((int) a.pixels[i] - (int) b.pixels[i]));
    return worst;
}
} // namespace TestImages
