#pragma once
// What the application does for the preset strip: applies a clicked preset to the effect as one
// step of the history, saves the present settings under a name (asking before it replaces a
// preset), keeps the strip in step with the files, and runs the thread that renders thumbnails
// from the open picture when that is switched on.

#include "presets/PresetManagerCallback.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

class GenericAppDocument;
class Layer;
class PresetManager;
class SxImageRgbaBytes;
class RenderPresetImagePreviewsThread;

/** What the preset actions ask of the window: the window implements it, and the actions know
    nothing else of it. */
class PresetActionsCallback
{
public:
    virtual ~PresetActionsCallback() = default;
    /** Where the "Replace Preset?" question shows. */
    virtual juce::Component& presetQuestionHost() = 0;
    /** An export, a job or an open holds the document: a preset click is dropped. */
    virtual bool presetsMustWait() const = 0;
    /** A preview render holds the effect's images: a clicked preset waits for it to end, then
        applies, and the render of the new settings follows. */
    virtual bool previewRendering() const = 0;
    virtual bool hasDocument() const = 0;
    virtual GenericAppDocument* getDocument() const = 0;
    virtual Layer* getEffectLayer() const = 0;
    virtual SxImageRgbaBytes* getPreviewImage() const = 0;
    /** A preset was applied to the effect: the controls follow and the history records it. */
    virtual void presetApplied() = 0;
    virtual void randomizeEffect() = 0;
    virtual void savePresetDialog() = 0;
    virtual bool savePresetNamed(const juce::String& name) = 0;
};

class PresetActions : public PresetManagerCallback, private juce::MultiTimer
{
public:
    explicit PresetActions(PresetActionsCallback& owner);
    ~PresetActions() override;

    /** The strip whose list follows the files; may be null (no interface). */
    void setManager(PresetManager* strip) { manager = strip; }

    void presetClicked(const juce::String& path) override;
    void presetDeleted(const juce::String& path) override;
    void randomizeEffect() override;
    void savePresetRequested() override;
    void refreshPreviews() override;
    bool hasSourceImage() override;

    /** Reads the preset and applies it to the effect with one history record; false (and no
        change) when busy (a preview render included) or when the file has nothing to apply. */
    bool applyPresetFile(const juce::File& file);
    /** Saves under name, asking "Replace Preset?" first when a preset of that name exists. True
        when written now; false when it failed or the question is showing. */
    bool saveNamed(const juce::String& name);
    /** A new picture is open: thumbnails rendered from the old one are dropped and made anew. */
    void pictureChanged();
    /** The main component wrote file: drop its old preview, show it in the strip shortly. */
    void presetSaved(const juce::File& file);

    /** Whether thumbnails are rendered from the open picture. This program shows the stored
        pictures; the renderer is kept working for when it is switched on. */
    bool rendersPreviews = false;
    /** Stops and deletes the preview thread, waiting for it: before the document changes, the
        files change, or a render takes the GL context. */
    void stopPreviewThread();
    RenderPresetImagePreviewsThread* getPreviewThread() const { return previewThread.get(); }

    /** A click waits this long before it applies, about the time between the two clicks of a
        double click, so that a second quick click replaces it. */
    static constexpr int applyDelayMs = 250;

    enum TimerIds
    {
        applyTimer = 300,
        styleTimer = 302,
        rebuildTimer = 500,
        previewsTimer = 3005
    };

private:
    void timerCallback(int timerID) override;
    /** Dropping or waiting: nothing may touch the effect or the GL context now. */
    bool busy() const;

    PresetActionsCallback& component;
    PresetManager* manager = nullptr;
    juce::String pendingPresetFile;
    std::unique_ptr<RenderPresetImagePreviewsThread> previewThread;
};
