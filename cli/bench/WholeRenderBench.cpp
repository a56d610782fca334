#include "cli/bench/WholeRenderBench.h"
#include "cli/render/RenderJob.h"
#include "document/LayerManager.h"
#include "effect/ColourOperations.h"
#include "effect/TensorOperations.h"
#include "effect/TornvaleEffect.h"
#include "imaging/ImageRGBAPixelData.h"

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

// Processor time of the whole process, the renderer's threads included: on a machine that others
// load, it moves much less than the wall time, so it is what a change's saving is judged by.
double processorSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return (double) usage.ru_utime.tv_sec + usage.ru_utime.tv_usec * 1e-6 + (double) usage.ru_stime.tv_sec + usage.ru_stime.tv_usec * 1e-6;
}

double lastProcessorSeconds = 0.0;

template <typename Work>
double seconds(Work&& work)
{
    const auto start = juce::Time::getMillisecondCounterHiRes();
    const double processorStart = processorSeconds();
    work();
    lastProcessorSeconds = processorSeconds() - processorStart;
    return (juce::Time::getMillisecondCounterHiRes() - start) / 1000.0;
}

// The very render of tornvale-render (and of the application's "-r"): the same stack, the same
// scale from its picture, the same settings from the parameter table.
SxRef<SxImageRgbaBytes> renderEffect(const SxImageRgbaBytes& source, bool highQuality, int strokeStyle = 0)
{
    RenderOptions options;
    options.settings.emplace_back("strokeStyle", juce::String(strokeStyle));
    return RenderJob(options).renderPicture(source, nullptr, nullptr, false, highQuality);
}

void row(const char* what, int width, int height, double secondsTaken)
{
    std::printf("%-44s %5d x %-5d %9.2f s %9.0f MB %9.2f s cpu\n", what, width, height, secondsTaken, peakMegabytes(), lastProcessorSeconds);
    std::fflush(stdout);
}
SxRef<SxImageRgbaBytes> loadPng(const char* path)
{
    const juce::File file = juce::File::getCurrentWorkingDirectory().getChildFile(path);
    return SxRef<SxImageRgbaBytes>::adopt(SxImageConversion::fromJuceImage(juce::ImageFileFormat::loadFrom(file)));
}
} // namespace

int renderToFile(const SxImageRgbaBytes& photo, int width, int height, int strokeStyle, const char* outputPath, int repeats)
{
    SxImageRgbaBytes input(photo);
    if (width != input.width || height != input.height)
        input.resize(width, height, 3);
    SxRef<SxImageRgbaBytes> result;
    const double taken = seconds([&] { result = renderEffect(input, true, strokeStyle); });
    const double firstProcessor = lastProcessorSeconds;
    double fastest = 0.0, fastestProcessor = 0.0;
    for (int i = 1; i < repeats; ++i)
    {
        const double again = seconds([&] { result = renderEffect(input, true, strokeStyle); });
        fastest = i == 1 ? again : std::min(fastest, again);
        fastestProcessor = i == 1 ? lastProcessorSeconds : std::min(fastestProcessor, lastProcessorSeconds);
    }
    const juce::File file = juce::File::getCurrentWorkingDirectory().getChildFile(outputPath);
    file.deleteFile();
    juce::FileOutputStream stream(file);
    juce::PNGImageFormat png;
    if (result.get() == nullptr || !stream.openedOk() || !png.writeImageToStream(SxImageConversion::toJuceImage(*result), stream))
    {
        std::fprintf(stderr, "cannot write %s\n", outputPath);
        return 1;
    }
    lastProcessorSeconds = firstProcessor;
    row(outputPath, width, height, taken);
    lastProcessorSeconds = fastestProcessor;
    if (repeats > 1)
        row("  fastest of the later renders", width, height, fastest);
    return 0;
}

int compareFiles(const char* first, const char* second)
{
    const auto a = loadPng(first), b = loadPng(second);
    if (a.get() == nullptr || b.get() == nullptr || a->width != b->width || a->height != b->height || a->width <= 0)
    {
        std::fprintf(stderr, "cannot compare %s and %s\n", first, second);
        return 1;
    }
    std::vector<long> histogram(256, 0);
    double signedSum = 0.0;
    for (int y = 0; y < a->height; ++y)
        for (int x = 0; x < a->width; ++x)
            for (int c = 1; c < 4; ++c) // the colour bytes; alpha is copied through unchanged
            {
                const int d = a->pixelAt(x, y)[c] - b->pixelAt(x, y)[c];
                ++histogram[(size_t) std::abs(d)];
                signedSum += d;
            }
    const long total = (long) a->width * a->height * 3;
    long cumulative = 0, p99 = -1, p999 = -1, worst = 0;
    double sum = 0;
    for (int d = 0; d < 256; ++d)
    {
        if (histogram[(size_t) d] > 0)
            worst = d;
        cumulative += histogram[(size_t) d];
        sum += (double) d * histogram[(size_t) d];
        if (p99 < 0 && cumulative * 100 >= total * 99)
            p99 = d;
        if (p999 < 0 && cumulative * 1000 >= total * 999)
            p999 = d;
    }
    // The signed mean tells a shift of the whole picture (lighter or darker) from scattered noise.
    std::printf("%s vs %s: max %ld, 99.9th %ld, 99th %ld, mean %.3f (signed %+.3f) of 255\n", first, second, worst, p999, p99,
                sum / (double) total, signedSum / (double) total);
    return 0;
}

int run(const SxImageRgbaBytes& photo)
{
    SxImageRgbaBytes preview(photo);
    preview.resize(1500, 1000, 3);
    // The stages as the effect runs them at defaults, with the lengths of the preview's scale.
    const float s = LayerManager::renderScaleFor(preview.width, preview.height);
    const auto chain = TornvaleEffect::chainSettings(EffectParameters(), s);

    std::printf("%-44s %13s %11s %12s %13s\n", "stage (default settings)", "size", "wall", "peak memory", "processor");

    SxImageRgbaBytes tensors(preview);
    row("tensor field", preview.width, preview.height,
        seconds([&] { EffectOperations::computeTensorField(tensors, 1.0f, chain.tensorBlur, false); }));

    SxImageRgbaBytes pass(preview);
    row("one stroke pass", preview.width, preview.height, seconds([&] {
            EffectOperations::renderStrokePass(pass, preview, tensors, chain.smoothLength, chain.blurLength, TornvaleEffect::strokeAngle(1),
                                               chain.sharpenRadius, chain.sharpenAmount, chain.lightRadius, chain.lightAmount, s);
        }));

    // The twelve copies as the effect draws them: one stack, merged on the GPU.
    std::vector<float> angles;
    for (int i = 1; i <= 12; ++i)
        angles.push_back(TornvaleEffect::strokeAngle(i));
    SxImageRgbaBytes stack(preview);
    row("stroke stack, 12 copies", preview.width, preview.height, seconds([&] {
            EffectOperations::renderStrokeStack(stack, preview, tensors, chain.smoothLength, chain.blurLength, angles, chain.sharpenRadius,
                                                chain.sharpenAmount, chain.lightRadius, chain.lightAmount, s);
        }));

    row("preview render (interactive)", preview.width, preview.height, seconds([&] { renderEffect(preview, false); }));
    row("preview render again (programs compiled)", preview.width, preview.height, seconds([&] { renderEffect(preview, false); }));

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
