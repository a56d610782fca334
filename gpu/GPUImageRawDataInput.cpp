#include "gpu/GPUImageRawDataInput.h"
#include "gpu/GPUImageOpenGLESContext.h"

void GPUImageRawDataInput::uploadBytes(const uint8_t* pixels, GPUImageSize size)
{
    ScopedGLContext scoped;
    initializeOutputTexture();
    uploadedImageSize = size;
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, outputTexture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, (GLsizei) size.width, (GLsizei) size.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void GPUImageRawDataInput::processData()
{
    ScopedGLContext scoped;
    // Re-hand the texture: it may have been created after the targets were added.
    for (size_t i = 0; i < targets.size(); ++i)
    {
        targets[i]->setInputTexture(outputTexture, targetTextureIndices[i]);
        targets[i]->setInputSize(uploadedImageSize, targetTextureIndices[i]);
    }
    for (size_t i = 0; i < targets.size(); ++i)
        if (targets[i] != targetToIgnoreForUpdates)
            targets[i]->newFrameReady();
}
