#pragma once
// A filter whose program samples neighbours: it is told the size of one texel at each size change.

#include "gpu/GPUImageFilter.h"

#include <cmath>

/** Rounds an offset between taps, in texels, to a multiple of 1/256. Linear filtering of byte
    textures weighs neighbours in steps of 1/256 texel (llvmpipe does), so a tap on this grid lies
    in the middle of a step, where the last-bit differences of coordinates normalised by a tile's
    size instead of the whole picture's cannot move it into the next one: a tile and the whole
    picture then fetch the same mixtures. Sums of grid values stay on the grid exactly. */
inline float onSubtexelGrid(float texels)
{
    return std::round(texels * 256.0f) / 256.0f;
}

/** The spread of a box whose taps lie 1.5, 3.5, ... spreads out: a multiple of 2/256, so that
    every tap is on the grid. */
inline float onSubtexelGridForHalfSteps(float spread)
{
    return 2.0f * onSubtexelGrid(0.5f * spread);
}

class GPUImageTextureSamplingFilter : public GPUImageFilter
{
public:
    bool initWithShaders(const juce::String& vertexSource, const juce::String& fragmentSource) override;
    void setupFilterForSize(GPUImageSize size) override;
    virtual void setStrength(float value);

    GLint texelWidthUniform = -1, texelHeightUniform = -1;
    float texelWidth = 0.0f, texelHeight = 0.0f;
    GLint strengthUniform = -1;
};

/** A sampling filter that draws several passes, each from the previous one, alternating between two
    framebuffers; the last pass always lands in the output texture that targets were given. */
class GPUImageMultiPassTextureSamplingFilter : public GPUImageTextureSamplingFilter
{
public:
    void setNumberOfPasses(int count) { numberOfPasses = count; }
    void createFilterFBOofSize(GPUImageSize size) override;
    void destroyFilterFBO() override;
    void deleteOutputTexture() override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    int filterPass = 0;
    int numberOfPasses = 0;
    GLuint secondFramebuffer = 0;
    GLuint secondTexture = 0;
};
