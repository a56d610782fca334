#include "imaging/ImageScaling.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ImageScaling
{
namespace
{
// One output sample of a separable pass: a run of source indices with their weights.
struct Taps
{
    int first = 0;
    std::vector<float> weights;
};

std::vector<Taps> bilinearTaps(int sourceSize, int destSize)
{
    std::vector<Taps> taps((size_t) destSize);
    const double step = (double) sourceSize / destSize;
    for (int i = 0; i < destSize; ++i)
    {
        const double centre = (i + 0.5) * step - 0.5;
        const double clamped = std::clamp(centre, 0.0, (double) (sourceSize - 1));
        const int i0 = (int) std::floor(clamped);
        const int i1 = std::min(i0 + 1, sourceSize - 1);
        const float f = (float) (clamped - i0);
        taps[(size_t) i].first = i0;
        if (i1 == i0)
            taps[(size_t) i].weights = { 1.0f };
        else
            taps[(size_t) i].weights = { 1.0f - f, f };
    }
    return taps;
}

std::vector<Taps> areaTaps(int sourceSize, int destSize)
{
    if (destSize >= sourceSize)
        return bilinearTaps(sourceSize, destSize);

    std::vector<Taps> taps((size_t) destSize);
    const double step = (double) sourceSize / destSize;
    for (int i = 0; i < destSize; ++i)
    {
        const double start = i * step, end = std::min((i + 1) * step, (double) sourceSize);
        const int first = (int) std::floor(start);
        const int last = std::min((int) std::ceil(end) - 1, sourceSize - 1);
        Taps& t = taps[(size_t) i];
        t.first = first;
        for (int s = first; s <= last; ++s)
        {
            const double covered = std::min(end, s + 1.0) - std::max(start, (double) s);
            t.weights.push_back((float) (covered / step));
        }
    }
    return taps;
}

// Horizontal pass into floats, then vertical pass into bytes.
void separable(ConstPlane source, Plane dest, const std::vector<Taps>& xTaps, const std::vector<Taps>& yTaps)
{
    const int c = source.channels;
    const size_t rowFloats = (size_t) dest.width * (size_t) c;
    std::vector<float> horizontal(rowFloats * (size_t) source.height);

    for (int y = 0; y < source.height; ++y)
    {
        const uint8_t* in = source.data + (size_t) y * source.stride;
        float* out = horizontal.data() + (size_t) y * rowFloats;
        for (int x = 0; x < dest.width; ++x)
        {
            const Taps& t = xTaps[(size_t) x];
            for (int ch = 0; ch < c; ++ch)
            {
                float sum = 0.0f;
                for (size_t k = 0; k < t.weights.size(); ++k)
                    sum += t.weights[k] * in[((size_t) t.first + k) * (size_t) c + (size_t) ch];
                out[(size_t) x * (size_t) c + (size_t) ch] = sum;
            }
        }
    }

    std::vector<float> accumulator(rowFloats);
    for (int y = 0; y < dest.height; ++y)
    {
        const Taps& t = yTaps[(size_t) y];
        std::fill(accumulator.begin(), accumulator.end(), 0.0f);
        for (size_t k = 0; k < t.weights.size(); ++k)
        {
            const float w = t.weights[k];
            const float* row = horizontal.data() + ((size_t) t.first + k) * rowFloats;
            for (size_t i = 0; i < rowFloats; ++i)
                accumulator[i] += w * row[i];
        }
        uint8_t* out = dest.data + (size_t) y * dest.stride;
        for (size_t i = 0; i < rowFloats; ++i)
            out[i] = (uint8_t) std::clamp((int) (accumulator[i] + 0.5f), 0, 255);
    }
}

bool isEmpty(ConstPlane s, Plane d)
{
    return s.width <= 0 || s.height <= 0 || d.width <= 0 || d.height <= 0;
}
} // namespace

void nearest(ConstPlane source, Plane dest)
{
    if (isEmpty(source, dest))
        return;
    const uint32_t stepX = (uint32_t) (((uint64_t) source.width << 16) / (uint64_t) dest.width);
    const uint32_t stepY = (uint32_t) (((uint64_t) source.height << 16) / (uint64_t) dest.height);
    const size_t c = (size_t) source.channels;
    for (int y = 0; y < dest.height; ++y)
    {
        const int sy = std::min((int) (((uint64_t) y * stepY) >> 16), source.height - 1);
        const uint8_t* in = source.data + (size_t) sy * source.stride;
        uint8_t* out = dest.data + (size_t) y * dest.stride;
        for (int x = 0; x < dest.width; ++x)
        {
            const int sx = std::min((int) (((uint64_t) x * stepX) >> 16), source.width - 1);
            std::copy_n(in + (size_t) sx * c, c, out + (size_t) x * c);
        }
    }
}

void bilinear(ConstPlane source, Plane dest)
{
    if (isEmpty(source, dest))
        return;
    separable(source, dest, bilinearTaps(source.width, dest.width), bilinearTaps(source.height, dest.height));
}

void areaAverage(ConstPlane source, Plane dest)
{
    if (isEmpty(source, dest))
        return;
    separable(source, dest, areaTaps(source.width, dest.width), areaTaps(source.height, dest.height));
}
} // namespace ImageScaling
