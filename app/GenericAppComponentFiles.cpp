// The main component's document session: opening pictures and projects (asking about unsaved
// changes first), the full-size render of a save, writing photos, projects and presets, and the
// settings that new pictures start with.
#include "app/GenericAppComponent.h"

#include "app/AppFileChooser.h"
#include "app/EffectControlPanel.h"
#include "app/HostSession.h"
#include "app/MainTopBar.h"
#include "app/PresetActions.h"
#include "app/PresetNamePanel.h"
#include "app/PreviewRenderer.h"
#include "app/RenderCommand.h"
#include "app/ThreadedActivityWindow.h"
#include "document/ProjectFile.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileType.h"
#include "imaging/ImageFileWriter.h"
#include "imaging/ImageLimits.h"
#include "imaging/ImageStream.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetManager.h"
#include "ui/SxAlertComponent.h"
#include "wizards/PreferencesPanel.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace
{
const juce::String unsavedQuestionName("saveProjectAlert");

juce::Result writePhoto(const SxImageRgbaBytes& image, const juce::File& destination, const ImageWriteOptions& options)
{
    return ImageFileWriter::write(image, destination, ImageFileTypes::fromPath(destination.getFullPathName()), options);
}

bool hasTransparency(const SxImageRgbaBytes& image)
{
    const auto count = (size_t) image.width * (size_t) image.height;
    for (size_t i = 0; i < count; ++i)
        if (image.pixels[i * 4] != 255)
            return true;
    return false;
}
} // namespace

bool GenericAppComponent::openImage(const juce::File& file, bool showStartDelay)
{
    bool opened = false;
    askAboutUnsavedChanges(file.getFullPathName(), [this, file, showStartDelay, &opened] {
        opened = loadImageFile(file, showStartDelay);
    });
    return opened;
}

bool GenericAppComponent::openProject(const juce::File& file)
{
    bool opened = false;
    askAboutUnsavedChanges(file.getFullPathName(), [this, file, &opened] { opened = loadProject(file); });
    return opened;
}

bool GenericAppComponent::isFreshProject() const
{
    return applicationProperties == nullptr || applicationProperties->getBoolValue("freshProject", true);
}

bool GenericAppComponent::askAboutUnsavedChanges(const juce::String& pathToOpen, std::function<void()> proceed)
{
    if (!hasDocument() || isFreshProject() || commandLineRender)
    {
        proceed();
        return true;
    }
    // The proceed of the caller may capture its stack: it runs now or never. What runs later is
    // an open of the same path, by its kind.
    const juce::File file(pathToOpen);
    auto openLater = [this, file] {
        if (file.hasFileExtension(getProjectExtension() + ";qrp"))
            loadProject(file);
        else
            loadImageFile(file, false);
    };
    auto* question = SxAlertComponent::ask(*this, unsavedQuestionName, "Save Project?",
                                           "You have unsaved changes. Would you like to save?",
                                           { "Save", "Don't Save", "Cancel" });
    question->onAnswer = [this, openLater, pathToOpen](int answer) {
        if (answer == 0)
        {
            applicationProperties->setValue("NeedsToLoadImagePath", pathToOpen);
            saveProject(false, openLater);
        }
        else if (answer == 1)
            openLater();
    };
    commandStatusChanged();
    return false;
}

void GenericAppComponent::waitForRender()
{
    if (presetActions != nullptr)
        presetActions->stopPreviewThread();
    if (previewRenderer != nullptr)
        previewRenderer->wait();
}

void GenericAppComponent::startNewDocument(const SxRef<SxImageRgbaBytes>& image, const juce::File& file)
{
    // The running render holds the layers: it ends before the old picture goes.
    waitForRender();
    loadingDocument = true;
    showOriginal(false);
    cropController.reset();
    cropRect = {};
    document->setImage(nullptr);
    displayImage.reset();
    previewImage.reset();
    originalImage = image;

    auto& settings = *applicationProperties;
    settings.setValue("ImagePath", file.getFullPathName());
    settings.setValue("freshProject", true);
    settings.setValue("freshProjectUndoCount", juce::var(0));
    settings.setValue("NeedsToLoadImagePath", "");

    currentFile = file;
    imagePath = file.getFullPathName();
}

const SxImageRgbaBytes* GenericAppComponent::openHostPicture(const SxRef<SxImageRgbaBytes>& picture, const juce::File& titleFile)
{
    startNewDocument(picture, titleFile);
    projectFile = juce::File();
    metadata.clear();
    resolutionX = resolutionY = 72.0f;
    sourceHadAlpha = false;
    if (!ImageStream::writeFile(*originalImage, originalBeforeEditFile()))
        juce::Logger::writeToLog("Cannot write " + originalBeforeEditFile().getFullPathName());
    newImageLoaded();
    return previewImage.get();
}

void GenericAppComponent::hostPictureReady()
{
    if (auto* window = dynamic_cast<juce::DocumentWindow*>(getTopLevelComponent()))
        window->setName(getWindowTitle());
    loadingDocument = false;
    layerNeedsRender(true, nullptr);
}

bool GenericAppComponent::loadImageFile(const juce::File& file, bool)
{
    // Decode before dropping the current picture, so a file that fails leaves the document shown.
    // Our own reader: it applies Exif orientation and embedded profiles, and refuses damaged
    // files that JUCE's decoders would crash on or half-read.
    auto decoded = ImageFileReader::read(file);
    if (!decoded.ok())
    {
        juce::Logger::writeToLog("Cannot open " + file.getFullPathName() + ": " + decoded.error);
        showAlert("openFailed", "Cannot Open Photo", file.getFileName() + "\n" + decoded.error);
        return false;
    }

    startNewDocument(decoded.image, file);
    projectFile = juce::File();
    metadata.clear();
    resolutionX = (float) decoded.resolutionX;
    resolutionY = (float) decoded.resolutionY;

    if (!ImageStream::writeFile(*originalImage, originalBeforeEditFile()))
        juce::Logger::writeToLog("Cannot write " + originalBeforeEditFile().getFullPathName());

    sourceHadAlpha = decoded.hasAlpha;
    newImageLoaded();

    if (auto* window = dynamic_cast<juce::DocumentWindow*>(getTopLevelComponent()))
        window->setName(getWindowTitle());
    loadingDocument = false;
    layerNeedsRender(true, nullptr);
    return true;
}

juce::Rectangle<int> GenericAppComponent::previewRectangleFor(juce::Rectangle<int> source, juce::Rectangle<int> limit)
{
    if (source.isEmpty() || limit.isEmpty())
        return {};
    const double scale = juce::jmin(1.0, limit.getWidth() / (double) source.getWidth(), limit.getHeight() / (double) source.getHeight());
    return { 0, 0, juce::jmax(1, juce::roundToInt(source.getWidth() * scale)), juce::jmax(1, juce::roundToInt(source.getHeight() * scale)) };
}

void GenericAppComponent::newImageLoaded()
{
    applicationProperties->setValue("feshProject", true);

    const auto size = previewRectangleFor(originalImage->bounds(), getPreviewRenderSize());
    previewImage = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(size.getWidth(), size.getHeight()));
    previewImage->scaleInto(*originalImage, previewImage->bounds(), originalImage->bounds(), usesHighQualityPreview() ? 3 : 1);

    // One stack for the life of the program: the picture at 0, the effect above it.
    if (effectControlComponent != nullptr)
        effectControlComponent->setEffect(nullptr);
    layerManager->removeLayersAboveBase();
    if (auto* base = dynamic_cast<StaticImageLayer*>(layerManager->getLayer(0)))
        base->setImage(previewImage.get());
    else
        layerManager->insertLayerAt(new StaticImageLayer(previewImage.get()), 0);

    if (!effectGroups.empty() && !effectGroups.front().effects.empty())
    {
        auto* effect = effectGroups.front().effects.front()->createInstance();
        effect->setLayerCallback(this);
        layerManager->addLayer(effect);
        effect->resetImage(previewImage.get());

        // Settings the user made the defaults apply to every picture opened after (a project
        // brings its own).
        const auto startup = openingProject ? juce::String() : applicationProperties->getValue("startupLayerSettings");
        if (startup.isNotEmpty())
            if (auto xml = SxPropertySet::parseXmlText(startup))
            {
                SxPropertySet set;
                set.fromXml(*xml);
                if (set.size() > 0)
                    effect->restoreFromDictionary(set, {});
            }
        layerManager->setSelectedLayer(effect, false);
        prepareEffectLayer(effect);
    }
    layerManager->markAllDirty();

    document->setImage(previewImage.get());
    document->fitToWindow(false);

    if (effectControlComponent != nullptr)
        effectControlComponent->setEffect(getEffectLayer());

    // The first record holds the start state, so the first undo returns to the opened picture.
    undo.reset();
    layerChanged();
    if (topBar != nullptr)
        topBar->updateButtons();
    if (presetActions != nullptr)
        presetActions->pictureChanged();
    commandStatusChanged();
}

bool GenericAppComponent::loadProject(const juce::File& file)
{
    // Read it all before dropping anything, so that a file that fails leaves the document shown.
    auto project = ProjectFile::readFile(file);
    if (project == nullptr || project->image.get() == nullptr)
    {
        juce::Logger::writeToLog("Cannot open project " + file.getFullPathName());
        showAlert("openFailed", "Cannot Open Project", file.getFileName() + "\nThis is not a project file that can be read.");
        return false;
    }

    startNewDocument(project->image, file);
    applicationProperties->saveIfNeeded();
    projectFile = file;
    metadata.clear();
    resolutionX = (float) project->widthDpi;
    resolutionY = (float) project->heightDpi;
    if (!ImageStream::writeFile(*originalImage, originalBeforeEditFile()))
        juce::Logger::writeToLog("Cannot write " + originalBeforeEditFile().getFullPathName());
    sourceHadAlpha = hasTransparency(*originalImage);

    openingProject = true;
    newImageLoaded();
    openingProject = false;

    if (project->settings.size() > 0)
    {
        // The stack comes back as it was saved; the panel must let go of the effect it shows,
        // which the restore replaces.
        if (effectControlComponent != nullptr)
            effectControlComponent->setEffect(nullptr);
        layerManager->restoreFromDictionary(project->settings, this, {}, false);
        if (auto* effect = getEffectLayer())
        {
            effect->resetImage(previewImage.get());
            layerManager->setSelectedLayer(effect, false);
            prepareEffectLayer(effect);
        }
        layerManager->markAllDirty();
        if (effectControlComponent != nullptr)
            effectControlComponent->setEffect(getEffectLayer());
        // The first record of the history is the state as saved, which is not a change.
        applicationProperties->setValue("freshProjectUndoCount", juce::var(0));
        undo.reset();
        layerChanged();
    }
    updateControls();

    if (auto* window = dynamic_cast<juce::DocumentWindow*>(getTopLevelComponent()))
        window->setName(getWindowTitle());
    loadingDocument = false;
    commandStatusChanged();
    layerNeedsRender(true, nullptr);
    return true;
}

//==============================================================================
// Opening and saving.

void GenericAppComponent::openImageDialog()
{
    const auto start = juce::File(imagePath).getParentDirectory();
    AppFileChooser::choose(fileChooser, "Open Photo", start.isDirectory() ? start : juce::File(),
                           "*.jpg;*.jpeg;*.png;*.tif;*.tiff",
                           juce::FileBrowserComponent::openMode | juce::FileBrowserComponent::canSelectFiles,
                           [this](const juce::File& file) { openImage(file, false); });
}

void GenericAppComponent::openProjectDialog()
{
    const auto start = projectFile != juce::File() ? projectFile.getParentDirectory() : juce::File(imagePath).getParentDirectory();
    AppFileChooser::choose(fileChooser, "Open Project", start.isDirectory() ? start : juce::File(),
                           "*." + getProjectExtension() + ";*.qrp",
                           juce::FileBrowserComponent::openMode | juce::FileBrowserComponent::canSelectFiles,
                           [this](const juce::File& file) { openProject(file); });
}

void GenericAppComponent::saveImage()
{
    if (!hasDocument() || jobRunning)
        return;
    if (hostSession != nullptr && hostSession->isActive())
    {
        hostSession->applyToHost();
        return;
    }
    // The dialog starts at the source's own name and extension; a project's picture has no
    // file of its own, so it is offered as a PNG beside the project.
    auto start = currentFile;
    if (start == juce::File() || start.hasFileExtension(getProjectExtension() + ";qrp"))
        start = start == juce::File() ? juce::File() : start.withFileExtension("png");
    constexpr int saveFlags = juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                              | juce::FileBrowserComponent::warnAboutOverwriting; // 134
    AppFileChooser::choose(fileChooser, "Save Image Location", start, "*.jpg;*.jpeg;*.png;*.tif", saveFlags,
                           [this](const juce::File& file) { saveImageTo(file); });
}

void GenericAppComponent::copyRenderCommand()
{
    auto* effect = dynamic_cast<TornvaleEffect*>(getEffectLayer());
    const juce::File source = currentFile != juce::File() ? currentFile : juce::File(imagePath);
    if (!hasDocument() || effect == nullptr || source == juce::File())
        return;
    const auto command = RenderCommand::forDocument(effect->currentParameters(), source, RenderCommand::renderProgram());
    juce::SystemClipboard::copyTextToClipboard(command);
    juce::Logger::writeToLog("Copied the render command: " + command);
}

bool GenericAppComponent::saveImageTo(const juce::File& chosen)
{
    if (!hasDocument() || jobRunning)
        return false;
    const auto destination = AppFileChooser::photoDestination(chosen);
    auto result = renderFullImage("Rendering...");
    if (result.get() == nullptr)
    {
        showAlert("saveFailed", "Cannot Save Photo", destination.getFileName() + "\nThe picture could not be rendered.");
        return false;
    }
    ImageWriteOptions options;
    options.resolutionX = resolutionX;
    options.resolutionY = resolutionY;
    options.jpegQuality = 92;
    const auto written = writePhoto(*result, destination, options);
    if (written.failed())
    {
        juce::Logger::writeToLog("Cannot save " + destination.getFullPathName() + ": " + written.getErrorMessage());
        showAlert("saveFailed", "Cannot Save Photo", destination.getFileName() + "\n" + written.getErrorMessage());
        return false;
    }
    lastSavedPhoto = destination;
    auto& settings = *applicationProperties;
    settings.setValue("currentSaveCount_v2", settings.getIntValue("currentSaveCount_v2", 0) + 1);
    juce::Logger::writeToLog("Saved " + destination.getFullPathName() + " (" + juce::String(result->width) + " x " + juce::String(result->height) + ")");
    return true;
}

SxRef<SxImageRgbaBytes> GenericAppComponent::renderFullImage(const juce::String& message)
{
    auto* base = layerManager != nullptr ? dynamic_cast<StaticImageLayer*>(layerManager->getLayer(0)) : nullptr;
    if (!hasDocument() || base == nullptr || jobRunning)
        return {};
    // The full render takes the GL context: a preview render must have ended first.
    waitForRender();
    jobRunning = true;
    renderingFullImage = true;
    document->setRenderingFull(true);
    document->repaint();

    // The stack renders from the full-size source, every length scaled to it (the render scale
    // follows the picture in layer 0), with the mask resampled to that size.
    auto applySize = [this](SxImageRgbaBytes* picture) {
        const auto whole = LayerRect::wholeOf(*picture);
        for (auto* layer : layerManager->getLayers())
            layer->onImageSizeChanged(whole, picture);
        layerManager->markAllDirty();
    };
    layerManager->setHighQuality(true);
    base->setImage(originalImage.get());
    applySize(originalImage.get());

    SxRef<SxImageRgbaBytes> result;
    {
        RenderHiResActivityThread job(document.get(), *layerManager, message);
        job.setMessage("Saving...");
        job.runThread();
        result = job.result;
    }

    // Back to the preview: the caches of the full-size run are dropped, and the preview renders
    // again so that the view, the brush and the next change work on preview-sized layers.
    base->setImage(previewImage.get());
    applySize(previewImage.get());
    layerManager->setHighQuality(false);
    document->setRenderingFull(false);
    renderingFullImage = false;
    jobRunning = false;
    previewRenderer->start(LayerRect::empty(), false);
    return result;
}

void GenericAppComponent::saveProject(bool saveAs, std::function<void()> afterSave)
{
    if (!hasDocument() || jobRunning)
        return;
    if (projectFile != juce::File() && !saveAs)
    {
        startProjectSave(projectFile, std::move(afterSave));
        return;
    }
    juce::File start = projectFile;
    if (start == juce::File())
        start = currentFile != juce::File() ? currentFile.withFileExtension(getProjectExtension())
                                            : juce::File::getSpecialLocation(juce::File::userDocumentsDirectory).getChildFile("project");
    constexpr int saveFlags = juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                              | juce::FileBrowserComponent::warnAboutOverwriting;
    AppFileChooser::choose(fileChooser, "Save Project Location", start, "*." + getProjectExtension(), saveFlags,
                           [this, afterSave](const juce::File& file) {
                               startProjectSave(AppFileChooser::projectDestination(file, getProjectExtension()), afterSave);
                           });
}

void GenericAppComponent::startProjectSave(const juce::File& file, std::function<void()> afterSave)
{
    // The dialog has closed when this runs; the job starts a moment later, once the window has
    // repainted without it.
    saveDestination = file;
    afterProjectSave = std::move(afterSave);
    startTimer(saveProjectTimer, 75);
}

bool GenericAppComponent::saveProjectTo(const juce::File& file)
{
    if (!hasDocument() || jobRunning)
        return false;
    // A preview render ends first (the job renders the stack for the file's preview); its
    // picture never reached the view, so the view renders again afterwards.
    const bool previewStopped = previewRenderer->isRendering();
    waitForRender();
    jobRunning = true;
    bool ok = false;
    {
        SaveProjectActivityWindow job(document.get(), file, [this](const juce::File& f) { return saveProjectNow(f); });
        job.runThread();
        ok = job.succeeded;
    }
    jobRunning = false;
    if (previewStopped)
        previewRenderer->start(LayerRect::empty(), false);
    auto& settings = *applicationProperties;
    settings.setValue("NeedsToLoadImagePath", "");
    if (!ok)
    {
        juce::Logger::writeToLog("Cannot save project " + file.getFullPathName());
        showAlert("saveFailed", "Cannot Save Project", file.getFileName() + "\nThe project could not be written there.");
        return false;
    }
    settings.setValue("freshProjectUndoCount", juce::var(0));
    settings.setValue("freshProject", true);
    settings.saveIfNeeded();
    projectFile = file;
    currentFile = file;
    if (auto* window = dynamic_cast<juce::DocumentWindow*>(getTopLevelComponent()))
        window->setName(getWindowTitle());
    commandStatusChanged();
    juce::Logger::writeToLog("Saved project " + file.getFullPathName());
    return true;
}

bool GenericAppComponent::saveProjectNow(const juce::File& file)
{
    if (layerManager == nullptr || originalImage.get() == nullptr)
        return false;
    return ProjectFile::save(file, *layerManager, *originalImage, resolutionX, resolutionY);
}

void GenericAppComponent::savePresetDialog()
{
    if (!hasDocument() || jobRunning || getEffectLayer() == nullptr)
        return;
    PresetNamePanel::show(*this, "My Preset", [this](const juce::String& name) { presetActions->saveNamed(name); });
}

void GenericAppComponent::showPreferences()
{
    if (jobRunning || PreferencesPanel::findIn(*this) != nullptr)
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
    if (effect == nullptr || jobRunning)
        return false;
    const auto file = AppFileChooser::presetFileFor(BuiltInPresets::getPresetFolder(), name);
    if (file == juce::File())
    {
        showAlert("saveFailed", "Cannot Save Preset", "\"" + name + "\" cannot be used as the name of a file.");
        return false;
    }
    SxPropertySet settings;
    effect->saveToDictionary(settings, {});
    const bool previewStopped = previewRenderer->isRendering();
    waitForRender();
    jobRunning = true;
    bool ok = false;
    {
        SavePresetActivityWindow job(document.get(), file, settings, displayImage.get() != nullptr ? displayImage.get() : previewImage.get());
        job.runThread();
        ok = job.succeeded;
    }
    jobRunning = false;
    if (previewStopped)
        previewRenderer->start(LayerRect::empty(), false);
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

void GenericAppComponent::saveStartupSettings()
{
    auto* effect = getEffectLayer();
    if (effect == nullptr)
        return;
    SxPropertySet settings;
    effect->saveToDictionary(settings, {});
    if (auto xml = settings.toXml())
        applicationProperties->setValue("startupLayerSettings", xml->toString());
    applicationProperties->saveIfNeeded();
    startTimer(defaultsSavedTimer, 200);
}

void GenericAppComponent::resetStartupSettings()
{
    applicationProperties->removeValue("startupLayerSettings");
    applicationProperties->saveIfNeeded();
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

