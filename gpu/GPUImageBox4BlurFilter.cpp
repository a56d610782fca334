#include "gpu/GPUImageBox4BlurFilter.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/ShaderStore.h"

GPUImageBox4BlurFilter::GPUImageBox4BlurFilter()
{
    setBlurSpread(1.0f);
}

bool GPUImageBox4BlurFilter::initFilter(bool alpha)
{
    preserveAlpha = alpha;
    // One text serves the three widths: the tap count is a constant of the program.
    juce::String fragment = "#define BOX_TAPS " + juce::String(tapCount()) + "\n";
    if (preserveAlpha)
        fragment << ShaderStore::swizzlePrefix << "\n" << ShaderStore::text("box_blur_alpha.frag");
    else
        fragment << ShaderStore::text("box_blur.frag");
    const auto& vertex = ShaderStore::text("box_blur.vert");
    return initWithShaders(vertex, fragment, vertex, fragment);
}

void GPUImageBox4BlurFilter::setBlurSpread(float value)
{
    blurSpread = value;
    setFloat(onSubtexelGridForHalfSteps(value), "blurSpread");
    setSecondFloat(onSubtexelGridForHalfSteps(value), "blurSpread");
}

GLProgram* GPUImageBox4BlurFilter::programFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(BoxBlurPasses::programKey(getClassName(), vertexSource, fragmentSource), vertexSource, fragmentSource);
}

GLProgram* GPUImageBox4BlurFilter::secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    return cachedProgram(BoxBlurPasses::programKey("secondProgram" + getClassName(), vertexSource, fragmentSource), vertexSource,
                         fragmentSource);
}

void GPUImageBox4BlurFilter::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
    drawRepeatedPairs(vertices, passes);
}
