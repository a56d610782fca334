// The stamps of SxImageAlphaByte that write a brush dab into a mask.
#include "brush/SxBrush.h"
#include "imaging/SxImageAlphaByte.h"

#include <algorithm>

namespace
{
/** The mask pixels a dab covers and where the dab's own pixel (0, 0) lands. */
struct StampRegion
{
    int x0, y0, x1, y1; // inclusive, in mask pixels
    int ox, oy;         // mask position of the dab's pixel (0, 0)
    int limitX, limitY;
};

StampRegion regionFor(const SxImageAlphaByte& mask, const SxBrushPoint& p, const SxImageAlphaByte& dab, float diameter)
{
    const int w = dab.width, h = dab.height, D = (int) diameter;
    StampRegion r {};
    r.limitX = std::min(mask.width, std::max(D, (int) ((float) w + p.x + 1.0f)));
    r.limitY = std::min(mask.height, std::max(D, (int) ((float) h + p.y + 1.0f)));
    // Truncation goes towards zero: a dab hanging over the left or upper edge shifts by up to a
    // pixel, as every stroke ever painted did.
    r.ox = (int) (p.x - (float) w * 0.5f);
    r.oy = (int) (p.y - (float) h * 0.5f);
    auto clampTo = [](int v, int limit) { return v < 0 ? 0 : (v > limit - 1 ? limit - 1 : v); };
    r.x0 = clampTo(r.ox, r.limitX);
    r.x1 = clampTo((int) (p.x + (float) w * 0.5f), r.limitX);
    r.y0 = clampTo(r.oy, r.limitY);
    r.y1 = clampTo((int) (p.y + (float) h * 0.5f), r.limitY);
    r.x1 = std::min(r.x1, r.ox + w - 1);
    r.y1 = std::min(r.y1, r.oy + h - 1);
    return r;
}

/** Calls stamp(maskByte, dabByte) for every non-zero dab byte that lands in the mask. */
template <typename Stamp>
void forEachCovered(SxImageAlphaByte& mask, const SxBrushPoint& p, const SxImageAlphaByte& dab, float diameter, Stamp stamp)
{
    if (mask.width <= 0 || mask.height <= 0)
        return;
    const auto r = regionFor(mask, p, dab, diameter);
    for (int y = r.y0; y <= r.y1; ++y)
    {
        const int sy = y - r.oy;
        if (sy < 0 || sy >= r.limitY)
            continue;
        std::uint8_t* m = mask.pixelAt(0, y);
        const std::uint8_t* d = dab.pixelAt(0, sy);
        for (int x = r.x0; x <= r.x1; ++x)
        {
            const int sx = x - r.ox;
            if (sx < 0 || sx >= r.limitX || d[sx] == 0)
                continue;
            m[x] = stamp(m[x], d[sx]);
        }
    }
}
} // namespace

void SxImageAlphaByte::paintOnDab(const SxBrushPoint& point, SxBrush& brush, float strength)
{
    const float amount = strength * point.strength;
    forEachCovered(*this, point, *brush.imageAtScale(1.0f), brush.getDiameter(), [amount](std::uint8_t m, std::uint8_t d) {
        const int v = (int) ((float) m - (float) d * amount);
        return (std::uint8_t) std::clamp(v, 0, 255);
    });
}

void SxImageAlphaByte::paintOffDab(const SxBrushPoint& point, std::uint8_t opacityByte, SxBrush& brush, float scale)
{
    const float pointStrength = point.strength;
    forEachCovered(*this, point, *brush.imageAtScale(scale), brush.getDiameter(), [=](std::uint8_t m, std::uint8_t d) {
        const int s = (int) ((float) d / 255.0f * (float) opacityByte) & 0xff;
        const int q = (int) ((float) s * pointStrength) & 0xff;
        return (std::uint8_t) (m + q * (255 - m) / 255);
    });
}
