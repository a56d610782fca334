#pragma once
// The interactive preview render: one render at a time on a RenderThread, never on the message
// thread. A change made while a render runs is left in the layers, and the end of the render
// starts the newest state at once, so the states in between are never rendered and the window
// keeps answering. It knows the window only through PreviewRendererCallback.

#include "document/LayerRenderParameters.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

class LayerManager;
class RenderThread;

/** What the preview renderer asks of the window that shows its pictures. */
class PreviewRendererCallback
{
public:
    virtual ~PreviewRendererCallback() = default;
    /** The stack to render, or null while no picture is shown or a job holds the layers. */
    virtual LayerManager* layersToPreview() = 0;
    /** The preview-sized picture that a region is clamped to. */
    virtual SxImageRgbaBytes* previewPicture() = 0;
    /** A render takes the GL context now: whatever else uses it stops; showBusy puts up the
        busy sign. */
    virtual void previewRenderStarting(bool showBusy) = 0;
    /** A render ended with picture (null when it failed). */
    virtual void previewRendered(SxImageRgbaBytes* picture) = 0;
    /** The last render of a chain ended, or one was stopped: the busy sign goes. */
    virtual void previewRenderingStopped() = 0;
};

class PreviewRenderer
{
public:
    explicit PreviewRenderer(PreviewRendererCallback& callback);
    /** Waits for a running render. */
    ~PreviewRenderer();

    /** Starts a render of region unless one runs (its end catches up) or the callback has no
        layers to give. Message thread only. */
    void start(const LayerRect& region, bool showBusy);
    /** Stops a running render and waits for it: before the document changes, before a job
        takes the GL context, and at quit. A render is never cut off half-way: it holds the GL
        context and the layers. */
    void wait();
    bool isRendering() const;

    /** Called by the render thread. */
    SxImageRgbaBytes* renderOnThread(const LayerRect& region);
    /** Called by the completion message on the message thread. */
    void finished(RenderThread* thread);

private:
    PreviewRendererCallback& callback;
    /** The stack the running render reads; set before its thread starts. */
    LayerManager* layersRendering = nullptr;
    JUCE_DECLARE_WEAK_REFERENCEABLE(PreviewRenderer)
};
