#include "app/DocumentSession.h"

#include "app/AppFileChooser.h"
#include "app/GenericAppDocument.h"
#include "app/RenderCommand.h"
#include "app/ThreadedActivityWindow.h"
#include "document/LayerManager.h"
#include "document/ProjectFile.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileType.h"
#include "imaging/ImageFileWriter.h"
#include "imaging/ImageStream.h"
#include "ui/SxAlertComponent.h"

namespace
{
const juce::String unsavedQuestionName("saveProjectAlert");

bool hasTransparency(const SxImageRgbaBytes& image)
{
    const auto count = (size_t) image.width * (size_t) image.height;
    for (size_t i = 0; i < count; ++i)
        if (image.pixels[i * 4] != 255)
            return true;
    return false;
}
} // namespace

DocumentSession::DocumentSession(DocumentSessionCallback& callback) : owner(callback) {}

DocumentSession::~DocumentSession()
{
    stopTimer(saveProjectTimer);
    stopTimer(defaultsSavedTimer);
    fileChooser.reset();
}

//==============================================================================
// Opening.

bool DocumentSession::openImage(const juce::File& file)
{
    bool opened = false;
    askAboutUnsavedChanges(file.getFullPathName(), [this, file, &opened] { opened = loadImageFile(file); });
    return opened;
}

bool DocumentSession::openProject(const juce::File& file)
{
    bool opened = false;
    askAboutUnsavedChanges(file.getFullPathName(), [this, file, &opened] { opened = loadProject(file); });
    return opened;
}

bool DocumentSession::isFreshProject() const
{
    auto* settings = owner.getUserSettings();
    return settings == nullptr || settings->getBoolValue("freshProject", true);
}

bool DocumentSession::askAboutUnsavedChanges(const juce::String& pathToOpen, std::function<void()> proceed)
{
    if (!hasDocument() || isFreshProject() || !owner.sessionMayAsk())
    {
        proceed();
        return true;
    }
    // The proceed of the caller may capture its stack: it runs now or never. What runs later is
    // an open of the same path, by its kind.
    const juce::File file(pathToOpen);
    auto openLater = [this, file] {
        if (file.hasFileExtension(owner.getProjectExtension() + ";qrp"))
            loadProject(file);
        else
            loadImageFile(file);
    };
    auto* question = SxAlertComponent::ask(owner.sessionQuestionHost(), unsavedQuestionName, "Save Project?",
                                           "You have unsaved changes. Would you like to save?",
                                           { "Save", "Don't Save", "Cancel" });
    question->onAnswer = [this, openLater, pathToOpen](int answer) {
        if (answer == 0)
        {
            owner.getUserSettings()->setValue("NeedsToLoadImagePath", pathToOpen);
            saveProject(false, openLater);
        }
        else if (answer == 1)
            openLater();
    };
    owner.documentStateChanged();
    return false;
}

void DocumentSession::startNewDocument(const SxRef<SxImageRgbaBytes>& image, const juce::File& file)
{
    // The running render holds the layers: it ends before the old picture goes.
    owner.stopPreviewRender();
    loadingDocument = true;
    owner.pictureClosing();
    previewImage.reset();
    originalImage = image;

    auto& settings = *owner.getUserSettings();
    settings.setValue("ImagePath", file.getFullPathName());
    settings.setValue("freshProject", true);
    settings.setValue("freshProjectUndoCount", juce::var(0));
    settings.setValue("NeedsToLoadImagePath", "");

    currentFile = file;
    imagePath = file.getFullPathName();
    projectFile = juce::File();
}

void DocumentSession::parkOriginal()
{
    const auto parked = owner.originalBeforeEditFile();
    if (!ImageStream::writeFile(*originalImage, parked))
        juce::Logger::writeToLog("Cannot write " + parked.getFullPathName());
}

void DocumentSession::finishOpening()
{
    loadingDocument = false;
    owner.documentStateChanged();
    owner.documentNeedsRender();
}

const SxImageRgbaBytes* DocumentSession::openHostPicture(const SxRef<SxImageRgbaBytes>& picture, const juce::File& titleFile)
{
    startNewDocument(picture, titleFile);
    resolutionX = resolutionY = 72.0f;
    sourceHadAlpha = false;
    parkOriginal();
    newImageLoaded();
    return previewImage.get();
}

bool DocumentSession::loadImageFile(const juce::File& file)
{
    // Decode before dropping the present picture, so a file that fails leaves the document shown.
    // Our own reader: it applies Exif orientation and embedded profiles, and refuses damaged
    // files that JUCE's decoders would crash on or half-read.
    auto decoded = ImageFileReader::read(file);
    if (!decoded.ok())
    {
        juce::Logger::writeToLog("Cannot open " + file.getFullPathName() + ": " + decoded.error);
        owner.showAlert("openFailed", "Cannot Open Photo", file.getFileName() + "\n" + decoded.error);
        return false;
    }

    startNewDocument(decoded.image, file);
    resolutionX = (float) decoded.resolutionX;
    resolutionY = (float) decoded.resolutionY;
    parkOriginal();
    sourceHadAlpha = decoded.hasAlpha;
    newImageLoaded();
    finishOpening();
    return true;
}

bool DocumentSession::loadProject(const juce::File& file)
{
    // Read it all before dropping anything, so that a file that fails leaves the document shown.
    auto project = ProjectFile::readFile(file);
    if (project == nullptr || project->image.get() == nullptr)
    {
        juce::Logger::writeToLog("Cannot open project " + file.getFullPathName());
        owner.showAlert("openFailed", "Cannot Open Project", file.getFileName() + "\nThis is not a project file that can be read.");
        return false;
    }

    startNewDocument(project->image, file);
    owner.getUserSettings()->saveIfNeeded();
    projectFile = file;
    resolutionX = (float) project->widthDpi;
    resolutionY = (float) project->heightDpi;
    parkOriginal();
    sourceHadAlpha = hasTransparency(*originalImage);

    openingProject = true;
    newImageLoaded();
    openingProject = false;

    auto& layers = *owner.getLayerManager();
    if (project->settings.size() > 0)
    {
        // The stack comes back as it was saved; the controls must let go of the effect they
        // show, which the restore replaces.
        owner.showEffectControls(nullptr);
        layers.restoreFromDictionary(project->settings, owner.effectCallback(), {}, false);
        if (auto* effect = layers.getEffectLayer())
        {
            effect->resetImage(previewImage.get());
            layers.setSelectedLayer(effect, false);
            owner.prepareEffectLayer(effect);
        }
        layers.markAllDirty();
        owner.showEffectControls(layers.getEffectLayer());
        // The first record of the history is the state as saved, which is not a change.
        owner.getUserSettings()->setValue("freshProjectUndoCount", juce::var(0));
        undo.reset();
        recordChange();
    }
    owner.updateControls();
    finishOpening();
    return true;
}

juce::Rectangle<int> DocumentSession::previewRectangleFor(juce::Rectangle<int> source, juce::Rectangle<int> limit)
{
    if (source.isEmpty() || limit.isEmpty())
        return {};
    const double scale = juce::jmin(1.0, limit.getWidth() / (double) source.getWidth(), limit.getHeight() / (double) source.getHeight());
    return { 0, 0, juce::jmax(1, juce::roundToInt(source.getWidth() * scale)), juce::jmax(1, juce::roundToInt(source.getHeight() * scale)) };
}

void DocumentSession::newImageLoaded()
{
    auto& settings = *owner.getUserSettings();
    settings.setValue("feshProject", true);

    const auto size = previewRectangleFor(originalImage->bounds(), owner.getPreviewRenderSize());
    previewImage = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(size.getWidth(), size.getHeight()));
    previewImage->scaleInto(*originalImage, previewImage->bounds(), originalImage->bounds(), owner.usesHighQualityPreview() ? 3 : 1);

    // One stack for the life of the program: the picture at 0, the effect above it.
    auto& layers = *owner.getLayerManager();
    owner.showEffectControls(nullptr);
    layers.removeLayersAboveBase();
    if (auto* base = dynamic_cast<StaticImageLayer*>(layers.getLayer(0)))
        base->setImage(previewImage.get());
    else
        layers.insertLayerAt(new StaticImageLayer(previewImage.get()), 0);

    if (auto* effect = owner.createDocumentEffect())
    {
        layers.addLayer(effect);
        effect->resetImage(previewImage.get());

        // Settings the user made the defaults apply to every picture opened after (a project
        // brings its own).
        const auto startup = openingProject ? juce::String() : settings.getValue("startupLayerSettings");
        if (startup.isNotEmpty())
            if (auto xml = SxPropertySet::parseXmlText(startup))
            {
                SxPropertySet set;
                set.fromXml(*xml);
                if (set.size() > 0)
                    effect->restoreFromDictionary(set, {});
            }
        layers.setSelectedLayer(effect, false);
        owner.prepareEffectLayer(effect);
    }
    layers.markAllDirty();

    auto& view = *owner.getDocument();
    view.setImage(previewImage.get());
    view.fitToWindow(false);
    owner.showEffectControls(layers.getEffectLayer());

    // The first record holds the start state, so the first undo returns to the opened picture.
    undo.reset();
    recordChange();
    owner.pictureReplaced();
    owner.documentStateChanged();
}

bool DocumentSession::cutPicture(juce::Rectangle<int> rect)
{
    if (!hasDocument())
        return false;
    rect = rect.getIntersection(originalImage->bounds());
    if (rect.isEmpty() || rect == originalImage->bounds())
        return false;

    // The render thread reads the layers and the pictures: it ends before they are replaced.
    owner.stopPreviewRender();
    auto cut = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(rect.getWidth(), rect.getHeight()));
    cut->copyRect(*originalImage, rect, cut->bounds());

    // The cut picture goes through the same steps as a newly opened one, but the look the user
    // made stays: only the picture changed.
    auto& layers = *owner.getLayerManager();
    SxPropertySet look;
    if (auto* effect = layers.getEffectLayer())
        effect->saveToDictionary(look, {});
    loadingDocument = true;
    owner.pictureClosing();
    previewImage.reset();
    originalImage = cut;
    newImageLoaded();
    if (auto* effect = layers.getEffectLayer(); effect != nullptr && look.size() > 0)
    {
        effect->restoreFromDictionary(look, {});
        effect->setNeedsRender(true);
        undo.reset();
        recordChange();
    }
    owner.updateControls();
    // The cut is a change the project file does not hold yet.
    owner.getUserSettings()->setValue("freshProject", false);
    loadingDocument = false;
    owner.documentNeedsRender();
    return true;
}

void DocumentSession::openImageDialog()
{
    const auto start = juce::File(imagePath).getParentDirectory();
    AppFileChooser::choose(fileChooser, "Open Photo", start.isDirectory() ? start : juce::File(),
                           "*.jpg;*.jpeg;*.png;*.tif;*.tiff",
                           juce::FileBrowserComponent::openMode | juce::FileBrowserComponent::canSelectFiles,
                           [this](const juce::File& file) { openImage(file); });
}

void DocumentSession::openProjectDialog()
{
    const auto start = projectFile != juce::File() ? projectFile.getParentDirectory() : juce::File(imagePath).getParentDirectory();
    AppFileChooser::choose(fileChooser, "Open Project", start.isDirectory() ? start : juce::File(),
                           "*." + owner.getProjectExtension() + ";*.qrp",
                           juce::FileBrowserComponent::openMode | juce::FileBrowserComponent::canSelectFiles,
                           [this](const juce::File& file) { openProject(file); });
}

//==============================================================================
// Saving.

void DocumentSession::savePhotoDialog()
{
    if (!hasDocument() || jobRunning)
        return;
    // The dialog starts at the source's own name and extension; a project's picture has no
    // file of its own, so it is offered as a PNG beside the project.
    auto start = currentFile;
    if (start.hasFileExtension(owner.getProjectExtension() + ";qrp"))
        start = start.withFileExtension("png");
    constexpr int saveFlags = juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                              | juce::FileBrowserComponent::warnAboutOverwriting; // 134
    AppFileChooser::choose(fileChooser, "Save Image Location", start, "*.jpg;*.jpeg;*.png;*.tif", saveFlags,
                           [this](const juce::File& file) { saveImageTo(file); });
}

void DocumentSession::copyRenderCommand()
{
    auto* layers = owner.getLayerManager();
    auto* effect = layers != nullptr ? dynamic_cast<TornvaleEffect*>(layers->getEffectLayer()) : nullptr;
    const juce::File source = currentFile != juce::File() ? currentFile : juce::File(imagePath);
    if (!hasDocument() || effect == nullptr || source == juce::File())
        return;
    const auto command = RenderCommand::forDocument(effect->currentParameters(), source, RenderCommand::renderProgram());
    juce::SystemClipboard::copyTextToClipboard(command);
    juce::Logger::writeToLog("Copied the render command: " + command);
}

bool DocumentSession::saveImageTo(const juce::File& chosen)
{
    if (!hasDocument() || jobRunning)
        return false;
    const auto destination = AppFileChooser::photoDestination(chosen);
    auto result = renderFullImage("Rendering...");
    if (result.get() == nullptr)
    {
        owner.showAlert("saveFailed", "Cannot Save Photo", destination.getFileName() + "\nThe picture could not be rendered.");
        return false;
    }
    ImageWriteOptions options;
    options.resolutionX = resolutionX;
    options.resolutionY = resolutionY;
    options.jpegQuality = 92;
    const auto written = ImageFileWriter::write(*result, destination, ImageFileTypes::fromPath(destination.getFullPathName()), options);
    if (written.failed())
    {
        juce::Logger::writeToLog("Cannot save " + destination.getFullPathName() + ": " + written.getErrorMessage());
        owner.showAlert("saveFailed", "Cannot Save Photo", destination.getFileName() + "\n" + written.getErrorMessage());
        return false;
    }
    auto& settings = *owner.getUserSettings();
    settings.setValue("currentSaveCount_v2", settings.getIntValue("currentSaveCount_v2", 0) + 1);
    juce::Logger::writeToLog("Saved " + destination.getFullPathName() + " (" + juce::String(result->width) + " x " + juce::String(result->height) + ")");
    return true;
}

SxRef<SxImageRgbaBytes> DocumentSession::renderFullImage(const juce::String& message)
{
    auto* layers = owner.getLayerManager();
    auto* base = layers != nullptr ? dynamic_cast<StaticImageLayer*>(layers->getLayer(0)) : nullptr;
    if (!hasDocument() || base == nullptr || jobRunning)
        return {};
    // The full render takes the GL context: a preview render must have ended first.
    owner.stopPreviewRender();
    jobRunning = true;
    renderingFullImage = true;
    auto* view = owner.getDocument();
    view->setRenderingFull(true);
    view->repaint();

    // The stack renders from the full-size source, every length scaled to it (the render scale
    // follows the picture in layer 0), with the mask resampled to that size.
    auto applySize = [layers](SxImageRgbaBytes* picture) {
        const auto whole = LayerRect::wholeOf(*picture);
        for (auto* layer : layers->getLayers())
            layer->onImageSizeChanged(whole, picture);
        layers->markAllDirty();
    };
    layers->setHighQuality(true);
    base->setImage(originalImage.get());
    applySize(originalImage.get());

    SxRef<SxImageRgbaBytes> result;
    {
        RenderHiResActivityThread job(view, *layers, message);
        job.setMessage("Saving...");
        job.runThread();
        result = job.result;
    }

    // Back to the preview: the caches of the full-size run are dropped, and the preview renders
    // again so that the view, the brush and the next change work on preview-sized layers.
    base->setImage(previewImage.get());
    applySize(previewImage.get());
    layers->setHighQuality(false);
    view->setRenderingFull(false);
    renderingFullImage = false;
    jobRunning = false;
    owner.restartPreviewRender();
    return result;
}

bool DocumentSession::runJob(const std::function<bool()>& job)
{
    if (jobRunning)
        return false;
    // A job renders or reads the stack; a preview render stopped for it never reached the view,
    // so the view renders again afterwards.
    const bool previewStopped = owner.stopPreviewRender();
    jobRunning = true;
    const bool ok = job();
    jobRunning = false;
    if (previewStopped)
        owner.restartPreviewRender();
    return ok;
}

void DocumentSession::saveProject(bool saveAs, std::function<void()> afterSave)
{
    if (!hasDocument() || jobRunning)
        return;
    if (projectFile != juce::File() && !saveAs)
    {
        startProjectSave(projectFile, std::move(afterSave));
        return;
    }
    const auto extension = owner.getProjectExtension();
    juce::File start = projectFile;
    if (start == juce::File())
        start = currentFile != juce::File() ? currentFile.withFileExtension(extension)
                                            : juce::File::getSpecialLocation(juce::File::userDocumentsDirectory).getChildFile("project");
    constexpr int saveFlags = juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                              | juce::FileBrowserComponent::warnAboutOverwriting;
    AppFileChooser::choose(fileChooser, "Save Project Location", start, "*." + extension, saveFlags,
                           [this, afterSave, extension](const juce::File& file) {
                               startProjectSave(AppFileChooser::projectDestination(file, extension), afterSave);
                           });
}

void DocumentSession::startProjectSave(const juce::File& file, std::function<void()> afterSave)
{
    // The dialog has closed when this runs; the job starts a moment later, once the window has
    // repainted without it.
    saveDestination = file;
    afterProjectSave = std::move(afterSave);
    startTimer(saveProjectTimer, 75);
}

bool DocumentSession::saveProjectTo(const juce::File& file)
{
    if (!hasDocument() || jobRunning)
        return false;
    const bool ok = runJob([this, &file] {
        SaveProjectActivityWindow job(owner.getDocument(), file, [this](const juce::File& f) { return saveProjectNow(f); });
        job.runThread();
        return job.succeeded;
    });
    auto& settings = *owner.getUserSettings();
    settings.setValue("NeedsToLoadImagePath", "");
    if (!ok)
    {
        juce::Logger::writeToLog("Cannot save project " + file.getFullPathName());
        owner.showAlert("saveFailed", "Cannot Save Project", file.getFileName() + "\nThe project could not be written there.");
        return false;
    }
    settings.setValue("freshProjectUndoCount", juce::var(0));
    settings.setValue("freshProject", true);
    settings.saveIfNeeded();
    projectFile = file;
    currentFile = file;
    owner.documentStateChanged();
    juce::Logger::writeToLog("Saved project " + file.getFullPathName());
    return true;
}

bool DocumentSession::saveProjectNow(const juce::File& file)
{
    auto* layers = owner.getLayerManager();
    if (layers == nullptr || originalImage.get() == nullptr)
        return false;
    return ProjectFile::save(file, *layers, *originalImage, resolutionX, resolutionY);
}

void DocumentSession::saveStartupSettings()
{
    auto* layers = owner.getLayerManager();
    auto* effect = layers != nullptr ? layers->getEffectLayer() : nullptr;
    if (effect == nullptr)
        return;
    SxPropertySet settings;
    effect->saveToDictionary(settings, {});
    if (auto xml = settings.toXml())
        owner.getUserSettings()->setValue("startupLayerSettings", xml->toString());
    owner.getUserSettings()->saveIfNeeded();
    startTimer(defaultsSavedTimer, 200);
}

void DocumentSession::resetStartupSettings()
{
    owner.getUserSettings()->removeValue("startupLayerSettings");
    owner.getUserSettings()->saveIfNeeded();
}

void DocumentSession::timerCallback(int timerID)
{
    stopTimer(timerID);
    if (timerID == saveProjectTimer)
    {
        auto after = std::move(afterProjectSave);
        afterProjectSave = nullptr;
        if (saveProjectTo(saveDestination) && after)
            after();
    }
    else if (timerID == defaultsSavedTimer)
        owner.showAlert("defaultSettingsAlert", "Default Settings",
                        "Your current layers and effects have been saved as a default setting. The next time you open an "
                        "image these settings will be applied automatically");
}

//==============================================================================
// History.

void DocumentSession::recordChange()
{
    auto* layers = owner.getLayerManager();
    auto* effect = layers != nullptr ? layers->getEffectLayer() : nullptr;
    if (previewImage.get() == nullptr || effect == nullptr || restoringUndo)
        return;
    SxPropertySet record;
    effect->saveToDictionary(record, {});
    record.setString("currentEffectName", effect->getName());
    undo.push(record);

    auto& settings = *owner.getUserSettings();
    const int count = settings.getIntValue("freshProjectUndoCount", 0);
    settings.setValue("freshProjectUndoCount", count + 1);
    if (count > 0)
        settings.setValue("freshProject", false);
    owner.documentStateChanged();
}

void DocumentSession::stepHistory(bool forward)
{
    if (previewImage.get() == nullptr)
        return;
    SxPropertySet record;
    if (!(forward ? undo.redo(record) : undo.undo(record)))
        return;
    auto* layers = owner.getLayerManager();
    auto* effect = layers != nullptr ? layers->getEffectLayer() : nullptr;
    // The effect and the controls follow the restored fields without recording the restore as
    // a change. A record of another effect than the present one leaves the present one as it is.
    restoringUndo = true;
    if (effect != nullptr && record.size() > 0 && record.getValue("currentEffectName", effect->getName()) == effect->getName())
    {
        effect->restoreFromDictionary(record, {});
        effect->setNeedsRender(true);
    }
    owner.updateControls();
    restoringUndo = false;
    if (effect != nullptr)
        effect->invalidate(nullptr);
}
