#pragma once
// The interactive preview render off the message thread. One render runs at a time: the thread
// pointer below is the program's render lock, set and cleared on the message thread only. When
// the render ends, a message brings the result back to the message thread.

#include "app/PreviewRenderer.h"
#include "document/LayerRenderParameters.h"
#include "imaging/SxImageRgbaBytes.h"
#include "imaging/SxSmartPtr.h"

#include <juce_gui_basics/juce_gui_basics.h>

class RenderThread;

/** The running preview render, or null. Anything that must not run beside a render tests it. */
extern RenderThread* currentRenderThread;
/** When the last render was asked for (milliseconds of the system clock). */
extern juce::int64 lastRenderRequest;

/** Posted by a finished RenderThread; runs on the message thread. An open or a quit may have
    stopped and deleted the thread, or the renderer, before the message arrives: then it does
    nothing. It therefore never reaches through the thread pointer it holds, and tells threads
    apart by their serial number, since a new thread may reuse a deleted one's address. */
class RenderPreviewCompleteMessage : public juce::CallbackMessage
{
public:
    RenderPreviewCompleteMessage(PreviewRenderer* owner, RenderThread* finished, int serialNumber);
    void messageCallback() override;

private:
    juce::WeakReference<PreviewRenderer> renderer;
    RenderThread* thread;
    int serial;
};

class RenderThread : public juce::Thread
{
public:
    RenderThread(PreviewRenderer* owner, const LayerRect& renderRegion);
    ~RenderThread() override;

    void run() override;

    PreviewRenderer* const renderer;
    LayerRect region;
    /** Counts the threads of the process; the completion message checks it. */
    const int serial;
    /** What the render made: the stack's picture, shown by the message thread when it ends. */
    SxRef<SxImageRgbaBytes> result;
    /** Held from creation so the message exists even if posting fails at quit. */
    juce::ReferenceCountedObjectPtr<RenderPreviewCompleteMessage> completionMessage;
};
