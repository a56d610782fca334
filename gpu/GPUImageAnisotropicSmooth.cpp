#include "gpu/GPUImageAnisotropicSmooth.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"
#include "imaging/SxImageRgbaBytes.h"

namespace
{
// The field sits on the unit after the chain's own inputs (2 and 3).
constexpr int tensorTextureUnit = 4;
} // namespace

int GPUImageAnisotropicSmooth::loopBoundFor(float length)
{
    return std::max(1, (int) length);
}

juce::String GPUImageAnisotropicSmooth::fragmentSourceFor(int loopBound, double documentScale)
{
    const auto body = ShaderStore::text("anisotropic_smooth.frag").replace("HARD_CODED_LENGTH", juce::String(loopBound));
    return ShaderStore::composeColourProgram(body).replace("DOC_SCALE", juce::String(documentScale, 2));
}

bool GPUImageAnisotropicSmooth::init(const SxImageRgbaBytes* image, float length, double documentScale)
{
    tensorImage = image;
    if (!initWithShaders(ShaderStore::text("passthrough.vert"), fragmentSourceFor(loopBoundFor(length), documentScale)))
        return false;
    ScopedGLContext scoped;
    tensorImageTextureUniform = filterProgram->uniformIndex("tensorImageTexture");
    hasTensorMapping = false;
    return true;
}

void GPUImageAnisotropicSmooth::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr || tensorImage == nullptr || tensorImage->width <= 0)
        return;
    ScopedGLContext scoped;
    glActiveTexture(GL_TEXTURE0 + tensorTextureUnit);
    glGenTextures(1, &tensorTexture);
    glBindTexture(GL_TEXTURE_2D, tensorTexture);
    // Linear filtering interpolates the field where it was computed at a smaller size.
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, tensorImage->width, tensorImage->height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 tensorImage->pixels);
    setInteger(tensorTextureUnit, "tensorImageTexture");
    setPoint({ 1.0f / (float) tensorImage->width, 1.0f / (float) tensorImage->height }, "fieldTexel");
    const auto size = outputFrameSize();
    if (!hasTensorMapping && !size.isEmpty())
    {
        setPoint({ 0.0f, 0.0f }, "tileOrigin");
        setPoint({ 0.0f, 0.0f }, "fieldOrigin");
        setPoint({ (float) (tensorImage->width / (double) size.width), (float) (tensorImage->height / (double) size.height) }, "fieldRatio");
    }

    GPUImageMultiPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);

    glActiveTexture(GL_TEXTURE0 + tensorTextureUnit);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDeleteTextures(1, &tensorTexture);
    tensorTexture = 0;
}

void GPUImageAnisotropicSmooth::setTensorMapping(juce::Point<int> tileOrigin, juce::Point<double> ratio, juce::Point<int> fieldOrigin)
{
    hasTensorMapping = true;
    setPoint(tileOrigin.toFloat(), "tileOrigin");
    setPoint({ (float) ratio.x, (float) ratio.y }, "fieldRatio");
    setPoint(fieldOrigin.toFloat(), "fieldOrigin");
}
