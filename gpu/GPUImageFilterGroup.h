#pragma once
// A sub-graph of filters that wires and runs like one filter: input goes to the initial filters,
// output comes from the terminal filter. The group owns the filters added to it.

#include "gpu/GPUImageFilter.h"

class GPUImageFilterGroup : public GPUImageOutput
{
public:
    ~GPUImageFilterGroup() override;

    /** Takes ownership of a member filter. */
    template <typename FilterType>
    FilterType* addFilter(FilterType* filter)
    {
        filters.push_back(filter);
        return filter;
    }

    // Sink side: forwarded to each initial filter.
    void newFrameReady() override;
    void setInputTexture(GLuint texture, int textureIndex) override;
    void setInputSize(GPUImageSize size, int textureIndex) override;
    void setInputRotation(int rotation, int textureIndex) override;
    int nextAvailableTextureIndex() override;
    void forceProcessingAtSize(GPUImageSize size) override;

    // Source side: forwarded to the terminal filter.
    void addTarget(GPUImageInput* target, int textureIndex) override;
    void addTarget(GPUImageInput* target) override;
    void removeTarget(GPUImageInput* target) override;
    void removeAllTargets() override;
    void setInputTextureForTarget(GPUImageInput* target, int textureIndex) override;
    GPUImageSize outputFrameSize() override;
    const uint8_t* readPixels(int& strideOut) override;
    void releaseReadPixels() override;
    bool readPixelsInto(SxImageRgbaBytes& image) override;

    /** Destroys and deletes every member. */
    void destroy() override;

    std::vector<GPUImageOutput*> initialFilters;
    std::vector<GPUImageOutput*> filters;
    GPUImageOutput* terminalFilter = nullptr;
    GPUImageInput* inputFilterToIgnoreForUpdates = nullptr;
    juce::String name;
};
