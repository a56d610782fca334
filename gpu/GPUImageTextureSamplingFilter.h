#pragma once
// A filter whose program samples neighbours: it is told the size of one texel at each size change.

#include "gpu/GPUImageFilter.h"

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
