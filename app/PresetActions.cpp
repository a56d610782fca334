#include "app/PresetActions.h"

#include "app/AppFileChooser.h"
#include "app/GenericAppDocument.h"
#include "document/Layer.h"
#include "presets/PresetFile.h"
#include "presets/PresetManager.h"
#include "presets/RenderPresetImagePreviewsThread.h"
#include "ui/SxAlertComponent.h"

PresetActions::PresetActions(PresetActionsCallback& owner) : component(owner) {}

PresetActions::~PresetActions()
{
    for (int id : { applyTimer, styleTimer, rebuildTimer, previewsTimer })
        stopTimer(id);
    stopPreviewThread();
}

bool PresetActions::busy() const
{
    return component.presetsMustWait() || component.previewRendering();
}

bool PresetActions::hasSourceImage()
{
    return component.hasDocument();
}

void PresetActions::presetClicked(const juce::String& path)
{
    stopTimer(styleTimer);
    stopTimer(applyTimer);
    // An export or a job holds the document: the click is dropped. A preview render only delays
    // the apply (see the timer), since on software GL it runs for seconds and the strip already
    // shows the click.
    if (component.presetsMustWait())
        return;
    pendingPresetFile = path;
    if (!component.hasDocument())
        return;
    // Every click waits a moment: a second click within it replaces the first, so two quick
    // clicks apply only the last and leave one history record. A large file shows why it waits.
    if (juce::File(path).getSize() / 1024 >= 5000)
        if (auto* document = component.getDocument())
            document->setShowActivity(true, "Loading Preset");
    startTimer(applyTimer, applyDelayMs);
}

bool PresetActions::applyPresetFile(const juce::File& file)
{
    auto* effect = component.getEffectLayer();
    if (busy() || effect == nullptr || !component.hasDocument())
        return false;
    const auto contents = PresetFile::readFile(file);
    if (contents.settings.size() == 0)
        return false;
    // The same path as every other preset apply: the effect reads the keys it knows and takes its
    // defaults for the others. A preset touches the effect layer only.
    effect->restoreFromDictionary(contents.settings, {});
    effect->setNeedsRender(true);
    component.presetApplied();
    effect->invalidate(nullptr);
    startTimer(previewsTimer, 2000);
    return true;
}

void PresetActions::presetDeleted(const juce::String&)
{
    stopPreviewThread();
    startTimer(previewsTimer, 1000);
}

void PresetActions::randomizeEffect()
{
    component.randomizeEffect();
}

void PresetActions::savePresetRequested()
{
    component.savePresetDialog();
}

void PresetActions::refreshPreviews()
{
    stopPreviewThread();
    startTimer(previewsTimer, 500);
}

bool PresetActions::saveNamed(const juce::String& name)
{
    const auto folder = manager != nullptr ? manager->getEffectPresetFolder() : juce::File();
    const auto file = AppFileChooser::presetFileFor(folder, name);
    if (folder == juce::File() || file == juce::File() || !(file.existsAsFile() || file.withFileExtension("prel").existsAsFile()))
        return component.savePresetNamed(name);
    auto* question = SxAlertComponent::ask(component.presetQuestionHost(), "replacePresetAlert", "Replace Preset?",
                                           "You already have a preset named \"" + file.getFileNameWithoutExtension()
                                               + "\". Would you like to replace it?",
                                           { "Replace", "Cancel" });
    question->onAnswer = [this, name](int answer) {
        if (answer == 0)
            component.savePresetNamed(name);
    };
    return false;
}

void PresetActions::pictureChanged()
{
    stopPreviewThread();
    if (rendersPreviews && manager != nullptr)
        manager->getList().clearRenderedPreviews();
    startTimer(previewsTimer, 100);
}

void PresetActions::presetSaved(const juce::File& file)
{
    stopPreviewThread();
    if (manager != nullptr)
        manager->getList().removeRenderedPreview(file.getFullPathName());
    startTimer(rebuildTimer, 400);
    startTimer(previewsTimer, 2000);
}

void PresetActions::stopPreviewThread()
{
    if (previewThread != nullptr)
        previewThread->stopThread(-1);
    previewThread.reset();
}

void PresetActions::timerCallback(int timerID)
{
    stopTimer(timerID);
    switch (timerID)
    {
        case applyTimer:
            if (component.previewRendering() && !component.presetsMustWait())
            {
                // Loading the preset releases the effect's work image, which the render reads.
                startTimer(applyTimer, 50);
                break;
            }
            stopTimer(styleTimer);
            if (auto* document = component.getDocument())
                document->setShowActivity(false, {});
            applyPresetFile(juce::File(pendingPresetFile));
            break;
        case rebuildTimer:
            if (manager != nullptr)
                manager->rebuildList();
            break;
        case previewsTimer:
        {
            if (!rendersPreviews || manager == nullptr)
                break;
            auto* effect = component.getEffectLayer();
            if (busy() || effect == nullptr || component.getPreviewImage() == nullptr)
            {
                startTimer(previewsTimer, 100);
                break;
            }
            stopPreviewThread();
            auto& list = manager->getList();
            previewThread = std::make_unique<RenderPresetImagePreviewsThread>(*manager, *effect, *component.getPreviewImage(),
                                                                             list.getAllPresetFiles(), list.getRenderedPaths());
            previewThread->startThread(juce::Thread::Priority::low);
            break;
        }
        default:
            break;
    }
}
