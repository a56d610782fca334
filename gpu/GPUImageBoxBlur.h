#pragma once
// A separable box blur of any radius up to 12 texels, its programs generated for the radius: taps
// sit between texel centres so each linear fetch averages two texels, and the outermost pair is
// weighted by the fraction of the radius it covers, so the blur grows smoothly with the radius.

#include "gpu/GPUImageTwoPassFilter.h"

class GPUImageBoxBlur : public GPUImageTwoPassTextureSamplingFilter
{
public:
    explicit GPUImageBoxBlur(float radius = 1.0f);

    /** Generates and compiles both programs for blurRadius and blurSpread; the context must be
        current. preserveAlpha averages colours weighted by alpha and keeps each pixel's alpha. */
    virtual bool initFilter(bool preserveAlpha);
    /** Scales the tap offsets; it is part of the generated vertex text, so set it before initFilter. */
    virtual void setBlurSpread(float value) { blurSpread = value; }
    virtual void setPasses(int count) { passes = count; }

    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;
    GLProgram* programFor(const juce::String& vertexSource, const juce::String& fragmentSource) override;
    GLProgram* secondProgramFor(const juce::String& vertexSource, const juce::String& fragmentSource) override;

    /** Radii beyond this cost more taps than a second pass of a wider spread would. */
    static constexpr float maximumRadius = 12.0f;
    static juce::String vertexText(float spread);
    static juce::String fragmentText(float radius, bool preserveAlpha);
    /** Linear fetches per pixel of one pass, the centre included. */
    static int fetchesPerPass(float radius, bool preserveAlpha = false);

    float blurRadius = 1.0f;
    float blurSpread = 1.0f;
    int passes = 1;
    bool preserveAlpha = false;
};

/** What the filters of the box family share: program keys that tell program variants apart. */
namespace BoxBlurPasses
{
/** A cache key that differs for every distinct pair of texts of one class. */
juce::String programKey(const juce::String& className, const juce::String& vertexSource, const juce::String& fragmentSource);
} // namespace BoxBlurPasses
