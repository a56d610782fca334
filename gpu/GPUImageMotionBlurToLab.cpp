#include "gpu/GPUImageMotionBlurToLab.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageUnsharpMaskUnclampedFilter.h"
#include "gpu/ShaderStore.h"

#include <algorithm>
#include <utility>

bool GPUImageMotionBlurToLab::initFilter(float length, int filterType)
{
    setEncodedRange(0.0f);
    if (!GPUImageMotionBlur::initFilter(length, filterType))
        return false;

    ScopedGLContext scoped;
    const auto source = "#define TO_LAB\n" + ShaderStore::text("lab_functions.glsl") + "\n"
                        + fragmentSourceFor(length, true, twoLevelFromTaps);
    labProgram = cachedProgram("labProgram" + getClassName(), ShaderStore::text("passthrough.vert"), source);
    if (!labProgram->initialized)
    {
        labProgram->addAttribute("position");
        labProgram->addAttribute("inputTextureCoordinate");
        if (!labProgram->link())
            return false;
    }
    labPositionAttribute = labProgram->attributeIndex("position");
    labTextureCoordinateAttribute = labProgram->attributeIndex("inputTextureCoordinate");
    labInputTextureUniform = labProgram->uniformIndex("inputImageTexture");

    if (labTexture == 0)
        labTexture = makeTexture();
    return true;
}

juce::String GPUImageMotionBlurToLab::programPrefix() const
{
    return "#define ENCODED\n" + ShaderStore::text("ordered_dither.glsl") + "\n";
}

void GPUImageMotionBlurToLab::setEncodedRange(float amount)
{
    const auto encoding = GPUImageUnsharpMaskUnclampedFilter::encodingFor(amount);
    setFloat(encoding.low, "encodedLow");
    setFloat(encoding.scale, "encodedScale");
    setSecondFloat(encoding.low, "encodedLow");
    setSecondFloat(encoding.scale, "encodedScale");
}

void GPUImageMotionBlurToLab::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr || secondFilterProgram == nullptr || labProgram == nullptr)
        return;
    ScopedGLContext scoped;
    // Two boxes make a tent, a tent for each pass; a box is one draw, or two in two levels. Even
    // draws write the first texture, odd ones the second, and the last one the Lab texture.
    const int boxes = 2 * std::max(1, passes);
    const int draws = levels.isTwoLevel() ? 2 * boxes : boxes;
    for (int i = 0; i < draws; ++i)
    {
        if (i == 0)
            drawFirstPass(vertices, textureCoordinates, sourceTexture);
        else if (i % 2 == 0)
            drawFirstPass(vertices, GPUImageRotation::coordinates(GPUImageRotation::none), secondFilterOutputTexture);
        else if (i == draws - 1)
            drawLabPass(vertices, outputTexture);
        else
            drawSecondPass(vertices, outputTexture);
        if (filterFramebuffer == 0)
            return;
    }
}

void GPUImageMotionBlurToLab::drawLabPass(const GLfloat* vertices, GLuint sourceTexture)
{
    const auto size = outputFrameSize();
    glBindFramebuffer(GL_FRAMEBUFFER, labFramebuffer);
    glViewport(0, 0, (GLsizei) size.width, (GLsizei) size.height);
    labProgram->use();
    // The last draw is a second-level or second-box draw: it takes that pass's uniforms.
    applyUniforms(*labProgram, secondPendingIntegerUniforms, secondPendingFloatUniforms, secondPendingPointUniforms);

    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, sourceTexture);
    glUniform1i(labInputTextureUniform, 3);

    glEnableVertexAttribArray(labPositionAttribute);
    glEnableVertexAttribArray(labTextureCoordinateAttribute);
    glVertexAttribPointer(labPositionAttribute, 2, GL_FLOAT, GL_FALSE, 0, vertices);
    glVertexAttribPointer(labTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0, GPUImageRotation::coordinates(0));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void GPUImageMotionBlurToLab::setInputTextureForTarget(GPUImageInput* target, int textureIndex)
{
    target->setInputTexture(labTexture, textureIndex);
}

void GPUImageMotionBlurToLab::createFilterFBOofSize(GPUImageSize size)
{
    GPUImageMotionBlur::createFilterFBOofSize(size);
    ScopedGLContext scoped;
    labFramebuffer = createFramebufferForTexture(labTexture, size);
}

void GPUImageMotionBlurToLab::destroyFilterFBO()
{
    GPUImageMotionBlur::destroyFilterFBO();
    deleteFramebuffer(labFramebuffer);
}

void GPUImageMotionBlurToLab::deleteOutputTexture()
{
    GPUImageMotionBlur::deleteOutputTexture();
    deleteTexture(labTexture);
}

void GPUImageMotionBlurToLab::setOutputFBO()
{
    // Read-back reads the Lab texture, the finished frame.
    setFilterFBO();
    const auto size = outputFrameSize();
    glBindFramebuffer(GL_FRAMEBUFFER, labFramebuffer);
    glViewport(0, 0, (GLsizei) size.width, (GLsizei) size.height);
}

void GPUImageMotionBlurToLab::releaseProgram()
{
    GPUImageMotionBlur::releaseProgram();
    if (!useProgramCache && labProgram != nullptr)
    {
        ScopedGLContext scoped;
        delete labProgram;
    }
    labProgram = nullptr;
}
