#include "gpu/GPUImageMotionBlur.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

#include <cmath>

juce::String GPUImageMotionBlur::fragmentSourceFor(float length)
{
    const auto body = ShaderStore::text("motion_blur.frag").replace("HARD_CODED_LENGTH", juce::String((double) length, 2));
    return ShaderStore::composeColourProgram(body);
}

bool GPUImageMotionBlur::initFilter(float length, int filterType)
{
    type = filterType;
    if (filterType != 0)
        return false;
    const auto& vertex = ShaderStore::text("passthrough.vert");
    const auto fragment = fragmentSourceFor(std::max(0.0f, length));
    if (!initWithShaders(vertex, fragment, vertex, fragment))
        return false;
    setAngle(angle);
    return true;
}

void GPUImageMotionBlur::setAngle(float value)
{
    angle = value;
    const float c = std::cos(value), s = std::sin(value);
    setFloat(c, "cosa");
    setFloat(s, "sina");
    setFloat(value, "angle");
    setSecondFloat(c, "cosa");
    setSecondFloat(s, "sina");
    setSecondFloat(value, "angle");
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
    drawRepeatedPairs(vertices, passes);
}
