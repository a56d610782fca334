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
    setFloat(onSubtexelGrid(value), "blurSpread");
    setSecondFloat(onSubtexelGrid(value), "blurSpread");
}

void GPUImageBlurTensors::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
    drawRepeatedPairs(vertices, passes);
}
