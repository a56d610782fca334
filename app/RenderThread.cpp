#include "app/RenderThread.h"


#include <atomic>

RenderThread* currentRenderThread = nullptr;
juce::int64 lastRenderRequest = 0;

namespace
{
std::atomic<int> threadsMade { 0 };
}

RenderPreviewCompleteMessage::RenderPreviewCompleteMessage(PreviewRenderer* owner, RenderThread* finished, int serialNumber)
    : renderer(owner), thread(finished), serial(serialNumber)
{
}

void RenderPreviewCompleteMessage::messageCallback()
{
    auto* owner = renderer.get();
    if (owner != nullptr && currentRenderThread == thread && currentRenderThread != nullptr && currentRenderThread->serial == serial)
        owner->finished(thread);
}

RenderThread::RenderThread(PreviewRenderer* owner, const LayerRect& renderRegion)
    : juce::Thread("Rendering..."), renderer(owner), region(renderRegion), serial(++threadsMade)
{
    completionMessage = new RenderPreviewCompleteMessage(owner, this, serial);
}

RenderThread::~RenderThread()
{
    stopThread(-1);
}

void RenderThread::run()
{
    result = SxRef<SxImageRgbaBytes>::share(renderer->renderOnThread(region));
    // The message system owns the message once posted; a failed post (only at quit) leaves the
    // lock set, which is harmless then, as nothing renders after quit.
    if (!completionMessage->post())
        juce::Logger::writeToLog("Render finished after the message loop ended");
}
