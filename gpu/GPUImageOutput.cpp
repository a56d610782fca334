#include "gpu/GPUImageOutput.h"
#include "gpu/GPUImageOpenGLESContext.h"

#include <algorithm>

void GPUImageOutput::initializeOutputTexture()
{
    if (outputTexture == 0)
        createOutputTexture();
}

void GPUImageOutput::destroy()
{
    removeAllTargets();
    deleteOutputTexture();
}

void GPUImageOutput::createOutputTexture()
{
    outputTexture = makeTexture();
}

GLuint GPUImageOutput::makeTexture()
{
    ScopedGLContext scoped;
    GLuint texture = 0;
    glActiveTexture(GL_TEXTURE0);
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glBindTexture(GL_TEXTURE_2D, 0);
    return texture;
}

void GPUImageOutput::setInputTextureForTarget(GPUImageInput* target, int textureIndex)
{
    target->setInputTexture(outputTexture, textureIndex);
}

void GPUImageOutput::addTarget(GPUImageInput* target, int textureIndex)
{
    if (std::find(targets.begin(), targets.end(), target) != targets.end())
        return;
    cachedMaximumOutputSize = {};
    setInputTextureForTarget(target, textureIndex);
    targets.push_back(target);
    targetTextureIndices.push_back(textureIndex);
}

void GPUImageOutput::addTarget(GPUImageInput* target)
{
    const int index = target->nextAvailableTextureIndex();
    addTarget(target, index);
    if (target->shouldIgnoreUpdatesToThisTargetQuery())
        targetToIgnoreForUpdates = target;
}

void GPUImageOutput::removeTarget(GPUImageInput* target)
{
    const auto it = std::find(targets.begin(), targets.end(), target);
    if (it == targets.end())
        return;
    cachedMaximumOutputSize = {};
    if (targetToIgnoreForUpdates == target)
        targetToIgnoreForUpdates = nullptr;

    const auto i = (size_t) (it - targets.begin());
    const int index = targetTextureIndices[i];
    target->setInputSize({}, index);
    target->setInputTexture(0, index);
    targets.erase(it);
    targetTextureIndices.erase(targetTextureIndices.begin() + (long) i);

    target->destroy();
    delete target;
}

void GPUImageOutput::removeAllTargets()
{
    targets.clear();
    targetTextureIndices.clear();
    cachedMaximumOutputSize = {};
}

void GPUImageOutput::deleteOutputTexture()
{
    deleteTexture(outputTexture);
}

void GPUImageOutput::deleteTexture(GLuint& texture)
{
    if (texture == 0)
        return;
    ScopedGLContext scoped;
    glDeleteTextures(1, &texture);
    texture = 0;
}

void GPUImageOutput::deleteFramebuffer(GLuint& framebuffer)
{
    if (framebuffer == 0)
        return;
    ScopedGLContext scoped;
    glDeleteFramebuffers(1, &framebuffer);
    framebuffer = 0;
}
