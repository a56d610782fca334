#include "gpu/GPUImageFilter.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ProgramCache.h"
#include "gpu/ShaderStore.h"
#include "imaging/SxImageRgbaBytes.h"

#include <typeinfo>

namespace GPUImageRotation
{
namespace
{
const GLfloat vertices[] = { -1.0f, -1.0f, 1.0f, -1.0f, -1.0f, 1.0f, 1.0f, 1.0f };
const GLfloat table[6][8] = {
    { 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f }, // none
    { 1.0f, 0.0f, 1.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f }, // left
    { 0.0f, 1.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f, 0.0f }, // right
    { 0.0f, 1.0f, 1.0f, 1.0f, 0.0f, 0.0f, 1.0f, 0.0f }, // flip vertical
    { 1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0.0f, 1.0f }, // flip horizontal
    { 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 1.0f }, // right and flip vertical
};
} // namespace

const GLfloat* coordinates(int rotation)
{
    return table[(rotation >= 0 && rotation < 6) ? rotation : 0];
}

const GLfloat* quadVertices()
{
    return vertices;
}

bool swapsWidthAndHeight(int rotation)
{
    return rotation == left || rotation == right || rotation == rightFlipVertical;
}
} // namespace GPUImageRotation

namespace
{
// The one readback buffer of the process: chains run one at a time under the render lock.
uint8_t* readbackBuffer = nullptr;
} // namespace

//==============================================================================
const juce::String& GPUImageFilter::getClassName()
{
    if (className.isEmpty())
        className = typeid(*this).name();
    return className;
}

bool GPUImageFilter::initWithFragmentShader(const juce::String& fragmentSource)
{
    return initWithShaders(ShaderStore::text("passthrough.vert"), fragmentSource);
}

bool GPUImageFilter::initWithShaders(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return false;

    filterProgram = programFor(vertexSource, fragmentSource);
    if (!filterProgram->initialized)
    {
        initializeAttributes();
        if (!linkProgram())
            return false;
    }

    filterPositionAttribute = filterProgram->attributeIndex("position");
    filterTextureCoordinateAttribute = filterProgram->attributeIndex("inputTextureCoordinate");
    filterInputTextureUniform = filterProgram->uniformIndex("inputImageTexture");
    filterProgram->use();
    glEnableVertexAttribArray(filterPositionAttribute);
    glEnableVertexAttribArray(filterTextureCoordinateAttribute);

    initializeOutputTexture();
    return true;
}

GLProgram* GPUImageFilter::cachedProgram(const juce::String& key, const juce::String& vertexSource, const juce::String& fragmentSource)
{
    auto& cache = ProgramCache::getInstance();
    if (useProgramCache)
    {
        if (auto* program = cache.find(key))
        {
            if (!compareProgramSource || cache.sourceOf(key) == fragmentSource)
            {
                program->use();
                return program;
            }
            cache.remove(key);
            delete program;
        }
    }

    auto* program = new GLProgram(vertexSource, fragmentSource);
    if (useProgramCache)
        cache.add(key, program, fragmentSource);
    return program;
}

GLProgram* GPUImageFilter::programFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(getClassName(), vertexSource, fragmentSource);
}

bool GPUImageFilter::linkProgram()
{
    if (filterProgram == nullptr)
        return false;
    return filterProgram->initialized || filterProgram->link();
}

void GPUImageFilter::releaseProgram()
{
    if (!useProgramCache && filterProgram != nullptr)
    {
        ScopedGLContext scoped;
        delete filterProgram;
    }
    filterProgram = nullptr;
}

void GPUImageFilter::initializeAttributes()
{
    filterProgram->addAttribute("position");
    filterProgram->addAttribute("inputTextureCoordinate");
}

void GPUImageFilter::setupFilterForSize(GPUImageSize) {}

GPUImageSize GPUImageFilter::rotatedSize(GPUImageSize size, int)
{
    return size;
}

//==============================================================================
void GPUImageFilter::setInputTexture(GLuint texture, int)
{
    filterSourceTexture = texture;
}

void GPUImageFilter::setInputSize(GPUImageSize size, int textureIndex)
{
    if (preventRendering)
        return;
    const auto rotated = rotatedSize(size, textureIndex);
    if (rotated == inputTextureSize)
        return;
    inputTextureSize = rotated;
    recreateFilterFBO();
}

void GPUImageFilter::setInputRotation(int rotation, int)
{
    inputRotation = rotation;
}

void GPUImageFilter::forceProcessingAtSize(GPUImageSize size)
{
    overrideInputSize = !size.isEmpty();
    forcedMaximumSize = overrideInputSize ? size : GPUImageSize {};
    recreateFilterFBO();
}

void GPUImageFilter::forceProcessingAtSizeRespectingAspectRatio(GPUImageSize size)
{
    const auto input = inputTextureSize;
    if (size.isEmpty() || input.isEmpty())
    {
        forceProcessingAtSize({});
        return;
    }
    const float scale = juce::jmin(size.width / input.width, size.height / input.height);
    forceProcessingAtSize({ std::floor(input.width * scale), std::floor(input.height * scale) });
}

GPUImageSize GPUImageFilter::outputFrameSize()
{
    return overrideInputSize ? forcedMaximumSize : inputTextureSize;
}

//==============================================================================
GLuint GPUImageFilter::createFramebufferForTexture(GLuint texture, GPUImageSize size)
{
    GLuint framebuffer = 0;
    glActiveTexture(GL_TEXTURE1);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, (GLsizei) size.width, (GLsizei) size.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    glCheckFramebufferStatus(GL_FRAMEBUFFER);
    glBindTexture(GL_TEXTURE_2D, 0);
    return framebuffer;
}

void GPUImageFilter::createFilterFBOofSize(GPUImageSize size)
{
    ScopedGLContext scoped;
    initializeOutputTexture();
    filterFramebuffer = createFramebufferForTexture(outputTexture, size);
    ownsFramebuffer = true;
}

void GPUImageFilter::destroyFilterFBO()
{
    if (filterFramebuffer != 0)
    {
        ScopedGLContext scoped;
        if (ownsFramebuffer)
            glDeleteFramebuffers(1, &filterFramebuffer);
        filterFramebuffer = 0;
    }
}

void GPUImageFilter::recreateFilterFBO()
{
    cachedMaximumOutputSize = {};
    destroyFilterFBO();
    setFilterFBO();
}

void GPUImageFilter::setFilterFBO()
{
    if (inputTextureSize.isEmpty())
        return;
    const auto size = outputFrameSize();
    if (filterFramebuffer == 0)
    {
        createFilterFBOofSize(size);
        setupFilterForSize(size);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, filterFramebuffer);
    glViewport(0, 0, (GLsizei) size.width, (GLsizei) size.height);
}

void GPUImageFilter::setOutputFBO()
{
    setFilterFBO();
}

void GPUImageFilter::setExternalFBO(GLuint framebuffer, GLuint texture, GPUImageSize size)
{
    destroyFilterFBO();
    deleteOutputTexture();
    filterFramebuffer = framebuffer;
    outputTexture = texture;
    ownsFramebuffer = false;
    inputTextureSize = size;
}

//==============================================================================
void GPUImageFilter::setBackgroundColor(float red, float green, float blue, float alpha)
{
    backgroundColor[0] = red;
    backgroundColor[1] = green;
    backgroundColor[2] = blue;
    backgroundColor[3] = alpha;
}

void GPUImageFilter::setInteger(int value, const juce::String& uniformName)
{
    pendingIntegerUniforms.set(value, uniformName);
}

void GPUImageFilter::setFloat(float value, const juce::String& uniformName)
{
    pendingFloatUniforms.set(value, uniformName);
}

void GPUImageFilter::setPoint(juce::Point<float> point, const juce::String& uniformName)
{
    pendingPointUniforms.set(point, uniformName);
}

void GPUImageFilter::applyUniforms(GLProgram& program, const UniformQueue<int>& ints, const UniformQueue<float>& floats,
                                   const UniformQueue<juce::Point<float>>& points)
{
    for (size_t i = 0; i < ints.size(); ++i)
        glUniform1i(program.uniformIndex(ints.names[i]), ints.values[i]);
    for (size_t i = 0; i < floats.size(); ++i)
        glUniform1f(program.uniformIndex(floats.names[i]), floats.values[i]);
    for (size_t i = 0; i < points.size(); ++i)
    {
        const GLfloat xy[2] = { points.values[i].x, points.values[i].y };
        glUniform2fv(program.uniformIndex(points.names[i]), 1, xy);
    }
}

void GPUImageFilter::setUniforms()
{
    if (filterProgram != nullptr)
        applyUniforms(*filterProgram, pendingIntegerUniforms, pendingFloatUniforms, pendingPointUniforms);
}

//==============================================================================
void GPUImageFilter::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr)
        return;

    ScopedGLContext scoped;
    setFilterFBO();
    if (filterFramebuffer == 0)
        return;

    filterProgram->use();
    setUniforms();
    glClearColor(backgroundColor[0], backgroundColor[1], backgroundColor[2], backgroundColor[3]);
    glClear(GL_COLOR_BUFFER_BIT);

    glActiveTexture(GL_TEXTURE2);
    glBindTexture(GL_TEXTURE_2D, sourceTexture);
    glUniform1i(filterInputTextureUniform, 2);

    glEnableVertexAttribArray(filterPositionAttribute);
    glEnableVertexAttribArray(filterTextureCoordinateAttribute);
    glVertexAttribPointer(filterPositionAttribute, 2, GL_FLOAT, GL_FALSE, 0, vertices);
    glVertexAttribPointer(filterTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0, textureCoordinates);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void GPUImageFilter::newFrameReady()
{
    renderToTextureWithVertices(GPUImageRotation::quadVertices(), GPUImageRotation::coordinates(inputRotation),
                                filterSourceTexture);
    {
        // Later filters sample this texture; the chain relies on it being finished.
        ScopedGLContext scoped;
        glFinish();
    }
    informTargetsAboutNewFrame();
}

void GPUImageFilter::informTargetsAboutNewFrame()
{
    const auto size = outputFrameSize();
    // Copies: a target's draw may not rewire this node, but it is cheap to be safe.
    const auto currentTargets = targets;
    const auto currentIndices = targetTextureIndices;
    for (size_t i = 0; i < currentTargets.size(); ++i)
    {
        if (currentTargets[i] == targetToIgnoreForUpdates)
            continue;
        currentTargets[i]->setInputSize(size, currentIndices[i]);
        currentTargets[i]->newFrameReady();
    }
}

//==============================================================================
const uint8_t* GPUImageFilter::readPixels(int& strideOut)
{
    GPUImageOpenGLESContext::sharedImageProcessingContext().acquireContext();
    setOutputFBO();
    preventRendering = true;
    const auto size = outputFrameSize();
    const int w = (int) size.width, h = (int) size.height;
    strideOut = w * 4;
    delete[] readbackBuffer;
    readbackBuffer = new uint8_t[std::max<size_t>((size_t) w * (size_t) h * 4, 1)];
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, readbackBuffer);
    return readbackBuffer;
}

void GPUImageFilter::releaseReadPixels()
{
    delete[] readbackBuffer;
    readbackBuffer = nullptr;
    preventRendering = false;
    GPUImageOpenGLESContext::sharedImageProcessingContext().releaseContext();
}

bool GPUImageFilter::readPixelsInto(SxImageRgbaBytes& image)
{
    ScopedGLContext scoped;
    setOutputFBO();
    const auto size = outputFrameSize();
    if ((int) size.width != image.width || (int) size.height != image.height)
        return false;
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, image.width, image.height, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels);
    preventRendering = false;
    return true;
}

void GPUImageFilter::destroy()
{
    GPUImageOutput::destroy();
    destroyFilterFBO();
    releaseProgram();
}
