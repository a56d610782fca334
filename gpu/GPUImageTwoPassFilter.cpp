#include "gpu/GPUImageTwoPassFilter.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"

bool GPUImageTwoPassFilter::initWithShaders(const juce::String& firstVertex, const juce::String& firstFragment,
                                            const juce::String& secondVertex, const juce::String& secondFragment)
{
    if (!GPUImageFilter::initWithShaders(firstVertex, firstFragment))
        return false;

    ScopedGLContext scoped;
    secondFilterProgram = secondProgramFor(secondVertex, secondFragment);
    if (!secondFilterProgram->initialized)
    {
        initializeSecondAttributes();
        if (!linkSecondProgram())
            return false;
    }
    secondFilterPositionAttribute = secondFilterProgram->attributeIndex("position");
    secondFilterTextureCoordinateAttribute = secondFilterProgram->attributeIndex("inputTextureCoordinate");
    secondFilterInputTextureUniform = secondFilterProgram->uniformIndex("inputImageTexture");
    secondFilterProgram->use();
    glEnableVertexAttribArray(secondFilterPositionAttribute);
    glEnableVertexAttribArray(secondFilterTextureCoordinateAttribute);

    if (secondFilterOutputTexture == 0)
        secondFilterOutputTexture = makeTexture();
    return true;
}

GLProgram* GPUImageTwoPassFilter::secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram("secondProgram" + getClassName(), vertexSource, fragmentSource);
}

bool GPUImageTwoPassFilter::linkSecondProgram()
{
    return secondFilterProgram != nullptr && (secondFilterProgram->initialized || secondFilterProgram->link());
}

void GPUImageTwoPassFilter::initializeSecondAttributes()
{
    secondFilterProgram->addAttribute("position");
    secondFilterProgram->addAttribute("inputTextureCoordinate");
}

void GPUImageTwoPassFilter::releaseSecondProgram()
{
    if (!useProgramCache && secondFilterProgram != nullptr)
    {
        ScopedGLContext scoped;
        delete secondFilterProgram;
    }
    secondFilterProgram = nullptr;
}

void GPUImageTwoPassFilter::releaseProgram()
{
    GPUImageFilter::releaseProgram();
    releaseSecondProgram();
}

void GPUImageTwoPassFilter::setSecondInteger(int value, const juce::String& uniformName)
{
    secondPendingIntegerUniforms.set(value, uniformName);
}

void GPUImageTwoPassFilter::setSecondFloat(float value, const juce::String& uniformName)
{
    secondPendingFloatUniforms.set(value, uniformName);
}

void GPUImageTwoPassFilter::setSecondPoint(juce::Point<float> point, const juce::String& uniformName)
{
    secondPendingPointUniforms.set(point, uniformName);
}

void GPUImageTwoPassFilter::setSecondUniforms()
{
    if (secondFilterProgram != nullptr)
        applyUniforms(*secondFilterProgram, secondPendingIntegerUniforms, secondPendingFloatUniforms, secondPendingPointUniforms);
}

void GPUImageTwoPassFilter::setInputTextureForTarget(GPUImageInput* target, int textureIndex)
{
    target->setInputTexture(secondFilterOutputTexture, textureIndex);
}

void GPUImageTwoPassFilter::createFilterFBOofSize(GPUImageSize size)
{
    GPUImageFilter::createFilterFBOofSize(size);
    ScopedGLContext scoped;
    secondFilterFramebuffer = createFramebufferForTexture(secondFilterOutputTexture, size);
}

void GPUImageTwoPassFilter::destroyFilterFBO()
{
    GPUImageFilter::destroyFilterFBO();
    deleteFramebuffer(secondFilterFramebuffer);
}

void GPUImageTwoPassFilter::deleteOutputTexture()
{
    GPUImageFilter::deleteOutputTexture();
    deleteTexture(secondFilterOutputTexture);
}

void GPUImageTwoPassFilter::setOutputFBO()
{
    // The finished frame is the second pass's.
    setFilterFBO();
    if (secondFilterFramebuffer != 0)
    {
        const auto size = outputFrameSize();
        glBindFramebuffer(GL_FRAMEBUFFER, secondFilterFramebuffer);
        glViewport(0, 0, (GLsizei) size.width, (GLsizei) size.height);
    }
}

void GPUImageTwoPassFilter::drawFirstPass(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    GPUImageFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
}

void GPUImageTwoPassFilter::drawSecondPass(const GLfloat* vertices, GLuint sourceTexture)
{
    const auto size = outputFrameSize();
    glBindFramebuffer(GL_FRAMEBUFFER, secondFilterFramebuffer);
    glViewport(0, 0, (GLsizei) size.width, (GLsizei) size.height);
    secondFilterProgram->use();
    setSecondUniforms();
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT);

    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, sourceTexture);
    glUniform1i(secondFilterInputTextureUniform, 3);

    glEnableVertexAttribArray(secondFilterPositionAttribute);
    glEnableVertexAttribArray(secondFilterTextureCoordinateAttribute);
    glVertexAttribPointer(secondFilterPositionAttribute, 2, GL_FLOAT, GL_FALSE, 0, vertices);
    glVertexAttribPointer(secondFilterTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0, GPUImageRotation::coordinates(0));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void GPUImageTwoPassFilter::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr || secondFilterProgram == nullptr)
        return;
    ScopedGLContext scoped;
    drawFirstPass(vertices, textureCoordinates, sourceTexture);
    if (filterFramebuffer == 0)
        return;
    drawSecondPass(vertices, outputTexture);
}

void GPUImageTwoPassFilter::drawRepeatedPairs(const GLfloat* vertices, int passes)
{
    if (passes <= 1 || preventRendering || filterProgram == nullptr || secondFilterProgram == nullptr || filterFramebuffer == 0
        || secondFilterFramebuffer == 0)
        return;
    ScopedGLContext scoped;
    // The first pass reads the finished frame (second texture) and writes the first; the second
    // pass reads that back, so no pass reads the texture it writes. Repeats start upright.
    for (int i = 1; i < passes; ++i)
    {
        drawFirstPass(vertices, GPUImageRotation::coordinates(GPUImageRotation::none), secondFilterOutputTexture);
        drawSecondPass(vertices, outputTexture);
    }
}

//==============================================================================
bool GPUImageTwoPassTextureSamplingFilter::initWithShaders(const juce::String& firstVertex, const juce::String& firstFragment,
                                                           const juce::String& secondVertex, const juce::String& secondFragment)
{
    if (!GPUImageTwoPassFilter::initWithShaders(firstVertex, firstFragment, secondVertex, secondFragment))
        return false;
    ScopedGLContext scoped;
    verticalPassTexelWidthOffsetUniform = filterProgram->uniformIndex("texelWidthOffset");
    verticalPassTexelHeightOffsetUniform = filterProgram->uniformIndex("texelHeightOffset");
    horizontalPassTexelWidthOffsetUniform = secondFilterProgram->uniformIndex("texelWidthOffset");
    horizontalPassTexelHeightOffsetUniform = secondFilterProgram->uniformIndex("texelHeightOffset");
    return true;
}

void GPUImageTwoPassTextureSamplingFilter::setupFilterForSize(GPUImageSize size)
{
    const float w = (float) (1.0 / (double) size.width);
    const float h = (float) (1.0 / (double) size.height);
    // Rotations that swap the axes swap which pass runs along which axis.
    const bool swapped = GPUImageRotation::swapsWidthAndHeight(inputRotation);
    setFloat(swapped ? w : 0.0f, "texelWidthOffset");
    setFloat(swapped ? 0.0f : h, "texelHeightOffset");
    setSecondFloat(swapped ? 0.0f : w, "texelWidthOffset");
    setSecondFloat(swapped ? h : 0.0f, "texelHeightOffset");
}
