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
    return currentRenderThread != nullptr || waitingForRest;
}

void PreviewRenderer::start(const LayerRect& region, bool showBusy)
{
    // How close this request follows the last one says whether the input moves.
    const auto now = juce::Time::currentTimeMillis();
    recentRequest = now - lastRenderRequest >= sameChangeMs && now - lastRenderRequest < draftWindowMs;
    lastRenderRequest = now;
    ++requests;
    stopWaitingForRest();
    // No queue: a change made now stays in the layers, and the end of the running render
    // renders the newest state.
    begin(region, showBusy);
}

bool PreviewRenderer::stopWaitingForRest()
{
    if (!waitingForRest)
        return false;
    stopTimer();
    waitingForRest = false;
    return true;
}

void PreviewRenderer::timerCallback()
{
    if (requests == requestsAtDraft && callback.previewInputMoving()
        && juce::Time::currentTimeMillis() - lastRenderRequest < restMs)
        return;
    stopWaitingForRest();
    auto* layers = callback.layersToPreview();
    if (layers != nullptr && layers->needsRender())
        begin(LayerRect::empty(), false);
    if (currentRenderThread == nullptr)
        callback.previewRenderingStopped();
}

bool PreviewRenderer::shouldDraft(const LayerRect& region) const
{
    // A draft of the newest state even when the hand just stopped: it comes sooner than the full
    // preview that follows it.
    if (!draftsEnabled || !region.meansWholePicture() || requests == requestsAtDraft)
        return false;
    return recentRequest || callback.previewInputMoving();
}

void PreviewRenderer::begin(const LayerRect& region, bool showBusy)
{
    auto* layers = callback.layersToPreview();
    auto* picture = callback.previewPicture();
    if (layers == nullptr || picture == nullptr || currentRenderThread != nullptr)
        return;

    LayerRect clamped = region;
    if (!clamped.meansWholePicture())
        clamped = clamped.clampedTo(LayerRect::wholeOf(*picture));

    requestsAtBegin = requests;
    drafting = shouldDraft(clamped) && draft.prepare(*layers);
    if (drafting)
        requestsAtDraft = requests;
    callback.previewRenderStarting(showBusy);
    layers->setHighQuality(false);
    layersRendering = layers;
    currentRenderThread = new RenderThread(this, clamped);
    currentRenderThread->startThread();
}

void PreviewRenderer::wait()
{
    if (stopWaitingForRest())
        callback.previewRenderingStopped();
    if (currentRenderThread == nullptr)
        return;
    // The thread's destructor waits for it to end.
    std::unique_ptr<RenderThread>(std::exchange(currentRenderThread, nullptr)).reset();
    drafting = false;
    draftPicture = {};
    callback.previewRenderingStopped();
}

SxImageRgbaBytes* PreviewRenderer::renderOnThread(const LayerRect& region)
{
    // The layers stay put while the thread runs: everything that replaces them waits first.
    if (drafting)
    {
        draftPicture = draft.render();
        return draftPicture.get();
    }
    return layersRendering->render(region.meansWholePicture() ? nullptr : &region, false, false);
}

void PreviewRenderer::finished(RenderThread* thread)
{
    if (thread != currentRenderThread)
        return; // a render stopped by an open or a quit; its owner deleted it already
    const SxRef<SxImageRgbaBytes> result = thread->result;
    const bool wasDraft = std::exchange(drafting, false);
    draftPicture = {};
    std::unique_ptr<RenderThread>(std::exchange(currentRenderThread, nullptr)).reset();
    if (wasDraft && result.get() == nullptr)
        draftsEnabled = false; // a draft that fails would fail again; the full previews go on
    callback.previewRendered(result.get(), wasDraft);
    if (result.get() != nullptr && requestsAtBegin == requests)
    {
        const auto lag = (int) (juce::Time::currentTimeMillis() - lastRenderRequest);
        if (requestsShown != requests)
            firstPictureLagMs = lag;
        if (!wasDraft)
            fullPictureLagMs = lag;
        requestsShown = requests;
    }

    // A change made while the thread ran marked its layer again, and a draft leaves the stack
    // to render in full. The newest state renders next, on a thread as well; the busy sign stays
    // up until the last render of the chain ends.
    auto* layers = callback.layersToPreview();
    if ((result.get() != nullptr || wasDraft) && layers != nullptr && layers->needsRender())
    {
        if (wasDraft && result.get() != nullptr && requests == requestsAtDraft && callback.previewInputMoving())
        {
            waitingForRest = true;
            startTimer(50);
            return;
        }
        begin(LayerRect::empty(), false);
        if (currentRenderThread != nullptr)
            return;
    }
    callback.previewRenderingStopped();
}
