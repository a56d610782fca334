#pragma once
// Resampling kernels shared by the image classes. They work on interleaved 8-bit planes with any
// channel count and treat every channel alike: the effect keeps non-colour data (tensor entries)
// in the alpha byte, so nothing here may premultiply or weight by alpha.

#include <cstddef>
#include <cstdint>

namespace ImageScaling
{
struct ConstPlane
{
    const uint8_t* data;
    int width, height;
    size_t stride; // bytes from one row to the next
    int channels;
};

struct Plane
{
    uint8_t* data;
    int width, height;
    size_t stride;
    int channels;
};

/** Nearest neighbour with a 16.16 fixed-point step of source size / destination size. */
void nearest(ConstPlane source, Plane dest);

/** Bilinear interpolation between pixel centres; edges are clamped. */
void bilinear(ConstPlane source, Plane dest);

/** Exact area average for reduction (each destination pixel is the mean of the source area it
    covers, partial pixels weighted by coverage). An axis that grows is interpolated instead. */
void areaAverage(ConstPlane source, Plane dest);
} // namespace ImageScaling
