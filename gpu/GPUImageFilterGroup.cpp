#include "gpu/GPUImageFilterGroup.h"

GPUImageFilterGroup::~GPUImageFilterGroup()
{
    for (auto* f : filters)
        delete f;
}

void GPUImageFilterGroup::newFrameReady()
{
    for (auto* f : initialFilters)
        if (f != inputFilterToIgnoreForUpdates)
            f->newFrameReady();
}

void GPUImageFilterGroup::setInputTexture(GLuint texture, int textureIndex)
{
    for (auto* f : initialFilters)
        f->setInputTexture(texture, textureIndex);
}

void GPUImageFilterGroup::setInputSize(GPUImageSize size, int textureIndex)
{
    for (auto* f : initialFilters)
        f->setInputSize(size, textureIndex);
}

void GPUImageFilterGroup::setInputRotation(int rotation, int textureIndex)
{
    for (auto* f : initialFilters)
        f->setInputRotation(rotation, textureIndex);
}

int GPUImageFilterGroup::nextAvailableTextureIndex()
{
    return initialFilters.empty() ? 0 : initialFilters.front()->nextAvailableTextureIndex();
}

void GPUImageFilterGroup::forceProcessingAtSize(GPUImageSize size)
{
    for (auto* f : initialFilters)
        f->forceProcessingAtSize(size);
}

void GPUImageFilterGroup::addTarget(GPUImageInput* target, int textureIndex)
{
    if (terminalFilter != nullptr)
        terminalFilter->addTarget(target, textureIndex);
}

void GPUImageFilterGroup::addTarget(GPUImageInput* target)
{
    if (terminalFilter != nullptr)
        terminalFilter->addTarget(target);
}

void GPUImageFilterGroup::removeTarget(GPUImageInput* target)
{
    if (terminalFilter != nullptr)
        terminalFilter->removeTarget(target);
}

void GPUImageFilterGroup::removeAllTargets()
{
    if (terminalFilter != nullptr)
        terminalFilter->removeAllTargets();
}

void GPUImageFilterGroup::setInputTextureForTarget(GPUImageInput* target, int textureIndex)
{
    if (terminalFilter != nullptr)
        terminalFilter->setInputTextureForTarget(target, textureIndex);
}

GPUImageSize GPUImageFilterGroup::outputFrameSize()
{
    return terminalFilter != nullptr ? terminalFilter->outputFrameSize() : GPUImageSize {};
}

const uint8_t* GPUImageFilterGroup::readPixels(int& strideOut)
{
    if (terminalFilter == nullptr)
    {
        strideOut = 0;
        return nullptr;
    }
    return terminalFilter->readPixels(strideOut);
}

void GPUImageFilterGroup::releaseReadPixels()
{
    if (terminalFilter != nullptr)
        terminalFilter->releaseReadPixels();
}

bool GPUImageFilterGroup::readPixelsInto(SxImageRgbaBytes& image)
{
    return terminalFilter != nullptr && terminalFilter->readPixelsInto(image);
}

void GPUImageFilterGroup::destroy()
{
    for (auto* f : filters)
    {
        f->removeAllTargets();
        f->deleteOutputTexture();
    }
    GPUImageOutput::removeAllTargets();
    GPUImageOutput::deleteOutputTexture();
    for (auto* f : filters)
    {
        f->destroy();
        delete f;
    }
    filters.clear();
    initialFilters.clear();
    terminalFilter = nullptr;
}
