#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

bool GPUImageTwoInputFilter::initWithFragmentShader(const juce::String& fragmentSource)
{
    return initWithShaders(ShaderStore::text("two_input.vert"), fragmentSource);
}

void GPUImageTwoInputFilter::initializeAttributes()
{
    GPUImageFilter::initializeAttributes();
    filterProgram->addAttribute("inputTextureCoordinate2");
}

bool GPUImageTwoInputFilter::initWithShaders(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    if (!GPUImageFilter::initWithShaders(vertexSource, fragmentSource))
        return false;
    ScopedGLContext scoped;
    filterSecondTextureCoordinateAttribute = filterProgram->attributeIndex("inputTextureCoordinate2");
    filterInputTextureUniform2 = filterProgram->uniformIndex("inputImageTexture2");
    glEnableVertexAttribArray(filterSecondTextureCoordinateAttribute);
    return true;
}

void GPUImageTwoInputFilter::setInputTexture(GLuint texture, int textureIndex)
{
    if (textureIndex == 0)
    {
        filterSourceTexture = texture;
        hasSetFirstTexture = true;
    }
    else
        filterSourceTexture2 = texture;
}

void GPUImageTwoInputFilter::setInputSize(GPUImageSize size, int textureIndex)
{
    if (textureIndex != 0)
        return;
    GPUImageFilter::setInputSize(size, textureIndex);
    if (size.isEmpty())
        hasSetFirstTexture = false;
}

void GPUImageTwoInputFilter::setInputRotation(int rotation, int textureIndex)
{
    if (textureIndex == 0)
        inputRotation = rotation;
    else
        inputRotation2 = rotation;
}

GPUImageSize GPUImageTwoInputFilter::rotatedSize(GPUImageSize size, int textureIndex)
{
    const int rotation = textureIndex == 0 ? inputRotation : inputRotation2;
    if (GPUImageRotation::swapsWidthAndHeight(rotation))
        return { size.height, size.width };
    return size;
}

void GPUImageTwoInputFilter::renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture)
{
    if (preventRendering || filterProgram == nullptr)
        return;
    ScopedGLContext scoped;
    filterProgram->use();
    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, filterSourceTexture2);
    glUniform1i(filterInputTextureUniform2, 3);
    glEnableVertexAttribArray(filterSecondTextureCoordinateAttribute);
    glVertexAttribPointer(filterSecondTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0, GPUImageRotation::coordinates(inputRotation2));
    GPUImageFilter::renderToTextureWithVertices(vertices, textureCoordinates, sourceTexture);
}
