#include "gpu/GPUImageLightenMode.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"
#include "imaging/SxImageRgbaBytes.h"

GPUImageLightenMode::GPUImageLightenMode()
{
    useProgramCache = true;
    setStrength(1.0f);
}

bool GPUImageLightenMode::init()
{
    if (!initWithFragmentShader(juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("lighten_mode.frag")))
        return false;
    ScopedGLContext scoped;
    strengthUniform = filterProgram->uniformIndex("strength");
    srcTextureUniform = filterProgram->uniformIndex("srcImageTexture");
    return true;
}

void GPUImageLightenMode::setStrength(float value)
{
    setFloat(value, "strength");
}

void GPUImageLightenMode::setSourceImage(const SxImageRgbaBytes* image)
{
    srcImage = image;
    if (image != nullptr)
    {
        setFloat((float) image->width, "srcWidth");
        setFloat((float) image->height, "srcHeight");
    }
}

void GPUImageLightenMode::setupFilterForSize(GPUImageSize size)
{
    setFloat((float) (1.0 / (double) size.width), "texelWidth");
    setFloat((float) (1.0 / (double) size.height), "texelHeight");
}

void GPUImageLightenMode::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr || srcImage == nullptr || srcImage->width <= 0 || srcImage->height <= 0)
        return;
    ScopedGLContext scoped;
    glActiveTexture(GL_TEXTURE0 + sourceTextureUnit);
    glGenTextures(1, &srcTexture);
    glBindTexture(GL_TEXTURE_2D, srcTexture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, srcImage->width, srcImage->height, 0, GL_RGBA, GL_UNSIGNED_BYTE, srcImage->pixels);
    setInteger(sourceTextureUnit, "srcImageTexture");

    GPUImageFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);

    glActiveTexture(GL_TEXTURE0 + sourceTextureUnit);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDeleteTextures(1, &srcTexture);
    srcTexture = 0;
}
