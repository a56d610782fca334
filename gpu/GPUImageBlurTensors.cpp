#include "gpu/GPUImageBlurTensors.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

bool GPUImageBlurTensors::init()
{
    const auto& vertex = ShaderStore::text("blur_tensors.vert");
    const auto& fragment = ShaderStore::text("blur_tensors.frag");
    if (!initWithShaders(vertex, fragment, vertex, fragment))
        return false;
    setBlurSpread(blurSpread);
    return true;
}

void GPUImageBlurTensors::setBlurSpread(float value)
{
    blurSpread = value;
    setFloat(value, "blurSpread");
    setSecondFloat(value, "blurSpread");
}

void GPUImageBlurTensors::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
    if (preventRendering || filterProgram == nullptr || secondFilterProgram == nullptr || filterFramebuffer == 0)
        return;
    ScopedGLContext scoped;
    // Repeats read the pair's own result, which is already upright.
    for (int i = 1; i < passes; ++i)
    {
        drawFirstPass(vertices, GPUImageRotation::coordinates(GPUImageRotation::none), secondFilterOutputTexture);
        drawSecondPass(vertices, outputTexture);
    }
}
