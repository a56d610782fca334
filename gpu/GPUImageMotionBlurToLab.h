#pragma once
// The line blur of a stroke copy whose picture was sharpened before it (see
// GPUImageUnsharpMaskUnclampedFilter): its passes read and write the sharpened picture's byte
// encoding, which keeps the overshoots, and its last draw decodes, clamps and converts to Lab into
// a texture of its own, which is what targets read. One draw does what the sharpen-to-Lab draw
// after a line blur did.

#include "gpu/GPUImageMotionBlur.h"

class GPUImageMotionBlurToLab : public GPUImageMotionBlur
{
public:
    bool initFilter(float length, int type) override;
    /** The sharpening amount that the GPUImageUnsharpMaskUnclampedFilter it reads was given: the
        encoding's range. Set after initFilter. */
    void setEncodedRange(float amount);
    juce::String programPrefix() const override;

    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;
    void setInputTextureForTarget(GPUImageInput* target, int textureIndex) override;
    void createFilterFBOofSize(GPUImageSize size) override;
    void destroyFilterFBO() override;
    void deleteOutputTexture() override;
    void setOutputFBO() override;
    void releaseProgram() override;

private:
    void drawLabPass(const GLfloat* vertices, GLuint sourceTexture);

    GLProgram* labProgram = nullptr;
    GLuint labPositionAttribute = 0, labTextureCoordinateAttribute = 0;
    GLint labInputTextureUniform = -1;
    GLuint labFramebuffer = 0, labTexture = 0;
};
