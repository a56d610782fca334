// The twelve CPU blends against a reference written from the blend definitions in floating
// point, exhaustively over all byte pairs, and the alpha frame around them.

#include "document/LayerBlends.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace
{
// Reference channel blends. Integer divisions of the definitions are written as floor/ceil of
// real quotients, and div255 as a rounded quotient, so a slip in the shift tricks shows.
int reference(int mode, int s, int d)
{
    const double S = s, D = d;
    switch (mode)
    {
        case 0: return s;
        case 1: return std::min(s, d);
        case 2: return (int) std::floor(S * D / 256.0);
        case 3:
            // Defined in double precision as written, so quotients that are whole numbers in
            // exact arithmetic may land one below; that is the mode's behaviour, not an error.
            return s == 0 ? 0 : (int) (255.0 * std::max(0.0, 1.0 - (1.0 - D / 255.0) / (S / 255.0)));
        case 4: return std::max(s, d);
        case 5: return (int) std::floor(255.0 - (255.0 - S) * (255.0 - D) / 255.0 + 1e-9);
        case 6: return std::min(255, (int) std::floor(256.0 * D / (256.0 - S)));
        case 7: return d < 128 ? (int) std::floor(2.0 * S * D / 255.0) : 255 - (int) std::floor(2.0 * (255.0 - S) * (255.0 - D) / 255.0);
        case 8:
        {
            auto r255 = [](double x) { return std::floor(x / 255.0 + 0.5); };
            const double v = r255(r255(S * D) * (255.0 - D)) + r255((255.0 - r255((255.0 - S) * (255.0 - D))) * D);
            return (int) std::min(255.0, v);
        }
        case 9: return s < 128 ? (int) std::floor(2.0 * S * D / 255.0) : 255 - (int) std::floor(2.0 * (255.0 - S) * (255.0 - D) / 255.0);
        case 10: return d;
        case 11:
        {
            const double f = S / 255.0;
            const double burn = std::clamp(std::trunc(D - (1.0 - f) * (255.0 - D)), 0.0, 255.0);
            const double dodge = std::min(255.0, std::floor(256.0 * D / (256.0 - S)));
            return (int) std::trunc(burn * (1.0 - f) + dodge * f);
        }
    }
    return -1;
}

struct Pixel
{
    int a, r, g, b;
};

// The frame, from its description: where the picture below is transparent the layer's own colour
// shows; a partly transparent layer is laid over by straight-alpha "over" with the remaining
// alpha rounded to the nearest integer.
Pixel referencePixel(int mode, Pixel s, Pixel d)
{
    if (mode == 10 || s.a == 0)
        return d;
    const int sc[3] = { s.r, s.g, s.b };
    const int dc[3] = { d.r, d.g, d.b };
    int c[3];
    for (int i = 0; i < 3; ++i)
    {
        const int blended = reference(mode, sc[i], dc[i]);
        if (mode == 0 || mode == 4)
            c[i] = blended;
        else
        {
            const double t = 1.0 - d.a / 255.0;
            c[i] = std::clamp((int) std::lround(sc[i] * t + blended * (1.0 - t)), 0, 255);
        }
    }
    if (s.a == 255)
        return { 255, c[0], c[1], c[2] };
    const int a2 = (int) std::lround((255.0 - s.a) * d.a / 255.0);
    const int outA = a2 + s.a;
    int out[3];
    for (int i = 0; i < 3; ++i)
        out[i] = (int) std::floor((double) (c[i] * s.a + a2 * dc[i]) / outA);
    return { outA, out[0], out[1], out[2] };
}

Pixel blendThroughImages(int mode, Pixel s, Pixel d)
{
    SxImageRgbaBytes source(1, 1), destination(1, 1);
    const uint8_t sp[4] = { (uint8_t) s.a, (uint8_t) s.r, (uint8_t) s.g, (uint8_t) s.b };
    const uint8_t dp[4] = { (uint8_t) d.a, (uint8_t) d.r, (uint8_t) d.g, (uint8_t) d.b };
    std::copy(sp, sp + 4, source.pixels);
    std::copy(dp, dp + 4, destination.pixels);
    LayerBlends::blend(mode, source, destination, destination.bounds());
    const uint8_t* p = destination.pixels;
    return { p[0], p[1], p[2], p[3] };
}
} // namespace

TEST(LayerBlends, EveryChannelBlendMatchesItsDefinitionForAllBytePairs)
{
    for (int mode = 0; mode < LayerBlends::modeCount; ++mode)
    {
        int mismatches = 0;
        for (int s = 0; s < 256; ++s)
            for (int d = 0; d < 256; ++d)
                if (LayerBlends::blendChannel(mode, s, d) != reference(mode, s, d) && mismatches++ < 3)
                    ADD_FAILURE() << LayerBlends::getName(mode) << " s=" << s << " d=" << d << " got "
                                  << LayerBlends::blendChannel(mode, s, d) << " want " << reference(mode, s, d);
        EXPECT_EQ(mismatches, 0) << LayerBlends::getName(mode);
    }
}

TEST(LayerBlends, AlphaFrameMatchesReferenceForRandomPixels)
{
    // Alpha edges are drawn as often as random values, so that opaque layers on opaque pictures,
    // transparent layers and transparent pictures all come up many times for every mode.
    std::mt19937 random(11); // fixed random seed
    const int edges[] = { 0, 1, 128, 254, 255 };
    for (int mode = 0; mode < LayerBlends::modeCount; ++mode)
        for (int i = 0; i < 2000; ++i)
        {
            auto alpha = [&] { return i % 2 == 0 ? edges[random() % 5] : (int) (random() % 256); };
            const Pixel s { alpha(), (int) (random() % 256), (int) (random() % 256), (int) (random() % 256) };
            const Pixel d { alpha(), (int) (random() % 256), (int) (random() % 256), (int) (random() % 256) };
            const Pixel got = blendThroughImages(mode, s, d), want = referencePixel(mode, s, d);
            ASSERT_EQ(std::tie(got.a, got.r, got.g, got.b), std::tie(want.a, want.r, want.g, want.b))
                << LayerBlends::getName(mode) << " sA=" << s.a << " dA=" << d.a;
        }
}

TEST(LayerBlends, ModesOutsideTheTableLeaveEveryByteOfThePicture)
{
    // The gap in the table (vivid light) is held to that by the reference above.
    SxImageRgbaBytes source(16, 16), destination(16, 16);
    std::mt19937 random(3); // fixed random seed
    for (size_t i = 0; i < source.byteCount(); ++i)
    {
        source.pixels[i] = (uint8_t) random();
        destination.pixels[i] = (uint8_t) random();
    }
    SxImageRgbaBytes before(destination);
    LayerBlends::blend(12, source, destination, destination.bounds());
    LayerBlends::blend(-1, source, destination, destination.bounds());
    EXPECT_TRUE(std::equal(before.pixels, before.pixels + before.byteCount(), destination.pixels));
    EXPECT_EQ(LayerBlends::getName(12), "");
}

TEST(LayerBlends, BlendStaysInsideItsRectangle)
{
    SxImageRgbaBytes source(8, 8), destination(8, 8);
    std::fill(source.pixels, source.pixels + source.byteCount(), 255);
    LayerBlends::blend(LayerBlends::normal, source, destination, { 2, 3, 4, 2 });
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
        {
            const bool inside = x >= 2 && x < 6 && y >= 3 && y < 5;
            EXPECT_EQ(destination.pixelAt(x, y)[0], inside ? 255 : 0) << x << "," << y;
        }
}
