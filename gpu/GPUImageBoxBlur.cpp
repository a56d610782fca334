#include "gpu/GPUImageBoxBlur.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

#include <cmath>

namespace
{
juce::String number(double value)
{
    return juce::String(value, 6);
}

int tapCount(float radius)
{
    const double c = std::min((double) radius, (double) GPUImageBoxBlur::maximumRadius);
    return c > 0.0 ? (int) std::ceil(c * 0.5) : 0;
}

double lastTapWeight(float radius)
{
    const double c = std::min((double) radius, (double) GPUImageBoxBlur::maximumRadius);
    return 1.0 - ((double) tapCount(radius) - c * 0.5);
}
} // namespace

GPUImageBoxBlur::GPUImageBoxBlur(float radius) : blurRadius(radius)
{
    useProgramCache = true;
}

juce::String GPUImageBoxBlur::vertexText(float spread)
{
    const auto s = number(onSubtexelGridForHalfSteps(spread));
    return "attribute vec4 position; attribute vec2 inputTextureCoordinate; uniform highp float texelWidthOffset;"
           "uniform highp float texelHeightOffset; varying highp vec2 centerTextureCoordinate; varying highp vec2 texelOffset;"
           " void main(){ gl_Position = position; highp vec2 offset = vec2(texelWidthOffset*" + s + ", texelHeightOffset*" + s
           + "); texelOffset = offset; centerTextureCoordinate = inputTextureCoordinate;}";
}

int GPUImageBoxBlur::fetchesPerPass(float radius, bool preserveAlpha)
{
    // The alpha-weighted form fetches each texel of a pair separately.
    return 1 + (preserveAlpha ? 4 : 2) * tapCount(radius);
}

juce::String GPUImageBoxBlur::fragmentText(float radius, bool preserveAlpha)
{
    const int taps = tapCount(radius);
    const double f = lastTapWeight(radius);
    juce::String text;
    text << "precision highp float; varying highp vec2 centerTextureCoordinate; varying highp vec2 texelOffset;"
            " uniform sampler2D inputImageTexture;";
    if (preserveAlpha)
        text << ShaderStore::swizzlePrefix;
    text << " void main(){";

    // A pair whose weight is 1 is written without a factor, so a fraction of exactly 1 yields the
    // text of a full tap.
    auto weightFor = [&](int i) { return i == taps - 1 && f != 1.0 ? f : 1.0; };

    if (!preserveAlpha)
    {
        text << " highp vec4 fragmentColor = texture2D(inputImageTexture, centerTextureCoordinate) * 0.5;";
        double sum = 0.5;
        for (int i = 0; i < taps; ++i)
        {
            const double w = weightFor(i);
            const auto offset = number(2.0 * i + 1.5);
            const auto factor = w == 1.0 ? juce::String() : " * " + number(w);
            text << " fragmentColor += (texture2D(inputImageTexture, centerTextureCoordinate + texelOffset * " << offset
                 << ") + texture2D(inputImageTexture, centerTextureCoordinate - texelOffset * " << offset << "))" << factor << ";";
            sum += 2.0 * w;
        }
        text << " gl_FragColor = fragmentColor/" << number(sum) << ";}";
        return text;
    }

    // Straight alpha: a texel's colour counts by its alpha, the centre keeps its own alpha. Each
    // texel is fetched at its centre: a linear fetch across an opaque and a transparent texel would
    // blend the hidden colour in before alpha could weigh it. Weights are those of the plain form
    // doubled (every texel 1, the last pair f), which leaves the normalised box the same.
    text << " highp vec4 centerTexel = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate));"
            " highp vec4 fragmentColor = vec4(centerTexel.rgb * centerTexel.a, 0.0);"
            " highp float tot = centerTexel.a; highp vec4 t;";
    for (int i = 0; i < taps; ++i)
    {
        const auto w = number(weightFor(i));
        for (int k : { 2 * i + 1, 2 * i + 2 })
            for (const char* sign : { "+", "-" })
                text << " t = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate " << sign << " texelOffset * "
                     << number(k) << ")); fragmentColor.rgb += t.rgb * t.a * " << w << "; tot += t.a * " << w << ";";
    }
    text << " if (tot > 0.0) fragmentColor /= tot; else fragmentColor = centerTexel;"
            " fragmentColor.a = centerTexel.a; gl_FragColor = swizzleOut(fragmentColor);}";
    return text;
}

bool GPUImageBoxBlur::initFilter(bool alpha)
{
    preserveAlpha = alpha;
    const auto vertex = vertexText(blurSpread);
    const auto fragment = fragmentText(blurRadius, preserveAlpha);
    return initWithShaders(vertex, fragment, vertex, fragment);
}

GLProgram* GPUImageBoxBlur::programFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(BoxBlurPasses::programKey(getClassName(), vertexSource, fragmentSource), vertexSource, fragmentSource);
}

GLProgram* GPUImageBoxBlur::secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(BoxBlurPasses::programKey("secondProgram" + getClassName(), vertexSource, fragmentSource), vertexSource,
                         fragmentSource);
}

void GPUImageBoxBlur::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
    drawRepeatedPairs(vertices, passes);
}

//==============================================================================
namespace BoxBlurPasses
{
juce::String programKey(const juce::String& className, const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return className + ":" + juce::String::toHexString(vertexSource.hashCode64()) + ":"
           + juce::String::toHexString(fragmentSource.hashCode64());
}
} // namespace BoxBlurPasses
