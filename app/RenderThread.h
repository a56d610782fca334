#pragma once
// The interactive preview render off the message thread. One render runs at a time: the thread
// pointer below is the program's render lock, set and cleared on the message thread only. When
// the render ends, a message brings the result back to the message thread.

#include "document/LayerRenderParameters.h"

#include <juce_events/juce_events.h>

class GenericAppComponent;
class RenderThread;

/** The running preview render, or null. Anything that must not run beside a render tests it. */
extern RenderThread* currentRenderThread;
/** When the last render was asked for (milliseconds of the system clock). */
extern juce::int64 lastRenderRequest;

/** Posted by a finished RenderThread; runs on the message thread. */
class RenderPreviewCompleteMessage : public juce::CallbackMessage
{
public:
    explicit RenderPreviewCompleteMessage(RenderThread* finished) : thread(finished) {}
    void messageCallback() override;

private:
    RenderThread* thread;
};

class RenderThread : public juce::Thread
{
public:
    RenderThread(GenericAppComponent* owner, const LayerRect& renderRegion);
    ~RenderThread() override;

    void run() override;

    GenericAppComponent* const component;
    LayerRect region;
    /** Held from creation so the message exists even if posting fails at quit. */
    juce::ReferenceCountedObjectPtr<RenderPreviewCompleteMessage> completionMessage;
};
