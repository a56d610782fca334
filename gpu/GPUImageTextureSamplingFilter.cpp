#include "gpu/GPUImageTextureSamplingFilter.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"

bool GPUImageTextureSamplingFilter::initWithShaders(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    if (!GPUImageFilter::initWithShaders(vertexSource, fragmentSource))
        return false;
    ScopedGLContext scoped;
    texelWidthUniform = filterProgram->uniformIndex("texelWidth");
    texelHeightUniform = filterProgram->uniformIndex("texelHeight");
    strengthUniform = filterProgram->uniformIndex("strength");
    return true;
}

void GPUImageTextureSamplingFilter::setupFilterForSize(GPUImageSize size)
{
    texelWidth = (float) (1.0 / (double) size.width);
    texelHeight = (float) (1.0 / (double) size.height);
    setFloat(texelWidth, "texelWidth");
    setFloat(texelHeight, "texelHeight");
}

void GPUImageTextureSamplingFilter::setStrength(float value)
{
    setFloat(value, "strength");
}

//==============================================================================
void GPUImageMultiPassTextureSamplingFilter::createFilterFBOofSize(GPUImageSize size)
{
    GPUImageFilter::createFilterFBOofSize(size);
    ScopedGLContext scoped;
    if (secondTexture == 0)
        secondTexture = makeTexture();
    secondFramebuffer = createFramebufferForTexture(secondTexture, size);
}

void GPUImageMultiPassTextureSamplingFilter::destroyFilterFBO()
{
    GPUImageFilter::destroyFilterFBO();
    deleteFramebuffer(secondFramebuffer);
}

void GPUImageMultiPassTextureSamplingFilter::deleteOutputTexture()
{
    GPUImageFilter::deleteOutputTexture();
    deleteTexture(secondTexture);
}

void GPUImageMultiPassTextureSamplingFilter::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates,
                                                                         GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr)
        return;

    ScopedGLContext scoped;
    setFilterFBO();
    if (filterFramebuffer == 0)
        return;

    const int passes = std::max(1, numberOfPasses);
    const GLuint primaryFramebuffer = filterFramebuffer;
    GLuint source = sourceTexture;
    for (filterPass = 0; filterPass < passes; ++filterPass)
    {
        // Count back from the last pass so that it writes the primary (target-visible) texture.
        const bool toPrimary = ((passes - 1 - filterPass) % 2) == 0;
        filterFramebuffer = toPrimary ? primaryFramebuffer : secondFramebuffer;
        setInteger(filterPass, "filterPass");
        GPUImageFilter::renderToTextureWithVertices(vertices, filterPass == 0 ? textureCoordinates : GPUImageRotation::coordinates(0),
                                                    source);
        source = toPrimary ? outputTexture : secondTexture;
        if (filterPass + 1 < passes)
            glFinish();
    }
    filterFramebuffer = primaryFramebuffer;
}
