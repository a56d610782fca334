#include "gpu/GPUImageLabSharpenLightenFilter.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
// Past the units the chain's own draws use (2, 3) and the field of the flow smoothing (4).
constexpr int accumulatorTextureUnit = 5;
} // namespace

//==============================================================================
bool GPUImageDownsampleFilter::init(int reduction)
{
    factor = std::max(1, reduction);
    useProgramCache = true;
    return initWithFragmentShader(ShaderStore::text("downsample_box.frag"));
}

void GPUImageDownsampleFilter::setInputSize(GPUImageSize size, int textureIndex)
{
    GPUImageFilter::setInputSize(size, textureIndex);
    if (!size.isEmpty())
    {
        setPoint({ (float) (factor * 0.25 / size.width), (float) (factor * 0.25 / size.height) }, "sourceTexelQuarterBlock");
        const auto small = outputFrameSize();
        setPoint({ (float) (factor * small.width / size.width), (float) (factor * small.height / size.height) }, "blockScale");
    }
}

GPUImageSize GPUImageDownsampleFilter::outputFrameSize()
{
    return { std::ceil(inputTextureSize.width / (float) factor), std::ceil(inputTextureSize.height / (float) factor) };
}

//==============================================================================
bool GPUImageMaximumAccumulator::init()
{
    useProgramCache = true;
    if (!initWithFragmentShader(juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("lab_functions.glsl") + "\n"
                                + ShaderStore::text("lab_unsharp_lighten.frag")))
        return false;
    setInteger(accumulatorTextureUnit, "accumulatorTexture");
    setPoint({ 1.0f, 1.0f }, "blurCoordinateScale");
    setInvertedStack(false);
    return true;
}

void GPUImageMaximumAccumulator::setIntensities(float red, float green, float blue)
{
    setFloat(red, "intensityRed");
    setFloat(green, "intensityGreen");
    setFloat(blue, "intensityBlue");
}

void GPUImageMaximumAccumulator::setInputSize(GPUImageSize size, int textureIndex)
{
    // A frame of another size is another tile: what was accumulated belongs to the last one.
    if (textureIndex == 0 && size != inputTextureSize)
        hasAccumulation = false;
    GPUImageTwoInputFilter::setInputSize(size, textureIndex);
    // The blurred image is a whole number of blocks of the picture's pixels (the downsample's
    // last block may reach past the edge): read it where the block under each pixel lies.
    if (textureIndex == 0 && !size.isEmpty())
    {
        const double k = reduction;
        setPoint({ (float) (size.width / (k * std::ceil(size.width / k))), (float) (size.height / (k * std::ceil(size.height / k))) },
                 "blurCoordinateScale");
    }
}

void GPUImageMaximumAccumulator::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr)
        return;
    ScopedGLContext scoped;
    // Draw into the spare pair while the current one, the maximum so far, is read; then the pair
    // just drawn is the filter's output. The spare is made on the first draw.
    std::swap(filterFramebuffer, spareFramebuffer);
    std::swap(outputTexture, spareTexture);
    const GLuint before = spareTexture;
    setFloat(hasAccumulation && before != 0 ? 1.0f : 0.0f, "hasAccumulation");
    glActiveTexture(GL_TEXTURE0 + accumulatorTextureUnit);
    glBindTexture(GL_TEXTURE_2D, before);

    GPUImageTwoInputFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);

    glActiveTexture(GL_TEXTURE0 + accumulatorTextureUnit);
    glBindTexture(GL_TEXTURE_2D, 0);
    hasAccumulation = true;
    // Targets were handed a texture when they were wired; the maximum now lives in the other one.
    for (size_t i = 0; i < targets.size(); ++i)
        setInputTextureForTarget(targets[i], targetTextureIndices[i]);
}

void GPUImageMaximumAccumulator::destroyFilterFBO()
{
    GPUImageTwoInputFilter::destroyFilterFBO();
    deleteFramebuffer(spareFramebuffer);
    hasAccumulation = false;
}

void GPUImageMaximumAccumulator::deleteOutputTexture()
{
    GPUImageTwoInputFilter::deleteOutputTexture();
    deleteTexture(spareTexture);
}

//==============================================================================
int GPUImageLabSharpenLightenFilter::reductionFor(float radius)
{
    // A quarter size needs a radius of four texels or more left at that size, or the shape of the
    // blur (a box family member of another width) starts to show at the strongest lighting. Half
    // size is kept from a preview's blur (about 11) up: there the blur's error, scaled by the
    // lighting, stays under a level at the defaults and a few levels at the strongest lighting,
    // and the copies' blurs are the largest part of a preview's time. Narrower blurs stay at full
    // size.
    return radius >= 32.0f ? 4 : radius >= 10.0f ? 2 : 1;
}

float GPUImageLabSharpenLightenFilter::reducedArgument(float radius, int reduction)
{
    if (reduction <= 1)
        return radius;
    // Along one axis, the average of k texels down and the linear fetch back up add about k² / 4
    // texels² of variance; the rest, in texels of the small image, is the blur's. GPUImageBoxBlur's
    // variance grows with its radius, so the matching radius is found by halving the interval.
    const double k = reduction;
    const double target = std::max(0.0, (GPUImageGaussianBlur::varianceFor(radius, 2) - k * k / 4.0) / (k * k));
    double low = 0.0, high = 2.0 * GPUImageBoxBlur::maximumRadius;
    for (int i = 0; i < 40; ++i)
    {
        const double middle = 0.5 * (low + high);
        (GPUImageGaussianBlur::varianceFor((float) middle, 2) < target ? low : high) = middle;
    }
    return (float) (0.5 * (low + high));
}

bool GPUImageLabSharpenLightenFilter::init(float radius, float intensityL, float intensityA, float intensityB)
{
    const int reduction = reductionFor(radius);
    blurFilter = addFilter(new GPUImageGaussianBlur());
    bool ok = blurFilter->init(reducedArgument(radius, reduction), 2);
    accumulator = addFilter(new GPUImageMaximumAccumulator());
    ok = accumulator->init() && ok;
    accumulator->setIntensities(intensityL, intensityA, intensityB);
    accumulator->reduction = reduction;

    // Wired as the unsharp masks: the accumulator draws once, when the blur hands it its second
    // input.
    blurFilter->addTarget(accumulator, 1);
    if (reduction > 1)
    {
        downsample = addFilter(new GPUImageDownsampleFilter());
        ok = downsample->init(reduction) && ok;
        downsample->addTarget(blurFilter);
        initialFilters = { downsample, accumulator };
    }
    else
        initialFilters = { blurFilter, accumulator };
    terminalFilter = accumulator;
    inputFilterToIgnoreForUpdates = accumulator;
    return ok;
}

void GPUImageLabSharpenLightenFilter::startStack()
{
    if (accumulator != nullptr)
        accumulator->startStack();
}
