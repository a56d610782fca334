// The main component's side of the document session, the preset files and the preferences: what
// the session asks of the window, the save button that gives a host's picture back, and the jobs
// that write presets.
#include "app/GenericAppComponent.h"

#include "app/AppFileChooser.h"
#include "app/EffectControlPanel.h"
#include "app/HostSession.h"
#include "app/MainTopBar.h"
#include "app/PresetActions.h"
#include "app/PresetNamePanel.h"
#include "app/PreviewRenderer.h"
#include "app/ThreadedActivityWindow.h"
#include "imaging/ImageLimits.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetManager.h"
#include "wizards/PreferencesPanel.h"

void GenericAppComponent::waitForRender()
{
    if (presetActions != nullptr)
        presetActions->stopPreviewThread();
    if (previewRenderer != nullptr)
        previewRenderer->wait();
}

bool GenericAppComponent::stopPreviewRender()
{
    const bool wasRendering = previewRenderer != nullptr && previewRenderer->isRendering();
    waitForRender();
    return wasRendering;
}

void GenericAppComponent::restartPreviewRender()
{
    previewRenderer->start(LayerRect::empty(), false);
}

Layer* GenericAppComponent::createDocumentEffect()
{
    if (effectGroups.empty() || effectGroups.front().effects.empty())
        return nullptr;
    auto* effect = effectGroups.front().effects.front()->createInstance();
    effect->setLayerCallback(this);
    return effect;
}

void GenericAppComponent::pictureClosing()
{
    showOriginal(false);
    cropController.reset();
    cropRect = {};
    document->setImage(nullptr);
    displayImage.reset();
}

void GenericAppComponent::showEffectControls(Layer* effect)
{
    if (effectControlComponent != nullptr)
        effectControlComponent->setEffect(effect);
}

void GenericAppComponent::pictureReplaced()
{
    if (presetActions != nullptr)
        presetActions->pictureChanged();
}

void GenericAppComponent::documentStateChanged()
{
    if (auto* window = dynamic_cast<juce::DocumentWindow*>(getTopLevelComponent()))
        window->setName(getWindowTitle());
    if (topBar != nullptr)
        topBar->updateButtons();
    commandStatusChanged();
}

void GenericAppComponent::saveImage()
{
    if (hostSession != nullptr && hostSession->isActive())
    {
        if (hasDocument() && !isJobRunning())
            hostSession->applyToHost();
        return;
    }
    session->savePhotoDialog();
}

void GenericAppComponent::savePresetDialog()
{
    if (!hasDocument() || isJobRunning() || getEffectLayer() == nullptr)
        return;
    PresetNamePanel::show(*this, "My Preset", [this](const juce::String& name) { presetActions->saveNamed(name); });
}

void GenericAppComponent::showPreferences()
{
    if (isJobRunning() || PreferencesPanel::findIn(*this) != nullptr)
        return;
    PreferencesPanel::Actions actions;
    actions.setMaximumMegapixels = [this](double megapixels) {
        ImageLimits::setMaximumMegapixels(megapixels);
        applicationProperties->setValue("maxMegapixels", megapixels);
        applicationProperties->saveIfNeeded();
    };
    actions.rebuildDefaultPresets = [this] {
        const bool ok = BuiltInPresets::writeDefaultPresets(BuiltInPresets::getPresetFolder());
        if (presetManager != nullptr)
            presetManager->rebuildList();
        return ok;
    };
    PreferencesPanel::show(*this, ImageLimits::maximumMegapixels(), std::move(actions));
}

bool GenericAppComponent::savePresetNamed(const juce::String& name)
{
    auto* effect = getEffectLayer();
    if (effect == nullptr || isJobRunning())
        return false;
    const auto file = AppFileChooser::presetFileFor(BuiltInPresets::getPresetFolder(), name);
    if (file == juce::File())
    {
        showAlert("saveFailed", "Cannot Save Preset", "\"" + name + "\" cannot be used as the name of a file.");
        return false;
    }
    SxPropertySet settings;
    effect->saveToDictionary(settings, {});
    const bool ok = session->runJob([&] {
        SavePresetActivityWindow job(document.get(), file, settings, displayImage.get() != nullptr ? displayImage.get() : getPreviewImage());
        job.runThread();
        return job.succeeded;
    });
    if (!ok)
    {
        showAlert("saveFailed", "Cannot Save Preset", file.getFileName() + "\nThe preset could not be written.");
        return false;
    }
    juce::Logger::writeToLog("Saved preset " + file.getFullPathName());
    if (presetActions != nullptr)
        presetActions->presetSaved(file);
    return true;
}

void GenericAppComponent::showAboutAlert()
{
    const auto name = juce::JUCEApplication::getInstance() != nullptr ? juce::JUCEApplication::getInstance()->getApplicationName()
                                                                       : getApplicationDataName();
    showAlert("infoAlert", name,
              "Version " + juce::String(versionNumber >> 16) + "." + juce::String((versionNumber >> 8) & 255) + "."
                  + juce::String(versionNumber & 255)
                  + "\nTurns photographs into line art. Open a photo, then shape the lines with the Adjust panel.");
}

