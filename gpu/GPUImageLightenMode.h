#pragma once
// Merges an overlay image into the input by per-channel maximum, the overlay scaled by a strength.
// An opaque overlay gives the pure maximum; where the overlay is transparent the result follows
// the overlay. The overlay is uploaded to a texture of its own at each draw, so one filter can be
// fed a different overlay tile for every input tile.

#include "gpu/GPUImageFilter.h"

class GPUImageLightenMode : public GPUImageFilter
{
public:
    GPUImageLightenMode();

    /** Compiles the program; the context must be current. */
    virtual bool init();
    virtual void setStrength(float value);
    /** The overlay, not owned; it must outlive the draws. Any size: it is stretched over the input. */
    virtual void setSourceImage(const SxImageRgbaBytes* image);

    void setupFilterForSize(GPUImageSize size) override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    /** Texture unit of the overlay: units 2 and 3 are the chain's inputs. */
    static constexpr int sourceTextureUnit = 4;

    GLuint srcTexture = 0;
    const SxImageRgbaBytes* srcImage = nullptr;
    GLint strengthUniform = -1, srcTextureUniform = -1;
};
