// tornvale-bench: times each filter on a 1500 × 1000 photo and prints milliseconds and texel
// fetches per second, with the GL renderer. Not a test: numbers vary with the machine.
//
// Usage: tornvale-bench [--whole | --brush] [photo] [repeats]   (default samples/coffee.png, 5 repeats; the fastest
// run counts, since other work on the machine only ever slows a run down)
//
// How fetches are counted: one texture2D call in a fragment program is one fetch, whether
// linear filtering blends one texel or four, for every output pixel of every pass. A two-pass
// filter counts both passes, repeated passes count again, groups add up their members. Filters
// whose loop ends early (the flow smoothing) are counted at their loop bound, so their rate is
// an upper bound. Times are for TiledRunner::run, which uploads the image, draws, waits for the
// GL to finish and reads back; the "net" columns subtract the same run of a pass-through copy
// (one fetch), which is what upload and readback cost.

#include "cli/bench/BrushBench.h"
#include "cli/bench/WholeRenderBench.h"
#include "gpu/FilterChain.h"
#include "gpu/GLHeaders.h"
#include "gpu/GPUImageBox12BlurFilter.h"
#include "gpu/GPUImageBox4BlurFilter.h"
#include "gpu/GPUImageBox8BlurFilter.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/GPUImageColorConversion.h"
#include "gpu/GPUImageFractionalBoxBlurFilter.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/GPUImageLightenMode.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/GPUImageSaturateContrastGamma.h"
#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageUnsharpMaskFilter.h"
#include "gpu/ShaderStore.h"
#include "gpu/TiledRunner.h"
#include "imaging/ImageRGBAPixelData.h"

#include "gpu/GPUImageAnisotropicSmooth.h"
#include "gpu/GPUImageBlurTensors.h"
#include "gpu/GPUImageGetTensors.h"
#include "gpu/GPUImageGetTensorsAngle.h"
#include "gpu/GPUImageMotionBlur.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace
{
/** One row: how to build the filter in a chain, and its fetches per output pixel. */
struct Row
{
    const char* family;
    juce::String name;
    double fetches;
    std::function<GPUImageOutput*(FilterChain&)> make;
};

// Fetches of the members the Gaussian chooses, from its table (passes per member included).
double gaussianFetches(float argument, int passes)
{
    const float r = argument * 0.5f;
    switch (GPUImageGaussianBlur::choiceFor(argument))
    {
        case GPUImageGaussianBlur::Choice::fractionalBox: return 2.0 * 3 * passes;
        case GPUImageGaussianBlur::Choice::generatedBox: return 2.0 * GPUImageBoxBlur::fetchesPerPass(r) * passes;
        case GPUImageGaussianBlur::Choice::twoBox8: return 2.0 * 2.0 * 9 * passes;
        case GPUImageGaussianBlur::Choice::box8ThenBox12: return 2.0 * 9 * 4 + 2.0 * 13 * 3;
    }
    return 0.0;
}

template <typename Box>
std::function<GPUImageOutput*(FilterChain&)> box(float spread)
{
    return [spread](FilterChain& chain) {
        auto* f = chain.make<Box>();
        f->setBlurSpread(spread);
        f->initFilter(false);
        return (GPUImageOutput*) f;
    };
}

std::function<GPUImageOutput*(FilterChain&)> gaussian(float argument)
{
    return [argument](FilterChain& chain) {
        auto* f = chain.make<GPUImageGaussianBlur>();
        f->init(argument, 2);
        return (GPUImageOutput*) f;
    };
}

template <typename Conversion>
GPUImageOutput* conversion(FilterChain& chain)
{
    auto* f = chain.make<Conversion>();
    f->init();
    return f;
}

std::vector<Row> rows(const SxImageRgbaBytes& photo)
{
    std::vector<Row> table = {
        { "copy", "pass-through (baseline)", 1, [](FilterChain& c) { auto* f = c.make<GPUImageFilter>(); f->initWithFragmentShader(ShaderStore::text("passthrough.frag")); return (GPUImageOutput*) f; } },
        { "blur", "FractionalBox size 1.2", 6, [](FilterChain& c) { auto* f = c.make<GPUImageFractionalBoxBlurFilter>(); f->setBlurSize(1.2f); f->initFilter(false); return (GPUImageOutput*) f; } },
        { "blur", "BoxBlur radius 5", 2.0 * GPUImageBoxBlur::fetchesPerPass(5), [](FilterChain& c) { auto* f = c.make<GPUImageBoxBlur>(5.0f); f->initFilter(false); return (GPUImageOutput*) f; } },
        { "blur", "BoxBlur radius 12", 2.0 * GPUImageBoxBlur::fetchesPerPass(12), [](FilterChain& c) { auto* f = c.make<GPUImageBoxBlur>(12.0f); f->initFilter(false); return (GPUImageOutput*) f; } },
        { "blur", "BoxBlur radius 12 alpha", 2.0 * GPUImageBoxBlur::fetchesPerPass(12, true), [](FilterChain& c) { auto* f = c.make<GPUImageBoxBlur>(12.0f); f->initFilter(true); return (GPUImageOutput*) f; } },
        { "blur", "Box4 spread 1", 10, box<GPUImageBox4BlurFilter>(1.0f) },
        { "blur", "Box8 spread 1", 18, box<GPUImageBox8BlurFilter>(1.0f) },
        { "blur", "Box12 spread 1", 26, box<GPUImageBox12BlurFilter>(1.0f) },
        { "blur", "Gaussian 3, 2 passes", gaussianFetches(3, 2), gaussian(3) },
        { "blur", "Gaussian 15, 2 passes", gaussianFetches(15, 2), gaussian(15) },
        { "blur", "Gaussian 45, 2 passes", gaussianFetches(45, 2), gaussian(45) },
        { "blur", "Gaussian 200, 2 passes", gaussianFetches(200, 2), gaussian(200) },
        { "sharpen", "UnsharpMask 15 x 1.5", gaussianFetches(15, 2) + 2, [](FilterChain& c) { auto* f = c.make<GPUImageUnsharpMaskFilter>(); f->init(15.0f, 1.5f); return (GPUImageOutput*) f; } },
        { "sharpen", "UnsharpMaskChannel 45", gaussianFetches(45, 2) + 2, [](FilterChain& c) { auto* f = c.make<GPUImageUnsharpMaskChannelFilter>(); f->init(45.0f, 2.7f, 1.0f, 1.0f); return (GPUImageOutput*) f; } },
        { "colour", "ColorConversion", 1, conversion<GPUImageColorConversion> },
        { "colour", "RGBToLab", 1, conversion<GPUImageRGBToLabColorConversion> },
        { "colour", "LabToRGB", 1, conversion<GPUImageLabToRGBColorConversion> },
        { "colour", "SaturateContrastGamma", 1, [](FilterChain& c) { auto* f = c.make<GPUImageSaturateContrastGamma>(); f->init(); f->setSaturate(2.0f); f->setContrast(0.5f); f->setGamma(0.2f); return (GPUImageOutput*) f; } },
        { "composite", "LightenMode (overlay uploaded per draw)", 2, [&photo](FilterChain& c) { auto* f = c.make<GPUImageLightenMode>(); f->init(); f->setSourceImage(&photo); return (GPUImageOutput*) f; } },
    };
    // Counts from the programs as written: the gradient takes 4 fetches, the tensor blur 7 per
    // pass, the angle 1, the smoothing 1 field + 1 picture fetch per step (bound 20 steps, plus the
    // first field fetch), the line blur the fetches of its box's levels per pass (segments + 1
    // taps, segments = ceil(length / 2), long boxes split in two levels).
    static const SxImageRgbaBytes* field = nullptr;
    static SxImageRgbaBytes fieldImage(1000, 667);
    field = &fieldImage;
    const std::vector<Row> tensors = {
        { "tensor", "GetTensors", 4, [](FilterChain& c) { auto* f = c.make<GPUImageGetTensors>(); f->init(); return (GPUImageOutput*) f; } },
        { "tensor", "BlurTensors spread 2", 14, [](FilterChain& c) { auto* f = c.make<GPUImageBlurTensors>(); f->setBlurSpread(2.0f); f->init(); return (GPUImageOutput*) f; } },
        { "tensor", "GetTensorsAngle", 1, [](FilterChain& c) { auto* f = c.make<GPUImageGetTensorsAngle>(); f->init(); return (GPUImageOutput*) f; } },
        { "tensor", "AnisotropicSmooth length 20 (bound)", 1 + 2 * 20, [](FilterChain& c) { auto* f = c.make<GPUImageAnisotropicSmooth>(); f->init(field, 20.0f, 1.0); return (GPUImageOutput*) f; } },
        { "tensor", "MotionBlur length 40", 2.0 * GPUImageMotionBlur::levelsFor(40.0f).fetches(), [](FilterChain& c) { auto* f = c.make<GPUImageMotionBlur>(); f->initFilter(40.0f, 0); f->setAngle(0.5f); return (GPUImageOutput*) f; } },
    };
    table.insert(table.end(), tensors.begin(), tensors.end());
    return table;
}

double timeRun(const SxImageRgbaBytes& photo, const Row& row, int repeats)
{
    std::vector<double> times;
    for (int i = 0; i <= repeats; ++i) // the first run compiles and warms up; it is not counted
    {
        SxImageRgbaBytes image(photo);
        FilterChain chain;
        auto* node = row.make(chain);
        const auto start = juce::Time::getMillisecondCounterHiRes();
        TiledRunner::run(image, *node, *node, 0.0f);
        const auto elapsed = juce::Time::getMillisecondCounterHiRes() - start;
        if (i > 0)
            times.push_back(elapsed);
    }
    return *std::min_element(times.begin(), times.end());
}
} // namespace

int main(int argc, char** argv)
{
    juce::ScopedJuceInitialiser_GUI juce;
    // "--render photo width height style out.png" and "--compare a.png b.png": before-and-after
    // pictures of a change to the effect, and how far they differ. An optional last argument renders
    // that many times in one process and reports the first (with program compiles) and the fastest.
    if ((argc == 7 || argc == 8) && std::string(argv[1]) == "--render")
    {
        auto* loaded = SxImageConversion::fromJuceImage(juce::ImageFileFormat::loadFrom(juce::File::getCurrentWorkingDirectory().getChildFile(argv[2])));
        if (loaded == nullptr || loaded->width <= 0)
            return 1;
        const SxRef<SxImageRgbaBytes> photo = SxRef<SxImageRgbaBytes>::adopt(loaded);
        return WholeRenderBench::renderToFile(*photo, atoi(argv[3]), atoi(argv[4]), atoi(argv[5]), argv[6],
                                             argc == 8 ? std::max(1, atoi(argv[7])) : 1);
    }
    if (argc == 4 && std::string(argv[1]) == "--compare")
        return WholeRenderBench::compareFiles(argv[2], argv[3]);
    // "--whole" times whole renders (preview and 6000 x 4000) instead of single filters, and
    // "--brush" the way of a brush dab to the view.
    bool whole = false, brush = false;
    for (int i = 1; i < argc; ++i)
        if (std::string(argv[i]) == "--whole" || std::string(argv[i]) == "--brush")
        {
            whole = std::string(argv[i]) == "--whole";
            brush = !whole;
            for (int j = i; j + 1 < argc; ++j)
                argv[j] = argv[j + 1];
            --argc;
            break;
        }
    const juce::File file = argc > 1 ? juce::File::getCurrentWorkingDirectory().getChildFile(argv[1])
                                     : juce::File(TORNVALE_SOURCE_DIR).getChildFile("samples/coffee.png");
    const int repeats = argc > 2 ? std::max(1, atoi(argv[2])) : 5;

    auto* loaded = SxImageConversion::fromJuceImage(juce::ImageFileFormat::loadFrom(file));
    if (loaded == nullptr || loaded->width <= 0)
    {
        std::fprintf(stderr, "cannot read %s\n", file.getFullPathName().toRawUTF8());
        return 1;
    }
    SxImageRgbaBytes photo(*loaded);
    loaded->release();
    if (whole)
    {
        std::printf("renderer: %s\n\n", GPUImageOpenGLESContext::sharedImageProcessingContext().getRendererString().toRawUTF8());
        return WholeRenderBench::run(photo);
    }
    if (brush)
    {
        std::printf("renderer: %s\n\n", GPUImageOpenGLESContext::sharedImageProcessingContext().getRendererString().toRawUTF8());
        return BrushBench::run(photo);
    }
    photo.resize(1500, 1000, 1);

    ScopedGLContext scoped;
    if (!scoped.isValid())
    {
        std::fprintf(stderr, "no GL context\n");
        return 1;
    }
    std::printf("renderer: %s\n", (const char*) glGetString(GL_RENDERER));
    std::printf("image: %d x %d, fastest of %d runs\n\n", photo.width, photo.height, repeats);
    std::printf("%-10s %-40s %8s %9s %9s %12s %12s\n", "family", "filter", "fetch/px", "ms", "net ms", "Mfetch/s", "net Mfetch/s");

    const double pixels = (double) photo.width * photo.height;
    const auto table = rows(photo);
    double baseline = 0.0;
    for (const auto& row : table)
    {
        const double ms = timeRun(photo, row, repeats);
        if (baseline == 0.0)
            baseline = ms;
        // Below a few milliseconds the difference to the baseline is noise: no net rate then.
        const double net = ms - baseline;
        const bool hasNet = &row != &table.front() && net > 5.0 && row.fetches > 1;
        std::printf("%-10s %-40s %8.0f %9.1f %9s %12.0f %12s\n", row.family, row.name.toRawUTF8(), row.fetches, ms,
                    juce::String(net, 1).toRawUTF8(), pixels * row.fetches / ms / 1000.0,
                    hasNet ? juce::String((int) std::lround(pixels * (row.fetches - 1) / net / 1000.0)).toRawUTF8() : "-");
        std::fflush(stdout);
    }
    return 0;
}
