#include "app/ThreadedActivityWindow.h"

#include "app/GenericAppDocument.h"
#include "document/LayerManager.h"
#include "presets/PresetFile.h"
#include "ui/SxLookAndFeel.h"

#include <cmath>

SxActivityContainer::SxActivityContainer() : SxComponent("SxActivityContainer")
{
    setWantsKeyboardFocus(true);
    setInterceptsMouseClicks(true, true);
}

void SxActivityContainer::setMessage(const juce::String& text)
{
    if (text == message)
        return;
    message = text;
    repaint();
}

void SxActivityContainer::step()
{
    phase = (phase + 1) % 12;
    repaint();
}

void SxActivityContainer::paint(juce::Graphics& g)
{
    SxPaint::outlinedPanel(g, getLocalBounds(), SxColours::panel.withAlpha(0.95f), 6.0f);
    const auto bounds = getLocalBounds().toFloat().reduced(0.5f);

    // Twelve spokes, the brightest one walking round.
    const float cx = 15.0f, cy = bounds.getCentreY(), inner = 4.0f, outer = 8.5f;
    for (int i = 0; i < 12; ++i)
    {
        const float angle = juce::MathConstants<float>::twoPi * (float) i / 12.0f;
        const int age = (phase - i + 12) % 12;
        g.setColour(SxColours::text.withAlpha(1.0f - (float) age / 13.0f));
        g.drawLine(cx + inner * std::sin(angle), cy - inner * std::cos(angle), cx + outer * std::sin(angle),
                   cy - outer * std::cos(angle), 1.6f);
    }
    g.setColour(SxColours::text);
    g.setFont(13.0f);
    g.drawFittedText(message, 30, 0, getWidth() - 36, getHeight(), juce::Justification::centredLeft, 1);
}

//==============================================================================
ThreadedActivityWindow::ThreadedActivityWindow(GenericAppDocument* document, const juce::String& text)
    : juce::Thread("Activity Window"), message(text)
{
    activityContainer = std::make_unique<SxActivityContainer>();
    activityContainer->setMessage(text);
    if (document != nullptr)
    {
        document->setShowActivity(false, {});
        document->addAndMakeVisible(*activityContainer);
        // Centred: half the panel's 273 × 27 to the left of and above the middle.
        activityContainer->setBoundsString("(parent.width / 2) - 136, (parent.height / 2) - 13, left + 273, top + 27");
    }
}

ThreadedActivityWindow::~ThreadedActivityWindow()
{
    stopTimer();
    stopThread(-1);
    if (activityContainer != nullptr && activityContainer->isCurrentlyModal(false))
        activityContainer->exitModalState(0);
}

void ThreadedActivityWindow::runThread()
{
    startThread();
    startTimer(40);
    activityContainer->enterModalState(false);
    // The window stays live (repaints, the spinner, the component map) while the job runs; the
    // modal panel takes every click and key meanwhile.
    const auto started = juce::Time::getMillisecondCounter();
    bool reportedSlow = false;
    while (isThreadRunning())
    {
        juce::MessageManager::getInstance()->runDispatchLoopUntil(20);
        if (!reportedSlow && juce::Time::getMillisecondCounter() - started > (juce::uint32) timeoutMs)
        {
            juce::Logger::writeToLog("Activity still running after " + juce::String(timeoutMs) + " ms: " + getMessage());
            reportedSlow = true;
        }
    }
    waitForThreadToExit(-1);
    stopTimer();
    activityContainer->exitModalState(0);
    activityContainer->setVisible(false);
}

void ThreadedActivityWindow::setMessage(const juce::String& text)
{
    const juce::ScopedLock lock(messageLock);
    message = text;
}

juce::String ThreadedActivityWindow::getMessage() const
{
    const juce::ScopedLock lock(messageLock);
    return message;
}

void ThreadedActivityWindow::timerCallback()
{
    activityContainer->setMessage(getMessage());
    activityContainer->step();
}

//==============================================================================
RenderHiResActivityThread::RenderHiResActivityThread(GenericAppDocument* view, LayerManager& stack, const juce::String& text)
    : ThreadedActivityWindow(view, text), layers(stack)
{
}

void RenderHiResActivityThread::run()
{
    result = SxRef<SxImageRgbaBytes>::adopt(layers.render(nullptr, false, true));
}

SaveProjectActivityWindow::SaveProjectActivityWindow(GenericAppDocument* view, const juce::File& file,
                                                     std::function<bool(const juce::File&)> writeProject)
    : ThreadedActivityWindow(view, "Saving Project..."), destination(file), write(std::move(writeProject))
{
}

void SaveProjectActivityWindow::run()
{
    succeeded = write(destination);
}

SavePresetActivityWindow::SavePresetActivityWindow(GenericAppDocument* view, const juce::File& file,
                                                   const SxPropertySet& values, SxImageRgbaBytes* picture)
    : ThreadedActivityWindow(view, "Saving Preset..."), destination(file), settings(values),
      composite(SxRef<SxImageRgbaBytes>::share(picture))
{
}

void SavePresetActivityWindow::run()
{
    destination.getParentDirectory().createDirectory();
    succeeded = PresetFile::writeFile(destination, settings, composite.get());
}
