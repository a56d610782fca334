#pragma once
// The last stage of a stroke copy, for a stack of copies drawn one after the other into one
// picture: unsharp mask per Lab channel, conversion back to RGB, and the per-channel maximum with
// the copies drawn before, all in one draw. Its output texture holds the running maximum; the
// copies never leave the GPU, so a stack of them costs one read-back.
//
// Wide blurs (from a preview's up) are taken at a half or a quarter of the size: the blur of a
// lighting unsharp mask is wide and smooth. The blur at the smaller size is chosen to spread
// as far as the full-size one, the box average down and the linear fetch back up included.

#include "gpu/GPUImageFilterGroup.h"
#include "gpu/GPUImageTwoInputFilter.h"

class GPUImageGaussianBlur;

/** Shrinks its input by a whole factor (2 or 4) with a box average of the block under each pixel. */
class GPUImageDownsampleFilter : public GPUImageFilter
{
public:
    bool init(int factor);
    void setInputSize(GPUImageSize size, int textureIndex) override;
    GPUImageSize outputFrameSize() override;

    int factor = 1;
};

/** The mixing draw: reads the Lab picture, its blur and the running maximum (on a texture unit of
    its own), and draws into the other of two framebuffers, which then holds the new maximum. */
class GPUImageMaximumAccumulator : public GPUImageTwoInputFilter
{
public:
    bool init();
    void setIntensities(float red, float green, float blue);
    /** The factor by which the blurred input is smaller than the picture (1, 2 or 4). */
    int reduction = 1;
    /** Keeps the running maximum inverted (1 − maximum), for a stack whose copies were drawn from
        an inverted picture and which is inverted back afterwards. */
    void setInvertedStack(bool inverted) { setFloat(inverted ? 1.0f : 0.0f, "invertedStack"); }
    /** Forgets the copies drawn so far: the next draw starts a new stack. */
    void startStack() { hasAccumulation = false; }

    void setInputSize(GPUImageSize size, int textureIndex) override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;
    void destroyFilterFBO() override;
    void deleteOutputTexture() override;

private:
    GLuint spareFramebuffer = 0, spareTexture = 0;
    bool hasAccumulation = false;
};

class GPUImageLabSharpenLightenFilter : public GPUImageFilterGroup
{
public:
    /** radius is the blur's argument as for GPUImageGaussianBlur (two passes); the intensities
        act on L, a and b. The GL context must be current; false when a program fails. */
    virtual bool init(float radius, float intensityL, float intensityA, float intensityB);
    void startStack();

    /** The factor by which the blur's image is shrunk for a blur argument (1, 2 or 4). */
    static int reductionFor(float radius);
    /** The argument of the blur at the size shrunk by `reduction` that blurs as much as `radius`
        does at full size, the shrinking and enlarging included. */
    static float reducedArgument(float radius, int reduction);

    GPUImageDownsampleFilter* downsample = nullptr;
    GPUImageGaussianBlur* blurFilter = nullptr;
    GPUImageMaximumAccumulator* accumulator = nullptr;
};
