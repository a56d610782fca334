#include "gpu/GPUImageMotionBlur.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

#include <algorithm>
#include <cmath>

namespace
{
// The length as the program text carries it, so that the tap count worked out here is the one
// the program's constants give.
juce::String lengthText(float length)
{
    return juce::String((double) std::max(0.0f, length), 2);
}
} // namespace

GPUImageMotionBlur::Levels GPUImageMotionBlur::levelsFor(float length, int twoLevelFromTaps)
{
    const float span = 0.5f * lengthText(length).getFloatValue();
    const int gaps = (int) std::ceil(std::max(span, 1.0f));
    const int taps = gaps + 1;
    Levels best { gaps, taps, 1 };
    if (taps < twoLevelFromTaps)
        return best;
    // A prime count has no split; a few more taps over the same span (closer together, so an
    // average of the same line) usually have a good one.
    for (int n = taps; n <= taps + taps / 8; ++n)
        for (int first = 2; first * first <= n; ++first)
            if (n % first == 0 && first + n / first < best.fetches())
                best = { n - 1, first, n / first };
    return best;
}

juce::String GPUImageMotionBlur::fragmentSourceFor(float length, bool secondLevel, int twoLevelFromTaps)
{
    const auto split = levelsFor(length, twoLevelFromTaps);
    const bool second = secondLevel && split.isTwoLevel();
    // The taps' places are uniforms (see setAngle); only their count is a constant of the text.
    const auto body = ShaderStore::text("motion_blur.frag").replace("LEVEL_TAPS", juce::String(second ? split.secondTaps : split.firstTaps));
    return ShaderStore::composeColourProgram(body);
}

bool GPUImageMotionBlur::initFilter(float length, int filterType)
{
    type = filterType;
    if (filterType != 0)
        return false;
    levels = levelsFor(length, twoLevelFromTaps);
    span = 0.5f * lengthText(length).getFloatValue();
    const auto& vertex = ShaderStore::text("passthrough.vert");
    // One level: both passes draw a whole box. Two levels: the passes draw a box's two levels,
    // and each tent takes two pairs of draws.
    const auto first = programPrefix() + fragmentSourceFor(length, false, twoLevelFromTaps);
    const auto second = programPrefix() + fragmentSourceFor(length, true, twoLevelFromTaps);
    if (!initWithShaders(vertex, first, vertex, second))
        return false;
    setAngle(angle);
    return true;
}

void GPUImageMotionBlur::setAngle(float value)
{
    angle = value;
    const float c = std::cos(value), s = std::sin(value);

    // Taps in pixels, on the 1/256 grid: a step of span / gaps pixels along the line (times the
    // first level's run in the second level), the first tap half the run back.
    const bool second = levels.isTwoLevel();
    auto placeTaps = [&](int taps, float spacing, bool forSecond) {
        const float step = span / (float) std::max(1, levels.gaps) * spacing;
        const juce::Point<float> tapStep { onSubtexelGrid(c * step), onSubtexelGrid(s * step) };
        const float back = -0.5f * (float) (taps - 1);
        const juce::Point<float> firstTap { onSubtexelGrid(tapStep.x * back), onSubtexelGrid(tapStep.y * back) };
        if (forSecond)
        {
            setSecondPoint(tapStep, "tapStep");
            setSecondPoint(firstTap, "firstTap");
        }
        else
        {
            setPoint(tapStep, "tapStep");
            setPoint(firstTap, "firstTap");
        }
    };
    placeTaps(levels.firstTaps, 1.0f, false);
    placeTaps(second ? levels.secondTaps : levels.firstTaps, second ? (float) levels.firstTaps : 1.0f, true);
}

void GPUImageMotionBlur::setupFilterForSize(GPUImageSize size)
{
    // Both passes blur along the same line, not along the axes, so both get both steps.
    const float w = (float) (1.0 / (double) size.width);
    const float h = (float) (1.0 / (double) size.height);
    setFloat(w, "texelWidthOffset");
    setFloat(h, "texelHeightOffset");
    setSecondFloat(w, "texelWidthOffset");
    setSecondFloat(h, "texelHeightOffset");
}

void GPUImageMotionBlur::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
    drawRepeatedPairs(vertices, levels.isTwoLevel() ? 2 * passes : passes);
}
