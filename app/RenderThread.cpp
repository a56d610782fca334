#include "app/RenderThread.h"

#include "app/GenericAppComponent.h"

RenderThread* currentRenderThread = nullptr;
juce::int64 lastRenderRequest = 0;

void RenderPreviewCompleteMessage::messageCallback()
{
    if (thread != nullptr && thread->component != nullptr)
        thread->component->previewRenderFinished(thread);
}

RenderThread::RenderThread(GenericAppComponent* owner, const LayerRect& renderRegion)
    : juce::Thread("Rendering..."), component(owner), region(renderRegion)
{
    completionMessage = new RenderPreviewCompleteMessage(this);
}

RenderThread::~RenderThread()
{
    stopThread(-1);
}

void RenderThread::run()
{
    component->renderOnThread(region);
    // The message system owns the message once posted; a failed post (only at quit) leaves the
    // lock set, which is harmless then, as nothing renders after quit.
    if (!completionMessage->post())
        juce::Logger::writeToLog("Render finished after the message loop ended");
}
