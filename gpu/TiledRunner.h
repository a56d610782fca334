#pragma once
// Runs a wired filter chain over a CPU image of any size, one tile at a time, so that no texture
// exceeds what the GL allows. This is the only place that cuts images into tiles, uploads them,
// reads them back and stitches the results: filters only say how far their taps reach (padding).

#include "imaging/SxImageRgbaBytes.h"

#include <functional>
#include <vector>

class GPUImageInput;
class GPUImageOutput;

namespace TiledRunner
{
/** One tile: the rectangle that is uploaded (the tile grown by the padding, clipped to the image),
    and how much of each side is padding that is dropped when the result is written back. */
struct Tile
{
    int column = 0, row = 0;
    juce::Rectangle<int> outer;
    int insetLeft = 0, insetTop = 0, insetRight = 0, insetBottom = 0;

    /** The part of outer that is written back, in image coordinates. */
    juce::Rectangle<int> inner() const
    {
        return { outer.getX() + insetLeft, outer.getY() + insetTop, outer.getWidth() - insetLeft - insetRight,
                 outer.getHeight() - insetTop - insetBottom };
    }
};

/** The tiles of an image, column by column and top to bottom within a column. */
std::vector<Tile> planTiles(int width, int height, int tileSize, float padding);

/** Runs first..last over image in place. The chain is built once and fed tile after tile. */
void run(SxImageRgbaBytes& image, GPUImageInput& firstFilter, GPUImageOutput& lastFilter, float padding);

/** What a per-tile chain builder returns: where to feed the tile and where to read the result.
    The builder's own FilterChain (or equivalent) must own the nodes until `finished` runs. */
struct TileChain
{
    GPUImageInput* first = nullptr;
    GPUImageOutput* last = nullptr;
    std::function<void()> finished;
};

/** Runs a chain that also needs a second image, cut in step with the first: the second image's
    tile and padding are the first's scaled by (second width / first width). The chain is built
    anew for each tile from the second image's tile. */
void runWithSecondImage(SxImageRgbaBytes& image, const SxImageRgbaBytes& second, float padding,
                        const std::function<TileChain(const SxImageRgbaBytes& secondTile)>& buildChain);
} // namespace TiledRunner
