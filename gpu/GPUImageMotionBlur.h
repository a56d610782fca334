#pragma once
// A blur along one straight line at a given angle: gives each stroke copy its own direction.

#include "gpu/GPUImageTwoPassFilter.h"

class GPUImageMotionBlur : public GPUImageTwoPassTextureSamplingFilter
{
public:
    /** Builds the program for a line `length` pixels long. Only type 0 (a line average) exists;
        other types fail. Set the cache flags before. */
    virtual bool initFilter(float length, int type);
    virtual void setAngle(float value);
    virtual void setPasses(int count) { passes = count; }

    /** The program text for a length (what initFilter compiles). */
    static juce::String fragmentSourceFor(float length);

    void setupFilterForSize(GPUImageSize size) override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    float blurSpread = 1.0f;
    float angle = 0.0f;
    int32_t passes = 1;
    int32_t type = 0;
};
