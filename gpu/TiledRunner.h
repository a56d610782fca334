#pragma once
// Runs a wired filter chain over a CPU image of any size, one tile at a time, so that no texture
// exceeds what the GL allows. This is the only place that cuts images into tiles, uploads them,
// reads them back and stitches the results: filters only say how far their taps reach (padding).

#include "imaging/SxImageRgbaBytes.h"

#include <functional>
#include <vector>

class GPUImageFilter;
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

/** Padded tiles start at multiples of this many pixels (the largest block a filter shrinks by). */
constexpr int tileBlockAlignment = 4;

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
    /** How often the uploaded tile is sent through the chain before the one read-back, and what
        changes before each run (a chain that accumulates its runs, such as a stack of copies). */
    int runs = 1;
    std::function<void(int run)> beforeRun;
    /** When set, runs after the first start from this node's finished frame instead of the
        upload: what comes before it is the same in every run and is drawn once. */
    GPUImageFilter* repeatFrom = nullptr;
};

/** Where a cut of the second image lies under a tile of the first, in pixels: a pixel p of the
    tile lies at (p + tileOrigin) × ratio − secondOrigin in the cut. Origins are whole pixels of the
    whole images, so a program that maps in these terms reads the same places in a tile as in the
    whole picture. */
struct SecondTileMapping
{
    juce::Point<int> tileOrigin;
    juce::Point<int> secondOrigin;
    juce::Point<double> ratio { 1.0, 1.0 };
};

/** Runs a chain that also needs a second image of another size but the same aspect: for each
    tile, the second image is cut over the same area (scaled by their size ratio, with a texel of
    margin for filtering) and the chain is built anew from that cut and its exact mapping. The cut
    is taken at whole texels, so the mapping carries the fraction: a tile reads the second image
    at the very places the whole image would. */
void runWithSecondImage(SxImageRgbaBytes& image, const SxImageRgbaBytes& second, float padding,
                        const std::function<TileChain(const SxImageRgbaBytes& secondTile, const SecondTileMapping& mapping)>& buildChain);
} // namespace TiledRunner
