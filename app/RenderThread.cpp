#include "app/RenderThread.h"

#include "app/GenericAppComponent.h"

#include <atomic>

RenderThread* currentRenderThread = nullptr;
juce::int64 lastRenderRequest = 0;

namespace
{
std::atomic<int> threadsMade { 0 };
}

RenderPreviewCompleteMessage::RenderPreviewCompleteMessage(GenericAppComponent* owner, RenderThread* finished, int serialNumber)
    : component(owner), thread(finished), serial(serialNumber)
{
}

void RenderPreviewCompleteMessage::messageCallback()
{
    auto* owner = dynamic_cast<GenericAppComponent*>(component.getComponent());
    if (owner != nullptr && currentRenderThread == thread && currentRenderThread != nullptr && currentRenderThread->serial == serial)
        owner->previewRenderFinished(thread);
}

RenderThread::RenderThread(GenericAppComponent* owner, const LayerRect& renderRegion)
    : juce::Thread("Rendering..."), component(owner), region(renderRegion), serial(++threadsMade)
{
    completionMessage = new RenderPreviewCompleteMessage(owner, this, serial);
}

RenderThread::~RenderThread()
{
    stopThread(-1);
}

void RenderThread::run()
{
    result = SxRef<SxImageRgbaBytes>::share(component->renderOnThread(region));
    // The message system owns the message once posted; a failed post (only at quit) leaves the
    // lock set, which is harmless then, as nothing renders after quit.
    if (!completionMessage->post())
        juce::Logger::writeToLog("Render finished after the message loop ended");
}
