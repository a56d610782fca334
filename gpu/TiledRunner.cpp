#include "gpu/TiledRunner.h"
#include "gpu/GPUImageFilter.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageRawDataInput.h"

#include <cmath>
#include <cstring>
#include <memory>

namespace TiledRunner
{
namespace
{
Tile makeTile(int column, int row, int width, int height, int tile, int p)
{
    Tile t;
    t.column = column;
    t.row = row;
    const int tileLeft = tile * column, tileTop = tile * row;
    const int tileRight = std::min((column + 1) * tile - 1, width - 1);
    const int tileBottom = std::min((row + 1) * tile - 1, height - 1);
    if (p > 0)
    {
        // Outer corners at multiples of the block of the filters that work at a half or a quarter
        // of the size, so that every tile shrinks the same blocks as the whole picture does.
        const int left = std::max(0, (tileLeft - p) / tileBlockAlignment * tileBlockAlignment);
        const int top = std::max(0, (tileTop - p) / tileBlockAlignment * tileBlockAlignment);
        const int right = std::min(p - 1 + (column + 1) * tile, width - 1);
        const int bottom = std::min(p - 1 + (row + 1) * tile, height - 1);
        t.outer = { left, top, right - left + 1, bottom - top + 1 };
        t.insetLeft = tileLeft - left;
        t.insetTop = tileTop - top;
        t.insetRight = right - tileRight;
        t.insetBottom = bottom - tileBottom;
    }
    else
        t.outer = { tileLeft, tileTop, tileRight - tileLeft + 1, tileBottom - tileTop + 1 };
    return t;
}

// Uploads one tile, runs the chain (runs times), and writes the tile's inner part back into the image.
void runTile(SxImageRgbaBytes& image, const SxImageRgbaBytes& tilePixels, const Tile& tile, GPUImageInput& first, GPUImageOutput& last,
             int runs = 1, const std::function<void(int)>& beforeRun = {}, GPUImageFilter* repeatFrom = nullptr)
{
    auto input = std::make_unique<GPUImageRawDataInput>();
    input->uploadBytes(tilePixels.pixels, { (float) tilePixels.width, (float) tilePixels.height });
    input->addTarget(&first, 0);
    for (int i = 0; i < runs; ++i)
    {
        if (beforeRun)
            beforeRun(i);
        if (i > 0 && repeatFrom != nullptr)
            repeatFrom->informTargetsAboutNewFrame();
        else
            input->processData();
    }

    int stride = 0;
    const uint8_t* result = last.readPixels(stride);
    const auto inner = tile.inner();
    const auto size = last.outputFrameSize();
    if (result != nullptr && (int) size.width == tilePixels.width && (int) size.height == tilePixels.height)
    {
        for (int y = 0; y < inner.getHeight(); ++y)
            std::memcpy(image.pixelAt(inner.getX(), inner.getY() + y),
                        result + (size_t) (tile.insetTop + y) * (size_t) stride + (size_t) tile.insetLeft * 4,
                        (size_t) inner.getWidth() * 4);
    }
    last.releaseReadPixels();
    input->destroy();
}

int tileSizeNow()
{
    return std::min(2000, GPUImageOpenGLESContext::sharedImageProcessingContext().maximumTileSize());
}
} // namespace

std::vector<Tile> planTiles(int width, int height, int tileSize, float padding)
{
    std::vector<Tile> tiles;
    if (width <= 0 || height <= 0 || tileSize <= 0)
        return tiles;
    const int columns = (width + tileSize - 1) / tileSize;
    const int rows = (height + tileSize - 1) / tileSize;
    const int p = padding > 0.0f ? (int) padding : 0;
    for (int c = 0; c < columns; ++c)
        for (int r = 0; r < rows; ++r)
            tiles.push_back(makeTile(c, r, width, height, tileSize, p));
    return tiles;
}

void run(SxImageRgbaBytes& image, GPUImageInput& firstFilter, GPUImageOutput& lastFilter, float padding)
{
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return;

    const auto tiles = planTiles(image.width, image.height, tileSizeNow(), padding);
    if (tiles.size() == 1)
    {
        runTile(image, image, tiles.front(), firstFilter, lastFilter);
        return;
    }

    // Tiles are written back as they finish, so cut-outs come from an untouched copy.
    const SxRef<SxImageRgbaBytes> source = SxRef<SxImageRgbaBytes>::adopt(image.clone());
    for (const auto& tile : tiles)
    {
        SxImageRgbaBytes cut(tile.outer.getWidth(), tile.outer.getHeight());
        cut.copyOutRect(*source, cut.bounds(), tile.outer);
        runTile(image, cut, tile, firstFilter, lastFilter);
    }
}

void runWithSecondImage(SxImageRgbaBytes& image, const SxImageRgbaBytes& second, float padding,
                        const std::function<TileChain(const SxImageRgbaBytes& secondTile, const SecondTileMapping& mapping)>& buildChain)
{
    ScopedGLContext scoped;
    if (!scoped.isValid() || image.width <= 0 || image.height <= 0 || second.width <= 0 || second.height <= 0)
        return;

    const double ratioX = (double) second.width / image.width, ratioY = (double) second.height / image.height;
    const auto tiles = planTiles(image.width, image.height, tileSizeNow(), padding);
    const bool single = tiles.size() == 1;
    const SxRef<SxImageRgbaBytes> source = SxRef<SxImageRgbaBytes>::adopt(single ? nullptr : image.clone());

    for (const auto& tile : tiles)
    {
        // The tile's area in the second image's pixels, widened to whole texels plus one for the
        // bilinear neighbour, and clipped.
        const double x0 = tile.outer.getX() * ratioX, x1 = tile.outer.getRight() * ratioX;
        const double y0 = tile.outer.getY() * ratioY, y1 = tile.outer.getBottom() * ratioY;
        // A second image of the same size is cut exactly (identity mapping).
        const int marginX = ratioX == 1.0 ? 0 : 1, marginY = ratioY == 1.0 ? 0 : 1;
        const int left = std::max(0, (int) std::floor(x0) - marginX), right = std::min(second.width, (int) std::ceil(x1) + marginX);
        const int top = std::max(0, (int) std::floor(y0) - marginY), bottom = std::min(second.height, (int) std::ceil(y1) + marginY);
        const juce::Rectangle<int> cutRect(left, top, std::max(1, right - left), std::max(1, bottom - top));
        SxImageRgbaBytes secondCut(cutRect.getWidth(), cutRect.getHeight());
        secondCut.copyOutRect(second, secondCut.bounds(), cutRect);

        SecondTileMapping mapping;
        mapping.tileOrigin = tile.outer.getPosition();
        mapping.secondOrigin = cutRect.getPosition();
        mapping.ratio = { ratioX, ratioY };

        TileChain chain = buildChain(secondCut, mapping);
        if (chain.first != nullptr && chain.last != nullptr)
        {
            if (single)
                runTile(image, image, tile, *chain.first, *chain.last, chain.runs, chain.beforeRun, chain.repeatFrom);
            else
            {
                SxImageRgbaBytes cut(tile.outer.getWidth(), tile.outer.getHeight());
                cut.copyOutRect(*source, cut.bounds(), tile.outer);
                runTile(image, cut, tile, *chain.first, *chain.last, chain.runs, chain.beforeRun, chain.repeatFrom);
            }
        }
        if (chain.finished)
            chain.finished();
    }
}
} // namespace TiledRunner
