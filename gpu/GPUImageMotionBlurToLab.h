#pragma once
// The line blur of a stroke copy whose picture was sharpened before it (see
// GPUImageUnsharpMaskUnclampedFilter): its passes read and write half floats, so overshoots
// survive, and its last draw clamps and converts to Lab into a texture of its own (half floats as
// well), which is what targets read. One draw does what the sharpen-to-Lab draw after a line blur
// did.

#include "gpu/GPUImageMotionBlur.h"

class GPUImageMotionBlurToLab : public GPUImageMotionBlur
{
public:
    /** As GPUImageMotionBlur::initFilter; the context must support half-float targets. */
    bool initFilter(float length, int type) override;

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
