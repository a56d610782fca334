#pragma once
// The sink side of a filter chain: anything that can be handed a texture and told a frame is ready.

#include "gpu/GLHeaders.h"
#include "gpu/GPUImageSize.h"

class GPUImageInput
{
public:
    virtual ~GPUImageInput() = default;

    virtual void newFrameReady() = 0;
    virtual void setInputTexture(GLuint texture, int textureIndex) = 0;
    virtual int nextAvailableTextureIndex() { return 0; }
    virtual void setInputSize(GPUImageSize size, int textureIndex) = 0;
    virtual void setInputRotation(int /*rotation*/, int /*textureIndex*/) {}
    virtual GPUImageSize maximumOutputSize() { return {}; }
    virtual void endProcessing() {}
    virtual bool shouldIgnoreUpdatesToThisTargetQuery() { return false; }

    /** Frees the node's GL objects; needs the context. Called before a node is deleted. */
    virtual void destroy() {}
};
