#include "app/PreviewRenderer.h"

#include "app/RenderThread.h"
#include "document/LayerManager.h"

#include <memory>
#include <utility>

PreviewRenderer::PreviewRenderer(PreviewRendererCallback& cb) : callback(cb)
{
}

PreviewRenderer::~PreviewRenderer()
{
    wait();
}

bool PreviewRenderer::isRendering() const
{
    return currentRenderThread != nullptr;
}

void PreviewRenderer::start(const LayerRect& region, bool showBusy)
{
    lastRenderRequest = juce::Time::currentTimeMillis();
    // No queue: a change made now stays in the layers, and the end of the running render
    // renders the newest state.
    auto* layers = callback.layersToPreview();
    auto* picture = callback.previewPicture();
    if (layers == nullptr || picture == nullptr || currentRenderThread != nullptr)
        return;

    LayerRect clamped = region;
    if (!clamped.meansWholePicture())
        clamped = clamped.clampedTo(LayerRect::wholeOf(*picture));

    callback.previewRenderStarting(showBusy);
    layers->setHighQuality(false);
    layersRendering = layers;
    currentRenderThread = new RenderThread(this, clamped);
    currentRenderThread->startThread();
}

void PreviewRenderer::wait()
{
    if (currentRenderThread == nullptr)
        return;
    // The thread's destructor waits for it to end.
    std::unique_ptr<RenderThread>(std::exchange(currentRenderThread, nullptr)).reset();
    callback.previewRenderingStopped();
}

SxImageRgbaBytes* PreviewRenderer::renderOnThread(const LayerRect& region)
{
    // The layers stay put while the thread runs: everything that replaces them waits first.
    return layersRendering->render(region.meansWholePicture() ? nullptr : &region, false, false);
}

void PreviewRenderer::finished(RenderThread* thread)
{
    if (thread != currentRenderThread)
        return; // a render stopped by an open or a quit; its owner deleted it already
    const SxRef<SxImageRgbaBytes> result = thread->result;
    std::unique_ptr<RenderThread>(std::exchange(currentRenderThread, nullptr)).reset();
    callback.previewRendered(result.get());

    // A change made while the thread ran marked its layer again. The newest state renders next,
    // on a thread as well; the busy sign stays up until the last render of the chain ends.
    auto* layers = callback.layersToPreview();
    if (result.get() != nullptr && layers != nullptr && layers->needsRender())
    {
        start(LayerRect::empty(), false);
        if (currentRenderThread != nullptr)
            return;
    }
    callback.previewRenderingStopped();
}
