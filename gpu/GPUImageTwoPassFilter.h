#pragma once
// Two programs drawn one after the other: the first into the filter's framebuffer, the second
// from that texture into a second framebuffer whose texture is what targets receive.

#include "gpu/GPUImageTextureSamplingFilter.h"

class GPUImageTwoPassFilter : public GPUImageFilter
{
public:
    using GPUImageFilter::initWithShaders;
    virtual bool initWithShaders(const juce::String& firstVertex, const juce::String& firstFragment,
                                 const juce::String& secondVertex, const juce::String& secondFragment);
    virtual GLProgram* secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource);
    virtual bool linkSecondProgram();
    virtual void releaseSecondProgram();
    virtual void initializeSecondAttributes();

    void setSecondInteger(int value, const juce::String& uniformName);
    void setSecondFloat(float value, const juce::String& uniformName);
    void setSecondPoint(juce::Point<float> point, const juce::String& uniformName);
    virtual void setSecondUniforms();

    void setInputTextureForTarget(GPUImageInput* target, int textureIndex) override;
    void createFilterFBOofSize(GPUImageSize size) override;
    void destroyFilterFBO() override;
    void deleteOutputTexture() override;
    void setOutputFBO() override;
    void releaseProgram() override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    /** Draws the second program once more, from the given texture into the second framebuffer. */
    void drawSecondPass(const GLfloat* vertices, GLuint sourceTexture);
    /** Draws the first program from the given texture into the first framebuffer. */
    void drawFirstPass(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture);
    /** After the regular draw, runs both passes passes − 1 more times, each from the filter's own
        finished frame, so the result stays in the texture targets read. */
    void drawRepeatedPairs(const GLfloat* vertices, int passes);

    GLuint secondFilterOutputTexture = 0;
    GLProgram* secondFilterProgram = nullptr;
    GLuint secondFilterPositionAttribute = 0, secondFilterTextureCoordinateAttribute = 0;
    GLint secondFilterInputTextureUniform = -1;
    GLuint secondFilterFramebuffer = 0;
    UniformQueue<int> secondPendingIntegerUniforms;
    UniformQueue<float> secondPendingFloatUniforms;
    UniformQueue<juce::Point<float>> secondPendingPointUniforms;
};

/** A two-pass sampling filter: the first pass steps along y, the second along x, each told its
    step through "texelWidthOffset" and "texelHeightOffset". */
class GPUImageTwoPassTextureSamplingFilter : public GPUImageTwoPassFilter
{
public:
    bool initWithShaders(const juce::String& firstVertex, const juce::String& firstFragment,
                         const juce::String& secondVertex, const juce::String& secondFragment) override;
    void setupFilterForSize(GPUImageSize size) override;

    GLint verticalPassTexelWidthOffsetUniform = -1, verticalPassTexelHeightOffsetUniform = -1;
    GLint horizontalPassTexelWidthOffsetUniform = -1, horizontalPassTexelHeightOffsetUniform = -1;
};
