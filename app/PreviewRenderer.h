#pragma once
// The interactive preview render: one render at a time on a RenderThread, never on the message
// thread. A change made while a render runs is left in the layers, and the end of the render
// starts the newest state at once, so the states in between are never rendered and the window
// keeps answering. While the input moves (a slider held, or changes coming faster than every
// draftWindowMs), a render is a draft of a reduced copy first (see DraftPreview), and the full
// preview follows once the input rests. It knows the window only through PreviewRendererCallback.

#include "app/DraftPreview.h"
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
    /** A render ended with picture (null when it failed); a draft is the preview's size too. */
    virtual void previewRendered(SxImageRgbaBytes* picture, bool draft) = 0;
    /** Whether the hand is on a control that changes the picture as it moves (a slider held). */
    virtual bool previewInputMoving() { return false; }
    /** The last render of a chain ended, or one was stopped: the busy sign goes. */
    virtual void previewRenderingStopped() = 0;
};

class PreviewRenderer : private juce::Timer
{
public:
    explicit PreviewRenderer(PreviewRendererCallback& callback);
    /** Waits for a running render. */
    ~PreviewRenderer() override;

    /** A change asks for a render of region: it starts unless one runs (its end catches up)
        or the callback has no layers to give. Message thread only. */
    void start(const LayerRect& region, bool showBusy);
    /** Stops a running render and waits for it: before the document changes, before a job
        takes the GL context, and at quit. A render is never cut off half-way: it holds the GL
        context and the layers. */
    void wait();
    /** A render runs, or the full preview waits for the hand to rest. */
    bool isRendering() const;
    bool isDrafting() const { return drafting; }

    /** Changes closer together than this count as a moving input. */
    static constexpr int draftWindowMs = 300;
    /** Requests closer than this belong to one change. */
    static constexpr int sameChangeMs = 10;
    /** A hand held still on a control this long counts as resting: the full preview starts. */
    static constexpr int restMs = 1000;
    /** Whether drafts are made at all; off after a draft failed. */
    bool draftsEnabled = true;
    /** How long the newest change waited for its first picture (a draft or in full), and for
        its full preview, in milliseconds; -1 until one was shown. */
    int getFirstPictureLagMs() const { return firstPictureLagMs; }
    int getFullPictureLagMs() const { return fullPictureLagMs; }
    /** The draft's size rule, for a test or a setting that wants other sizes. */
    DraftPreview& getDraft() { return draft; }

    /** Called by the render thread. */
    SxImageRgbaBytes* renderOnThread(const LayerRect& region);
    /** Called by the completion message on the message thread. */
    void finished(RenderThread* thread);

private:
    void begin(const LayerRect& region, bool showBusy);
    /** Ends a wait for the hand to rest, if one runs; true when it did. */
    bool stopWaitingForRest();
    void timerCallback() override;
    bool shouldDraft(const LayerRect& region) const;

    PreviewRendererCallback& callback;
    DraftPreview draft;
    bool drafting = false;
    /** A draft shows the newest state while the hand stays on the control: the full preview
        waits for it to let go or rest, since it would hold the next draft back for a whole
        render. Counts as rendering. */
    bool waitingForRest = false;
    /** Counts the requests, and the count when the last draft began: a draft of a state that
        did not change since is not made twice. */
    juce::int64 requests = 0, requestsAtDraft = -1;
    /** The requests that the running render covers, and that the screen shows. */
    juce::int64 requestsAtBegin = 0, requestsShown = 0;
    int firstPictureLagMs = -1, fullPictureLagMs = -1;
    /** Whether the last request came within draftWindowMs of the one before, and not in the
        same breath: one change may ask twice at once. */
    bool recentRequest = false;
    SxRef<SxImageRgbaBytes> draftPicture;
    /** The stack the running render reads; set before its thread starts. */
    LayerManager* layersRendering = nullptr;
    JUCE_DECLARE_WEAK_REFERENCEABLE(PreviewRenderer)
};
