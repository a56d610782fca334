#pragma once
// Smears a picture along a direction field: each pixel averages what a short walk along the
// field meets. The field (a GPUImageGetTensorsAngle result) is a CPU image uploaded at each draw.

#include "gpu/GPUImageTextureSamplingFilter.h"

class SxImageRgbaBytes;

class GPUImageAnisotropicSmooth : public GPUImageMultiPassTextureSamplingFilter
{
public:
    /** Keeps tensorImage (not owned; it must outlive the draws) and builds the program for a walk
        of at most `length` steps, each scaled by documentScale. Set the cache flags before. */
    bool init(const SxImageRgbaBytes* tensorImage, float length, double documentScale);

    /** The longest walk the program is built for: the whole steps of length, at least one. */
    static int loopBoundFor(float length);
    /** The program text for a bound and a scale (what init compiles). */
    static juce::String fragmentSourceFor(int loopBound, double documentScale);

    /** Where the field lies under this picture, in pixels: a pixel p of the picture reads the
        field at (p + tileOrigin) × ratio − fieldOrigin (see TiledRunner::SecondTileMapping).
        Until it is set, the field spans the picture (ratio from their sizes, origins 0). */
    void setTensorMapping(juce::Point<int> tileOrigin, juce::Point<double> ratio, juce::Point<int> fieldOrigin);

    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    const SxImageRgbaBytes* tensorImage = nullptr;
    bool hasTensorMapping = false;
    GLuint tensorTexture = 0;
    GLint tensorImageTextureUniform = -1;
};
