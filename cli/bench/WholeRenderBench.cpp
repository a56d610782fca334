#include "cli/bench/WholeRenderBench.h"
#include "effect/ColourOperations.h"
#include "effect/TensorOperations.h"
#include "effect/TornvaleEffect.h"

#include <juce_core/juce_core.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <vector>

namespace WholeRenderBench
{
namespace
{
double peakMegabytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0; // kilobytes on Linux
}

template <typename Work>
double seconds(Work&& work)
{
    const auto start = juce::Time::getMillisecondCounterHiRes();
    work();
    return (juce::Time::getMillisecondCounterHiRes() - start) / 1000.0;
}

SxRef<SxImageRgbaBytes> renderEffect(const SxImageRgbaBytes& source, bool highQuality)
{
    TornvaleEffect effect(TornvaleEffect::DefaultsOnly {});
    SxImageRgbaBytes input(source);
    LayerRenderParameters parameters;
    parameters.image = &input;
    parameters.scale = std::max(input.width, input.height) / 1024.0f;
    parameters.highQuality = highQuality;
    return SxRef<SxImageRgbaBytes>::adopt(effect.getRenderedImage(parameters)->clone());
}

void row(const char* what, int width, int height, double secondsTaken)
{
    std::printf("%-44s %5d x %-5d %9.2f s %9.0f MB\n", what, width, height, secondsTaken, peakMegabytes());
    std::fflush(stdout);
}
} // namespace

int run(const SxImageRgbaBytes& photo)
{
    SxImageRgbaBytes preview(photo);
    preview.resize(1500, 1000, 3);
    const float s = 1500 / 1024.0f;
    TornvaleEffect defaults(TornvaleEffect::DefaultsOnly {});

    std::printf("%-44s %13s %11s %12s\n", "stage (default settings)", "size", "wall", "peak memory");

    SxImageRgbaBytes tensors(preview);
    row("tensor field", preview.width, preview.height,
        seconds([&] { EffectOperations::computeTensorField(tensors, 1.0f, defaults.smoothing * 30.0f, false); }));

    SxImageRgbaBytes pass(preview);
    row("one stroke pass", preview.width, preview.height, seconds([&] {
            EffectOperations::renderStrokePass(pass, preview, tensors, (defaults.smoothing * 0.9f + 0.1f) * 10.0f,
                                               (defaults.strokeLength * 0.95f + 0.05f) * 25.0f * s, TornvaleEffect::strokeAngle(1),
                                               s * 1.5f, 1.33f, s * 7.5f, defaults.brightenLight * 1.5f, s);
        }));

    row("preview render (interactive)", preview.width, preview.height, seconds([&] { renderEffect(preview, false); }));

    SxImageRgbaBytes full(photo);
    full.resize(6000, 4000, 1);
    SxRef<SxImageRgbaBytes> whole;
    row("full-size render", full.width, full.height, seconds([&] { whole = renderEffect(full, true); }));

    // The same render cut into many more tiles must look the same: differences from rounding are
    // scattered, a seam would gather along the tile edges.
    setenv("TORNVALE_MAX_TILE", "700", 1);
    SxRef<SxImageRgbaBytes> tiled;
    row("full-size render, 700-pixel tiles", full.width, full.height, seconds([&] { tiled = renderEffect(full, true); }));
    unsetenv("TORNVALE_MAX_TILE");

    std::vector<int> histogram(256, 0);
    double nearEdges = 0, elsewhere = 0;
    long nearCount = 0, elseCount = 0;
    for (int y = 0; y < full.height; ++y)
        for (int x = 0; x < full.width; ++x)
        {
            int d = 0;
            for (int c = 0; c < 4; ++c)
                d = std::max(d, std::abs(whole->pixelAt(x, y)[c] - tiled->pixelAt(x, y)[c]));
            ++histogram[(size_t) d];
            const bool nearEdge = std::abs(x % 700 - 350) >= 347 || std::abs(y % 700 - 350) >= 347;
            (nearEdge ? nearEdges : elsewhere) += d;
            ++(nearEdge ? nearCount : elseCount);
        }
    long cumulative = 0, p99 = 0, p999 = 0, worst = 0;
    const long total = (long) full.width * full.height;
    for (int d = 0; d < 256; ++d)
    {
        if (histogram[(size_t) d] > 0)
            worst = d;
        cumulative += histogram[(size_t) d];
        if (p99 == 0 && cumulative >= total * 99 / 100)
            p99 = d == 0 ? -1 : d;
        if (p999 == 0 && cumulative >= total * 999 / 1000)
            p999 = d == 0 ? -1 : d;
    }
    std::printf("\nseam check (whole vs 700-pixel tiles): 99th percentile %ld, 99.9th %ld, max %ld of 255; "
                "mean difference near tile edges %.3f, elsewhere %.3f\n",
                std::max(0L, p99), std::max(0L, p999), worst, nearEdges / nearCount, elsewhere / elseCount);
    return 0;
}
} // namespace WholeRenderBench
