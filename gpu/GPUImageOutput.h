#pragma once
// The source side of a filter chain: holds an output texture and the targets it feeds.
// Targets are not owned, with one exception kept from the chain's design: removeTarget() destroys
// and deletes the target it removes, while removeAllTargets() only forgets them.

#include "gpu/GPUImageInput.h"

#include <vector>

class SxImageRgbaBytes;

class GPUImageOutput : public GPUImageInput
{
public:
    ~GPUImageOutput() override = default;

    // A pure source ignores what sinks are told.
    void newFrameReady() override {}
    void setInputTexture(GLuint, int) override {}
    void setInputSize(GPUImageSize, int) override {}

    virtual void initializeOutputTexture();
    void destroy() override;
    virtual void createOutputTexture();
    /** A new empty texture with the sampling every filter reads with (linear, clamped at the
        edges), for a filter that draws into more than one texture; the caller owns it. */
    static GLuint makeTexture();
    /** Deletes a texture or a framebuffer the caller owns, if there is one, and zeroes its name. */
    static void deleteTexture(GLuint& texture);
    static void deleteFramebuffer(GLuint& framebuffer);
    virtual void setInputTextureForTarget(GPUImageInput* target, int textureIndex);
    virtual void addTarget(GPUImageInput* target, int textureIndex);
    virtual void addTarget(GPUImageInput* target);
    virtual void removeTarget(GPUImageInput* target);
    virtual void removeAllTargets();
    virtual void deleteOutputTexture();

    virtual void forceProcessingAtSize(GPUImageSize) {}
    virtual GPUImageSize outputFrameSize() { return inputTextureSize; }

    /** Reads the finished frame: returns width × height × 4 bytes (valid until releaseReadPixels)
        and the row stride in strideOut. Only one readback may be open at a time. */
    virtual const uint8_t* readPixels(int& strideOut) { strideOut = 0; return nullptr; }
    virtual void releaseReadPixels() {}
    /** Reads the frame straight into an image of the frame's size. */
    virtual bool readPixelsInto(SxImageRgbaBytes&) { return false; }

    const std::vector<GPUImageInput*>& getTargets() const { return targets; }
    GLuint getOutputTexture() const { return outputTexture; }

    std::vector<GPUImageInput*> targets;
    std::vector<int> targetTextureIndices;
    GLuint outputTexture = 0;
    GPUImageSize inputTextureSize;
    GPUImageSize cachedMaximumOutputSize;
    GPUImageSize forcedMaximumSize;
    bool overrideInputSize = false;
    bool shouldIgnoreUpdatesToThisTarget = false;
    GPUImageInput* targetToIgnoreForUpdates = nullptr;

    bool shouldIgnoreUpdatesToThisTargetQuery() override { return shouldIgnoreUpdatesToThisTarget; }
};
