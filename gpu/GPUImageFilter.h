#pragma once
// One draw of a full-screen quad with a fragment program, from the input texture into the
// filter's own framebuffer. Uniform values are queued by name and re-applied at every draw, so a
// filter can be configured before its program exists and re-run on tile after tile.

#include "gpu/GPUImageOutput.h"

#include <juce_core/juce_core.h>
#include <juce_graphics/juce_graphics.h>

class GLProgram;

/** Texture coordinates for the rotations a chain can apply to its input. */
namespace GPUImageRotation
{
enum : int
{
    none = 0,
    left = 1,
    right = 2,
    flipVertical = 3,
    flipHorizontal = 4,
    rightFlipVertical = 5
};
const GLfloat* coordinates(int rotation);
const GLfloat* quadVertices();
bool swapsWidthAndHeight(int rotation);
} // namespace GPUImageRotation

class GPUImageFilter : public GPUImageOutput
{
public:
    GPUImageFilter() = default;
    /** Frees CPU memory only; destroy() must have released the GL objects. */
    ~GPUImageFilter() override = default;

    // Sink side.
    void newFrameReady() override;
    void setInputTexture(GLuint texture, int textureIndex) override;
    void setInputSize(GPUImageSize size, int textureIndex) override;
    void setInputRotation(int rotation, int textureIndex) override;
    void destroy() override;

    void forceProcessingAtSize(GPUImageSize size) override;
    virtual void forceProcessingAtSizeRespectingAspectRatio(GPUImageSize size);
    const uint8_t* readPixels(int& strideOut) override;
    void releaseReadPixels() override;
    bool readPixelsInto(SxImageRgbaBytes& image) override;

    /** Builds the program from the default pass-through vertex text and this fragment text. */
    virtual bool initWithFragmentShader(const juce::String& fragmentSource);
    virtual bool initWithShaders(const juce::String& vertexSource, const juce::String& fragmentSource);
    virtual GLProgram* programFor(const juce::String& vertexSource, const juce::String& fragmentSource);
    virtual bool linkProgram();
    virtual void releaseProgram();
    virtual void initializeAttributes();
    virtual void setupFilterForSize(GPUImageSize size);
    virtual GPUImageSize rotatedSize(GPUImageSize size, int textureIndex);
    virtual void recreateFilterFBO();
    virtual void createFilterFBOofSize(GPUImageSize size);
    virtual void destroyFilterFBO();
    virtual void setFilterFBO();
    virtual void setOutputFBO();
    virtual void setExternalFBO(GLuint framebuffer, GLuint texture, GPUImageSize size);
    virtual void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture);
    virtual void informTargetsAboutNewFrame();
    GPUImageSize outputFrameSize() override;

    void setBackgroundColor(float red, float green, float blue, float alpha);
    void setInteger(int value, const juce::String& uniformName);
    void setFloat(float value, const juce::String& uniformName);
    void setPoint(juce::Point<float> point, const juce::String& uniformName);
    virtual void setUniforms();

    /** The key of this filter's program in the cache: the run-time class, filled at first use. */
    const juce::String& getClassName();

    /** A label for the filter within a chain (such as "unSharpMaskFilter1"); informational. */
    juce::String name;

    GLuint filterSourceTexture = 0;
    GLuint filterFramebuffer = 0;
    GLProgram* filterProgram = nullptr;
    GLuint filterPositionAttribute = 0, filterTextureCoordinateAttribute = 0;
    GLint filterInputTextureUniform = -1;
    float backgroundColor[4] = { 0.0f, 0.0f, 0.0f, 0.0f };
    int inputRotation = GPUImageRotation::none;
    bool preventRendering = false;
    bool useProgramCache = false;
    juce::String className;
    bool compareProgramSource = false;

    // Queued uniform values: a value set again under its name replaces the old entry and moves to
    // the end; the queues are applied at every draw and never emptied.
    template <typename T>
    struct UniformQueue
    {
        std::vector<T> values;
        std::vector<juce::String> names;
        void set(const T& value, const juce::String& uniformName);
        size_t size() const { return values.size(); }
    };
    UniformQueue<int> pendingIntegerUniforms;
    UniformQueue<float> pendingFloatUniforms;
    UniformQueue<juce::Point<float>> pendingPointUniforms;

protected:
    /** Fetches a program through the cache (when enabled) under the given key. */
    GLProgram* cachedProgram(const juce::String& key, const juce::String& vertexSource, const juce::String& fragmentSource);
    static void applyUniforms(GLProgram& program, const UniformQueue<int>&, const UniformQueue<float>&,
                              const UniformQueue<juce::Point<float>>&);
    /** Allocates storage for a texture at the given size and attaches it to a new framebuffer. */
    static GLuint createFramebufferForTexture(GLuint texture, GPUImageSize size);

    bool ownsFramebuffer = true;
};

template <typename T>
void GPUImageFilter::UniformQueue<T>::set(const T& value, const juce::String& uniformName)
{
    for (size_t i = 0; i < names.size(); ++i)
    {
        if (names[i] == uniformName)
        {
            names.erase(names.begin() + (long) i);
            values.erase(values.begin() + (long) i);
            break;
        }
    }
    names.push_back(uniformName);
    values.push_back(value);
}
