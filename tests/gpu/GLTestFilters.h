#pragma once
// Small filters of the tests' own, with their programs inline, to drive the filter core without
// depending on the effect's filter families.

#include "gpu/GPUImageFilter.h"
#include "gpu/GPUImageTextureSamplingFilter.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/GPUImageTwoPassFilter.h"
#include "gpu/ShaderStore.h"

namespace TestFilters
{
inline GPUImageFilter* identity()
{
    auto* f = new GPUImageFilter();
    f->useProgramCache = true;
    f->initWithFragmentShader(ShaderStore::text("passthrough.frag"));
    return f;
}

inline const char* invertText()
{
    return "varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture;\n"
           "void main() { gl_FragColor = vec4(1.0) - texture2D(inputImageTexture, textureCoordinate); }";
}

struct InvertFilter : GPUImageFilter
{
    InvertFilter() { useProgramCache = true; initWithFragmentShader(invertText()); }
};

/** A (2r+1) × (2r+1) box average: taps reach r pixels, so padding r hides tile edges. */
struct BoxBlurFilter : GPUImageTextureSamplingFilter
{
    explicit BoxBlurFilter(int radius)
    {
        useProgramCache = true;
        compareProgramSource = true;
        const auto r = juce::String(radius);
        initWithFragmentShader(
            "varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture;\n"
            "uniform highp float texelWidth; uniform highp float texelHeight;\n"
            "void main() { highp vec4 sum = vec4(0.0);\n"
            " for (int y = -" + r + "; y <= " + r + "; ++y)\n"
            "  for (int x = -" + r + "; x <= " + r + "; ++x)\n"
            "   sum += texture2D(inputImageTexture, textureCoordinate + vec2(float(x) * texelWidth, float(y) * texelHeight));\n"
            " gl_FragColor = sum / float((2 * " + r + " + 1) * (2 * " + r + " + 1)); }");
    }
};

/** Mean of its two inputs. */
struct AverageFilter : GPUImageTwoInputFilter
{
    AverageFilter()
    {
        useProgramCache = true;
        initWithFragmentShader("varying highp vec2 textureCoordinate; varying highp vec2 textureCoordinate2;\n"
                               "uniform sampler2D inputImageTexture; uniform sampler2D inputImageTexture2;\n"
                               "void main() { gl_FragColor = 0.5 * (texture2D(inputImageTexture, textureCoordinate)"
                               " + texture2D(inputImageTexture2, textureCoordinate2)); }");
    }
};

/** Inverts in each pass: two passes give the input back, and only the second texture holds it. */
struct DoubleInvertFilter : GPUImageTwoPassFilter
{
    DoubleInvertFilter()
    {
        useProgramCache = true;
        const auto vertex = ShaderStore::text("passthrough.vert");
        initWithShaders(vertex, invertText(), vertex, invertText());
    }
};
} // namespace TestFilters
