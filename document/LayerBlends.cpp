#include "document/LayerBlends.h"

#include <algorithm>

namespace LayerBlends
{
namespace
{
int clampByte(int v) { return std::clamp(v, 0, 255); }

/** Rounded x / 255 for x in 0 to 65535, without a division. */
int div255(int x) { return (x + 0x80 + ((x + 0x80) >> 8)) >> 8; }

int dodge(int s, int d) { return std::min(255, (d << 8) / (256 - s)); }

int overlayOf(int test, int other)
{
    // C++ integer division truncates toward zero, so the upper branch rounds toward 255.
    if (test < 128)
        return (test * other * 2) / 255;
    return ((other - 255) * (255 - test) * 2) / 255 + 255;
}

/** (255 - sA) * dA / 255, rounded. */
uint32_t remainingAlpha(uint32_t sA, uint32_t dA)
{
    const uint32_t a = (255 - sA) * dA;
    return (((a + 128) >> 8) + 128 + a) >> 8;
}

/** Straight-alpha "over" of colour c with alpha sA onto destination. */
void overWithColour(const int* c, uint32_t sA, uint8_t* d)
{
    if (sA == 0)
        return;
    if (sA == 255)
    {
        d[0] = 255;
        for (int i = 0; i < 3; ++i)
            d[i + 1] = (uint8_t) c[i];
        return;
    }
    const uint32_t a2 = remainingAlpha(sA, d[0]);
    const uint32_t outA = a2 + sA;
    for (int i = 0; i < 3; ++i)
        d[i + 1] = (uint8_t) (((uint32_t) c[i] * sA + a2 * d[i + 1]) / outA);
    d[0] = (uint8_t) outA;
}
} // namespace

juce::String getName(int mode)
{
    static const char* const names[modeCount] = { "Normal",   "Darken",      "Multiply", "Color Burn",
                                                  "Lighten",  "Screen",      "Color Dodge", "Overlay",
                                                  "Soft Light", "Hard Light", "Vivid Light", "Linear Light" };
    return mode >= 0 && mode < modeCount ? juce::String(names[mode]) : juce::String();
}

int blendChannel(int mode, int s, int d)
{
    switch (mode)
    {
        case normal: return s;
        case darken: return std::min(s, d);
        // >> 8 rather than / 255 is the mode's known character: white on white gives 254.
        case multiply: return (s * d) >> 8;
        case colorBurn:
            if (s == 0)
                return 0;
            return (int) (255.0 * std::max(0.0, 1.0 - (1.0 - d / 255.0) / (s / 255.0)));
        case lighten: return std::max(d, s);
        case screen: return (int) (255.0 - ((255 - s) * (255 - d)) / 255.0);
        case colorDodge: return dodge(s, d);
        case overlay: return overlayOf(d, s);
        case softLight:
            return std::min(255, div255(div255(s * d) * (255 - d)) + div255((255 - div255((255 - s) * (255 - d))) * d));
        case hardLight: return overlayOf(s, d);
        case linearLight:
        {
            const double f = s / 255.0;
            const int burn = clampByte((int) (d - (1.0 - f) * (255 - d)));
            return (int) (burn * (1.0 - f) + dodge(s, d) * f);
        }
        default: return d;
    }
}

void blendPixel(int mode, const uint8_t* s, uint8_t* d)
{
    if (mode < 0 || mode >= modeCount || mode == vividLight)
        return;

    const uint32_t sA = s[0];
    if (sA == 0)
        return;

    int c[3];
    if (mode == normal || mode == lighten)
    {
        // These two are plain "over" composites of the blended colour; they need no frame
        // because B(s, d) already equals s wherever there is nothing below to blend with.
        for (int i = 0; i < 3; ++i)
            c[i] = blendChannel(mode, s[i + 1], d[i + 1]);
        overWithColour(c, sA, d);
        return;
    }

    // Where the picture below is transparent the blend has nothing to work on, so the layer's
    // colour shows in proportion to that transparency.
    const double t = 1.0 - d[0] / 255.0;
    for (int i = 0; i < 3; ++i)
    {
        const int sc = s[i + 1];
        const double mixed = sc * t + blendChannel(mode, sc, d[i + 1]) * (1.0 - t);
        c[i] = clampByte((int) std::lround(mixed));
    }
    overWithColour(c, sA, d);
}

void blend(int mode, const SxImageRgbaBytes& source, SxImageRgbaBytes& destination, juce::Rectangle<int> rect)
{
    if (mode < 0 || mode >= modeCount || mode == vividLight)
        return;
    rect = rect.getIntersection(destination.bounds()).getIntersection(source.bounds());
    for (int y = rect.getY(); y < rect.getBottom(); ++y)
    {
        const uint8_t* s = source.pixelAt(rect.getX(), y);
        uint8_t* d = destination.pixelAt(rect.getX(), y);
        for (int x = 0; x < rect.getWidth(); ++x, s += 4, d += 4)
            blendPixel(mode, s, d);
    }
}
} // namespace LayerBlends
