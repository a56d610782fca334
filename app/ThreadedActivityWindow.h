#pragma once
// Jobs that must finish before the user goes on (a full-size render, saving a project or a
// preset) run on a thread of their own behind a small panel with a spinner and a message. The
// caller blocks in runThread(), which keeps the message loop turning so that the window repaints
// and the spinner turns, while the panel, being modal, keeps clicks and keys away from the rest
// of the window. A job is never cancelled: the panel has no cancel button.

#include "document/SxPropertySet.h"
#include "imaging/SxImageRgbaBytes.h"
#include "ui/SxComponent.h"

#include <juce_core/juce_core.h>
#include <juce_events/juce_events.h>

#include <functional>
#include <memory>

class GenericAppDocument;
class LayerManager;

/** The centred panel: a turning spinner and one line of text. */
class SxActivityContainer : public SxComponent
{
public:
    SxActivityContainer();

    void setMessage(const juce::String& text);
    const juce::String& getMessage() const { return message; }
    /** Turns the spinner one step. */
    void step();

    /** Keys stop here while a job runs: none may start another job or change the document. */
    bool keyPressed(const juce::KeyPress&) override { return true; }
    void paint(juce::Graphics& g) override;

private:
    juce::String message;
    int phase = 0;
};

class ThreadedActivityWindow : public juce::Thread, private juce::Timer
{
public:
    /** Shows the panel over the document view (when there is one), in place of any other
        activity shown there. */
    ThreadedActivityWindow(GenericAppDocument* view, const juce::String& message);
    ~ThreadedActivityWindow() override;

    /** Starts the job and returns when it has ended, running the message loop meanwhile. */
    void runThread();

    /** May be called from the job's thread; the panel shows it on its next timer tick. */
    void setMessage(const juce::String& text);
    juce::String getMessage() const;

    SxActivityContainer* getActivityContainer() const { return activityContainer.get(); }

    /** How long the panel may take to report progress before it is thought stuck (for logs). */
    int timeoutMs = 10000;

private:
    void timerCallback() override;

    std::unique_ptr<SxActivityContainer> activityContainer;
    juce::String message;
    juce::CriticalSection messageLock;
};

/** Renders the whole stack at the source picture's full size; the stack must already hold the
    full-size picture (the main component's renderFullImage prepares it). */
class RenderHiResActivityThread : public ThreadedActivityWindow
{
public:
    RenderHiResActivityThread(GenericAppDocument* view, LayerManager& layers, const juce::String& message);
    void run() override;

    /** The full-size result, once runThread has returned; null if the render failed. */
    SxRef<SxImageRgbaBytes> result;

private:
    LayerManager& layers;
};

/** Writes the open document as a project file; write does the writing on the job's thread. */
class SaveProjectActivityWindow : public ThreadedActivityWindow
{
public:
    SaveProjectActivityWindow(GenericAppDocument* view, const juce::File& destination,
                              std::function<bool(const juce::File&)> write);
    void run() override;

    const juce::File destination;
    bool succeeded = false;

private:
    std::function<bool(const juce::File&)> write;
};

/** Writes the effect's settings and a preview of the present result as a preset file. */
class SavePresetActivityWindow : public ThreadedActivityWindow
{
public:
    SavePresetActivityWindow(GenericAppDocument* view, const juce::File& destination, const SxPropertySet& settings,
                             SxImageRgbaBytes* composite);
    void run() override;

    const juce::File destination;
    bool succeeded = false;

private:
    SxPropertySet settings;
    SxRef<SxImageRgbaBytes> composite;
};
