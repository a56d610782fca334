#pragma once
// Middle stage of the direction field: a separable Gaussian-like blur of the structure tensors,
// which turns per-pixel gradients into the orientation of a neighbourhood.

#include "gpu/GPUImageTwoPassFilter.h"

class GPUImageBlurTensors : public GPUImageTwoPassTextureSamplingFilter
{
public:
    bool init();
    /** Distance between the seven taps, in texels; the reach is three times this. */
    void setBlurSpread(float value);
    /** How many times the vertical and horizontal pair is drawn; each repeat widens the blur. */
    void setPasses(int count) { passes = count; }

    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    float blurSpread = 1.0f;
    int32_t passes = 1;
};
