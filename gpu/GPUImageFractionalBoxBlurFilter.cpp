#include "gpu/GPUImageFractionalBoxBlurFilter.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/ShaderStore.h"

GPUImageFractionalBoxBlurFilter::GPUImageFractionalBoxBlurFilter()
{
    useProgramCache = true;
    setBlurSize(1.0f);
}

bool GPUImageFractionalBoxBlurFilter::initFilter(bool alpha)
{
    preserveAlpha = alpha;
    const auto fragment = preserveAlpha ? juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("fractional_box_blur_alpha.frag")
                                        : ShaderStore::text("fractional_box_blur.frag");
    const auto& vertex = ShaderStore::text("box_blur.vert");
    return initWithShaders(vertex, fragment, vertex, fragment);
}

void GPUImageFractionalBoxBlurFilter::setBlurSize(float value)
{
    blurSize = value;
    // The shared vertex program scales its step by "blurSpread".
    setFloat(onSubtexelGrid(value), "blurSpread");
    setSecondFloat(onSubtexelGrid(value), "blurSpread");
}

GLProgram* GPUImageFractionalBoxBlurFilter::programFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(BoxBlurPasses::programKey(getClassName(), vertexSource, fragmentSource), vertexSource, fragmentSource);
}

GLProgram* GPUImageFractionalBoxBlurFilter::secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(BoxBlurPasses::programKey("secondProgram" + getClassName(), vertexSource, fragmentSource), vertexSource,
                         fragmentSource);
}

void GPUImageFractionalBoxBlurFilter::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates,
                                                                   GLuint sourceTexture)
{
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
    drawRepeatedPairs(vertices, passes);
}
