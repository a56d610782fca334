#pragma once
// The smallest blur of the family, for radii up to a texel and a half: the centre and one fetch on
// each side at a fractional distance, which linear filtering interpolates.

#include "gpu/GPUImageTwoPassFilter.h"

class GPUImageFractionalBoxBlurFilter : public GPUImageTwoPassTextureSamplingFilter
{
public:
    GPUImageFractionalBoxBlurFilter();

    /** Compiles both programs; the context must be current. */
    virtual bool initFilter(bool preserveAlpha);
    /** Distance of the side fetches in texels. */
    virtual void setBlurSize(float value);
    virtual void setPasses(int count) { passes = count; }

    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;
    GLProgram* programFor(const juce::String& vertexSource, const juce::String& fragmentSource) override;
    GLProgram* secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource) override;

    float blurSize = 1.0f;
    int passes = 1;
    bool preserveAlpha = false;
};
