#pragma once
// A filter that samples two textures at the same place: the first input decides the size, the
// second is read through "inputImageTexture2" on texture unit 3.

#include "gpu/GPUImageFilter.h"

class GPUImageTwoInputFilter : public GPUImageFilter
{
public:
    bool initWithFragmentShader(const juce::String& fragmentSource) override;
    void initializeAttributes() override;
    bool initWithShaders(const juce::String& vertexSource, const juce::String& fragmentSource) override;

    int nextAvailableTextureIndex() override { return hasSetFirstTexture ? 1 : 0; }
    void setInputTexture(GLuint texture, int textureIndex) override;
    void setInputSize(GPUImageSize size, int textureIndex) override;
    void setInputRotation(int rotation, int textureIndex) override;
    GPUImageSize rotatedSize(GPUImageSize size, int textureIndex) override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    int inputRotation2 = GPUImageRotation::none;
    GLuint filterSourceTexture2 = 0;
    bool hasSetFirstTexture = false;
    GLuint filterSecondTextureCoordinateAttribute = 0;
    GLint filterInputTextureUniform2 = -1;
};
