#pragma once
// A separable box blur at a fixed number of linear fetches per pass, whose width grows with the
// spread of its taps: cheap at any size, and blockier as the spread leaves gaps between taps.
// GPUImageBox8BlurFilter and GPUImageBox12BlurFilter are the wider members of the family.

#include "gpu/GPUImageTwoPassFilter.h"

class GPUImageBox4BlurFilter : public GPUImageTwoPassTextureSamplingFilter
{
public:
    GPUImageBox4BlurFilter();

    /** Compiles both programs; the context must be current. preserveAlpha averages colours
        weighted by alpha and keeps each pixel's own alpha. */
    virtual bool initFilter(bool preserveAlpha);
    /** Distance between taps in texels (1 = a solid box). */
    virtual void setBlurSpread(float value);
    virtual void setPasses(int count) { passes = count; }
    /** Linear fetches per pass besides the centre; each covers two texels at spread 1. */
    virtual int tapCount() const { return 4; }

    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;
    GLProgram* programFor(const juce::String& vertexSource, const juce::String& fragmentSource) override;
    GLProgram* secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource) override;

    float blurSpread = 1.0f;
    int passes = 1;
    bool preserveAlpha = false;
};
