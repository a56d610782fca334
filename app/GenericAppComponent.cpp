#include "app/GenericAppComponent.h"

#include "app/AppCommands.h"
#include "app/AppFileChooser.h"
#include "app/CommandLineRender.h"
#include "app/ComponentMap.h"
#include "app/DocumentKeyRoute.h"
#include "app/EffectControlPanel.h"
#include "app/Heartbeat.h"
#include "app/HostSession.h"
#include "app/InputTrace.h"
#include "app/MainTopBar.h"
#include "app/ParentProcess.h"
#include "app/PresetActions.h"
#include "app/PresetNamePanel.h"
#include "app/PreviewRenderer.h"
#include "app/RenderCommand.h"
#include "app/ThreadedActivityWindow.h"
#include "brush/SxBrushSettings.h"
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
#include "tools/SxPanTool.h"
#include "tools/SxToolSwitcher.h"
#include "ui/SxAlertComponent.h"
#include "ui/SxComponent.h"
#include "ui/SxSlider.h"
#include "wizards/PreferencesPanel.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

GenericAppComponent* mainAppComponent = nullptr;

namespace
{
void log(const juce::String& text)
{
    juce::Logger::writeToLog(text);
}

LayerRect wholePicture()
{
    return LayerRect::empty();
}

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

GenericAppComponent::GenericAppComponent()
{
    setName("mainComponent");
    mainAppComponent = this;
    previewRenderer = std::make_unique<PreviewRenderer>(*this);
}

GenericAppComponent::~GenericAppComponent()
{
    waitForRender();
    previewRenderer.reset();
    stopTimer(openPanelTimer);
    stopTimer(closePanelTimer);
    stopTimer(componentMapTimer);
    stopTimer(topBarRepaintTimer);
    stopTimer(saveProjectTimer);
    stopTimer(defaultsSavedTimer);
    stopTimer(handOverTimer);
    fileChooser.reset();
    setApplicationCommandManagerToWatch(nullptr);
    commandManager.setFirstCommandTarget(nullptr);
    if (toolSwitcher != nullptr)
        toolSwitcher->setCurrentTool(nullptr);
    if (document != nullptr)
        document->setImage(nullptr);
    // The panel points into the effect and the top bar owns the pan tool the document may hold.
    keyRoute.reset();
    effectControlComponent.reset();
    if (presetActions != nullptr)
        presetActions->stopPreviewThread();
    presetManager.reset();
    presetActions.reset();
    topBar.reset();
    toolSwitcher.reset();
    document.reset();
    layerManager.reset();
    if (applicationProperties != nullptr)
        applicationProperties->saveIfNeeded();
    if (mainAppComponent == this)
        mainAppComponent = nullptr;
}

juce::File GenericAppComponent::applicationDataFolder()
{
    return juce::File::getSpecialLocation(juce::File::userApplicationDataDirectory).getChildFile(getApplicationDataName());
}

juce::File GenericAppComponent::originalBeforeEditFile()
{
    return applicationDataFolder().getChildFile("origBeforeEdit.tmp");
}

void GenericAppComponent::initializeApplication()
{
    if (hasPluginHost())
    {
        log("PID: " + juce::String((int) ::getpid()) + "; PPID: " + juce::String((int) ::getppid()));
        const auto hostName = ParentProcess::hostNameFor(juce::JUCEApplicationBase::getCommandLineParameters());
        hostKind = ParentProcess::hostKindForName(hostName);
        log("Host: " + hostName + " (kind " + juce::String(hostKind) + ")");
    }

    juce::PropertiesFile::Options options;
    options.applicationName = getApplicationDataName();
    options.filenameSuffix = "plist";
    options.osxLibrarySubFolder = "Application Support";
    options.folderName = getApplicationDataName();
    options.commonToAllUsers = false;
    options.ignoreCaseOfKeyNames = false;
    options.doNotSave = false;
    options.millisecondsBeforeSaving = 3000;
    options.storageFormat = juce::PropertiesFile::storeAsXML;
    // JUCE would put a Linux settings folder straight into the home folder; it goes beside the
    // program's working files in the configuration folder instead, with the same name and form.
    const auto folder = applicationDataFolder();
    folder.createDirectory();
    applicationProperties = std::make_unique<juce::PropertiesFile>(
        folder.getChildFile(options.applicationName + "." + options.filenameSuffix), options);

    auto& settings = *applicationProperties;
    const bool useImageLocation = settings.getBoolValue("useImageLocation", true);
    const int lastVersion = settings.getIntValue("lastVersionNumber", 0);
    settings.setValue("lastVersionNumber", versionNumber);
    log("Settings: " + settings.getFile().getFullPathName() + ", last version " + juce::String(lastVersion)
        + (useImageLocation ? ", saving beside the image" : ""));

    layerManager = std::make_unique<LayerManager>(this);
    createEffects();
    // A first start, or a folder the user emptied, gets the built-in presets.
    if (!BuiltInPresets::hasPresets(BuiltInPresets::getPresetFolder()))
        BuiltInPresets::writeDefaultPresets(BuiltInPresets::getPresetFolder());
    presetActions = std::make_unique<PresetActions>(*this);

    document = std::make_unique<GenericAppDocument>(applicationProperties.get());
    document->setComponentID("document");
    addAndMakeVisible(*document);
    SxComponent::place(*document, "30, 34, left+parent.width - 300, top+parent.height - 150");

    toolSwitcher = std::make_unique<SxToolSwitcher>(document.get());

    // Every menu item and shortcut goes through one command manager. This component is always
    // asked first, wherever the keyboard focus is (or when nothing has it yet); what it does not
    // handle (quit) falls through to the application.
    commandManager.registerAllCommandsForTarget(this);
    if (auto* app = juce::JUCEApplication::getInstance())
        commandManager.registerAllCommandsForTarget(app);
    commandManager.setFirstCommandTarget(this);
    setApplicationCommandManagerToWatch(&commandManager);

    hostSession = std::make_unique<HostSession>(*this);
    hostSession->findHandOverFiles();
    hostSession->readHandOverHeader();
}

void GenericAppComponent::buildInterface()
{
    topBar = std::make_unique<MainTopBar>(*this);
    addAndMakeVisible(*topBar);
    topBar->setComponentID("topBar");
    topBar->setBoundsString("0, 0, left+parent.width, top+33");
    if (isHostKind(1))
        topBar->showHostApplyButton(HostSession::applyTooltip(hostKind));

    effectControlComponent = std::make_unique<EffectControlPanel>(*this);
    effectControlComponent->setComponentID("effectControlComponent");
    addAndMakeVisible(*effectControlComponent);
    effectPanelOpen = applicationProperties->getBoolValue("effectControlComponentOpened", true);
    setEffectPanelOpen(effectPanelOpen, false);

    keyRoute = std::make_unique<DocumentKeyRoute>(
        *this, [this] { return getCurrentTool(); }, topBar->getPanTool(),
        [this](const juce::KeyPress& key) { return effectControlComponent != nullptr && effectControlComponent->handleKey(key); });

    presetManager = std::make_unique<PresetManager>(*presetActions, "Tornvale", BuiltInPresets::getPresetFolder(), applicationProperties.get());
    presetManager->setRightEdge("effectControlComponent.left");
    addAndMakeVisible(*presetManager);
    presetActions->setManager(presetManager.get());
    presetManager->setOpen(applicationProperties->getBoolValue("PresetManagerOpened", true), false);
    // The picture ends where the strip begins, and keeps the band under it when the strip is away.
    SxComponent::place(*document, "30, 34, left+parent.width - 300, min(presetControlComponent.top, parent.height - 116)");

    setManualRedraw(isManualRedraw());
    // Pictures beyond the readers' limit open when the user has raised it in the settings file.
    ImageLimits::setMaximumMegapixels(applicationProperties->getDoubleValue("maxMegapixels", ImageLimits::defaultMegapixels));
    startTimer(topBarRepaintTimer, 600);
}

void GenericAppComponent::finishInterface()
{
    document->setWantsKeyboardFocus(false);
    setWantsKeyboardFocus(true);
}

void GenericAppComponent::initializeComplete()
{
    setOpaque(true);
    repaint();
    if (auto* window = getTopLevelComponent())
        window->toFront(true);

    started = true;

    if (commandLineRender)
    {
        // The caller waits for a file, not a window: render, save, and quit with the outcome.
        closing = true;
        juce::File written;
        const auto result = CommandLineRender::run(juce::File(commandLineInput), commandLineOutput, written);
        if (result.failed())
            std::fprintf(stderr, "tornvale: %s: %s\n", commandLineInput.toRawUTF8(), result.getErrorMessage().toRawUTF8());
        else
            std::fprintf(stderr, "tornvale: %s -> %s\n", commandLineInput.toRawUTF8(), written.getFullPathName().toRawUTF8());
        juce::JUCEApplicationBase::getInstance()->setApplicationReturnValue(result.failed() ? 1 : 0);
        juce::JUCEApplicationBase::quit();
        return;
    }

    if (hostSession != nullptr && hostSession->hasPendingPicture())
        startTimer(handOverTimer, 325);

    const auto mapPath = juce::SystemStats::getEnvironmentVariable("TORNVALE_COMPONENT_MAP", {});
    if (mapPath.isNotEmpty())
    {
        componentMapFile = juce::File(mapPath);
        inputTrace = std::make_unique<InputTrace>();
        heartbeat = std::make_unique<Heartbeat>();
        startTimer(componentMapTimer, 300);
    }
    grabKeyboardFocus();
}

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

bool GenericAppComponent::loadImageFile(const juce::File& file, bool)
{
    // Decode before dropping the current picture, so a file that fails leaves the document shown.
    // Our own reader: it applies Exif orientation and embedded profiles, and refuses damaged
    // files that JUCE's decoders would crash on or half-read.
    auto decoded = ImageFileReader::read(file);
    if (!decoded.ok())
    {
        log("Cannot open " + file.getFullPathName() + ": " + decoded.error);
        showAlert("openFailed", "Cannot Open Photo", file.getFileName() + "\n" + decoded.error);
        return false;
    }

    startNewDocument(decoded.image, file);
    projectFile = juce::File();
    metadata.clear();
    resolutionX = (float) decoded.resolutionX;
    resolutionY = (float) decoded.resolutionY;

    if (!ImageStream::writeFile(*originalImage, originalBeforeEditFile()))
        log("Cannot write " + originalBeforeEditFile().getFullPathName());

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
        log("Cannot open project " + file.getFullPathName());
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
        log("Cannot write " + originalBeforeEditFile().getFullPathName());
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
void GenericAppComponent::requestRender(bool showBusy, const LayerRect* region)
{
    layerNeedsRender(showBusy, region);
}

void GenericAppComponent::layerNeedsRender(bool showBusy, const LayerRect* region)
{
    if (isManualRedraw())
        return;
    previewRenderer->start(region != nullptr ? *region : wholePicture(), showBusy);
}

float GenericAppComponent::getRenderScale()
{
    return layerManager != nullptr ? layerManager->getRenderScale() : 1.0f;
}

LayerManager* GenericAppComponent::layersToPreview()
{
    // A job behind the activity panel holds the GL context and the layers; it puts the preview
    // back in step when it ends.
    if (previewImage.get() == nullptr || loadingDocument || jobRunning)
        return nullptr;
    return layerManager.get();
}

void GenericAppComponent::previewRenderStarting(bool showBusy)
{
    if (presetActions != nullptr)
        presetActions->stopPreviewThread(); // the GL context is one; the render takes it
    if (showBusy)
        document->setShowActivity(true, "Rendering...");
    document->repaint();
}

void GenericAppComponent::previewRendered(SxImageRgbaBytes* picture)
{
    showRenderedImage(picture);
    log("Render Complete");
}

void GenericAppComponent::previewRenderingStopped()
{
    if (document != nullptr)
        document->setShowActivity(false, {});
}

void GenericAppComponent::renderImmediate()
{
    // The Render button: the newest state, rendered on a thread like every other preview. A
    // render that runs now ends with whatever changed meanwhile, so a press then needs nothing.
    if (!previewRenderer->isRendering())
        previewRenderer->start(wholePicture(), true);
}

void GenericAppComponent::showRenderedImage(SxImageRgbaBytes* image)
{
    if (image == nullptr)
        return;
    displayImage = previewImage.get() != nullptr && hostSession != nullptr ? hostSession->throughSelection(*image, *previewImage)
                                                 : SxRef<SxImageRgbaBytes>::share(image);
    ++renderCount;
    if (!showingOriginal)
        document->setImage(displayImage.get());
}

void GenericAppComponent::showOriginal(bool pressed)
{
    if (pressed == showingOriginal)
        return;
    showingOriginal = pressed;
    if (previewImage.get() == nullptr)
        return;
    document->setImage(pressed || displayImage.get() == nullptr ? previewImage.get() : displayImage.get());
}

void GenericAppComponent::randomizeAll()
{
    auto* effect = getEffectLayer();
    if (effect == nullptr || previewImage.get() == nullptr)
        return;
    juce::Random random;
    const int count = effectGroups.empty() ? 0 : (int) effectGroups[(size_t) currentEffectGroup].effects.size();
    if (count > 0)
        random.nextInt(count); // the one style of this program is always the pick
    layerManager->randomize();
    updateControls();
    layerChanged();
    effect->invalidate(nullptr);
}

void GenericAppComponent::randomizeEffect()
{
    auto* effect = getEffectLayer();
    if (effect == nullptr || previewImage.get() == nullptr)
        return;
    effect->randomizeSettings();
    updateControls();
    layerChanged();
    effect->invalidate(nullptr);
}

void GenericAppComponent::updateControls()
{
    if (effectControlComponent != nullptr)
        effectControlComponent->updateControls();
    if (topBar != nullptr)
        topBar->updateButtons();
    commandStatusChanged();
}

//==============================================================================
void GenericAppComponent::layerChanged()
{
    auto* effect = getEffectLayer();
    if (previewImage.get() == nullptr || effect == nullptr || restoringUndo)
        return;
    SxPropertySet record;
    effect->saveToDictionary(record, {});
    record.setString("currentEffectName", effect->getName());
    undo.push(record);

    auto& settings = *applicationProperties;
    const int count = settings.getIntValue("freshProjectUndoCount", 0);
    settings.setValue("freshProjectUndoCount", count + 1);
    if (count > 0)
        settings.setValue("freshProject", false);
    if (topBar != nullptr)
        topBar->updateButtons();
    commandStatusChanged();
}

void GenericAppComponent::setActiveTool(SxTool* tool)
{
    setCurrentTool(tool);
}

namespace
{
void restoreRecord(GenericAppComponent& component, const SxPropertySet& record)
{
    auto* effect = component.getEffectLayer();
    if (effect == nullptr || record.size() == 0)
        return;
    // A record of another effect than the present one leaves the present one as it is.
    if (record.getValue("currentEffectName", effect->getName()) != effect->getName())
        return;
    effect->restoreFromDictionary(record, {});
    effect->setNeedsRender(true);
}
} // namespace

void GenericAppComponent::undoStep()
{
    stepHistory(false);
}

void GenericAppComponent::redoStep()
{
    stepHistory(true);
}

void GenericAppComponent::stepHistory(bool forward)
{
    if (previewImage.get() == nullptr)
        return;
    SxPropertySet record;
    if (!(forward ? undo.redo(record) : undo.undo(record)))
        return;
    // The controls follow the restored fields without recording the restore as a change.
    restoringUndo = true;
    restoreRecord(*this, record);
    updateControls();
    restoringUndo = false;
    if (auto* effect = getEffectLayer())
        effect->invalidate(nullptr);
}

//==============================================================================
void GenericAppComponent::setCurrentTool(SxTool* tool)
{
    if (tool != nullptr)
        tool->setPenGesture(isPenGestureOn());
    if (toolSwitcher != nullptr)
        toolSwitcher->setCurrentTool(tool);
}

void GenericAppComponent::repaintImageRect(const LayerRect& rect)
{
    // A render under way or due will show the painting: the layers' kept images are not ready.
    if (!hasDocument() || jobRunning || previewRenderer->isRendering() || layerManager == nullptr)
        return;
    auto* shown = layerManager->recompose(rect);
    if (shown == nullptr || showingOriginal)
        return;
    if (shown != displayImage.get())
    {
        displayImage = SxRef<SxImageRgbaBytes>::share(shown);
        document->setImage(shown);
        return;
    }
    document->imageChanged(rect.meansWholePicture() ? shown->bounds() : rect.pixelsIn(*shown));
}

bool GenericAppComponent::isPenGestureOn() const
{
    return applicationProperties != nullptr && applicationProperties->getBoolValue("penGesture", false);
}

void GenericAppComponent::togglePenGesture()
{
    applicationProperties->setValue("penGesture", !isPenGestureOn());
    if (auto* tool = getCurrentTool())
        tool->togglePenGesture();
    commandStatusChanged();
}

SxTool* GenericAppComponent::getCurrentTool() const
{
    return toolSwitcher != nullptr ? toolSwitcher->getCurrentTool() : nullptr;
}

void GenericAppComponent::setManualRedraw(bool manual)
{
    applicationProperties->setValue("manualRedraw", manual);
    if (topBar != nullptr)
        topBar->setManualRedraw(manual);
}

bool GenericAppComponent::isManualRedraw() const
{
    return applicationProperties != nullptr && applicationProperties->getBoolValue("manualRedraw", false);
}

void GenericAppComponent::setEffectPanelOpen(bool open, bool animate)
{
    if (effectControlComponent == nullptr)
        return;
    effectPanelOpen = open;
    applicationProperties->setValue("effectControlComponentOpened", open);
    const juce::String bounds = open ? "parent.width - 256, topBar.height, left + 256, parent.height"
                                     : "parent.width, topBar.height, left + 256, parent.height";
    if (topBar != nullptr)
        topBar->setPanelArrow(open);
    if (!animate || getWidth() <= 0)
    {
        effectControlComponent->setBoundsString(bounds);
        commandStatusChanged();
        return;
    }
    // Slide there, then hand the place back to the bounds string so a resize keeps it.
    const auto target = juce::Rectangle<int>(open ? getWidth() - 256 : getWidth(), topBar != nullptr ? topBar->getHeight() : 33, 256,
                                             getHeight() - (topBar != nullptr ? topBar->getHeight() : 33));
    effectControlComponent->setPositioner(nullptr);
    panelAnimator.animateComponent(effectControlComponent.get(), target, 1.0f, 300, false, 0.0, 0.0, Easing::sineInOut);
    pendingPanelBounds = bounds;
    startTimer(open ? closePanelTimer : openPanelTimer, 320);
    commandStatusChanged();
}

void GenericAppComponent::timerCallback(int timerID)
{
    stopTimer(timerID);
    switch (timerID)
    {
        case openPanelTimer:
        case closePanelTimer:
            if (effectControlComponent != nullptr && pendingPanelBounds.isNotEmpty())
                effectControlComponent->setBoundsString(pendingPanelBounds);
            pendingPanelBounds = {};
            break;
        case topBarRepaintTimer:
            if (topBar != nullptr)
                topBar->repaint();
            break;
        case saveProjectTimer:
            if (saveProjectTo(saveDestination) && afterProjectSave)
            {
                auto after = std::move(afterProjectSave);
                afterProjectSave = nullptr;
                after();
            }
            afterProjectSave = nullptr;
            break;
        case defaultsSavedTimer:
            showAlert("defaultSettingsAlert", "Default Settings",
                      "Your current layers and effects have been saved as a default setting. The next time you open an "
                      "image these settings will be applied automatically");
            break;
        case handOverTimer:
            hostSession->readHandOverImage(hostSession->getPaths().image, false);
            break;
        case componentMapTimer:
            writeComponentMap(componentMapFile);
            startTimer(componentMapTimer, 500);
            break;
        default:
            break;
    }
}

//==============================================================================
void GenericAppComponent::showAlert(const juce::String& name, const juce::String& title, const juce::String& message)
{
    if (commandLineRender || !isShowing())
        return;
    SxAlertComponent::show(*this, name, title, message);
}

bool GenericAppComponent::isInterestedInFileDrag(const juce::StringArray& files)
{
    if (isHostKind(1))
        return false;
    for (const auto& path : files)
    {
        const juce::File file(path);
        if (file.hasFileExtension(getProjectExtension()) || ImageFileTypes::fromPath(path) != ImageFileType::unknown)
            return true;
    }
    return false;
}

void GenericAppComponent::filesDropped(const juce::StringArray& files, int, int)
{
    fileDragOver = false;
    if (files.isEmpty())
        return;
    const juce::File file(files[0]);
    if (file.hasFileExtension(getProjectExtension()))
        openProject(file);
    else
        openImage(file, false);
}

bool GenericAppComponent::keyPressed(const juce::KeyPress& key, juce::Component*)
{
    return keyPressed(key);
}

bool GenericAppComponent::keyPressed(const juce::KeyPress& key)
{
    // An open crop frame takes its Esc before any shortcut.
    if (cropController != nullptr && cropController->keyPressed(key))
        return true;
    // Shortcuts first, through the command manager's key mappings; a disabled command takes
    // its key without acting.
    if (commandManager.getKeyMappings()->keyPressed(key, this))
        return true;
    // The Render button's key, which no menu lists.
    const auto mods = key.getModifiers();
    if (mods.isCommandDown() && !mods.isShiftDown())
    {
        // With Ctrl held the text character is a control code, and X11 reports letters' key
        // codes in lower case: compare letters by their upper-case code.
        const int code = (int) juce::CharacterFunctions::toUpperCase((juce::juce_wchar) key.getKeyCode());
        if (code == 'R')
        {
            renderImmediate();
            return true;
        }
    }
    return keyRoute != nullptr && keyRoute->keyPressed(key);
}

bool GenericAppComponent::keyStateChanged(bool)
{
    if (keyRoute != nullptr)
        keyRoute->keyStateChanged();
    return false;
}

bool GenericAppComponent::keyStateChanged(bool isKeyDown, juce::Component*)
{
    return keyStateChanged(isKeyDown);
}

void GenericAppComponent::resized()
{
    juce::ImageComponent::resized();
    if (componentMapFile != juce::File())
        startTimer(componentMapTimer, 200);
}

void GenericAppComponent::writeComponentMap(const juce::File& file)
{
    auto text = ComponentMap::describeComponents(*this);
    if (document->getImage() != nullptr)
    {
        const auto r = document->localAreaToGlobal(document->imageBounds()).toNearestInt();
        text << "shownImage " << r.getX() << ' ' << r.getY() << ' ' << r.getWidth() << ' ' << r.getHeight() << '\n';
    }
    if (auto* effect = getEffectLayer())
    {
        SxPropertySet values;
        effect->saveToDictionary(values, {});
        const auto& pairs = values.getAllProperties();
        for (int i = 0; i < pairs.size(); ++i)
            text << "param " << pairs.getAllKeys()[i] << '=' << pairs.getAllValues()[i] << '\n';
    }
    if (presetManager != nullptr)
        text << presetManager->describe();
    auto* alert = SxAlertComponent::findIn(*this);
    const juce::String alertName = alert != nullptr ? alert->getName() : juce::String("none");
    text << "state rendering=" << (isRendering() ? 1 : 0) << " renders=" << renderCount << " zoom=" << document->getZoom()
         << " original=" << (showingOriginal ? 1 : 0) << " dragOver=" << (fileDragOver ? 1 : 0)
         << " brush=" << SxBrushSettings::brushSize
         << " tool=" << (getCurrentTool() != nullptr ? getCurrentTool()->getName() : juce::String("none"))
         << " maskedPixels=" << [] { auto* m = TornvaleEffect::getBrushMask();
                                     return m == nullptr ? 0 : (int) std::count_if(m->pixels, m->pixels + m->byteCount(), [](uint8_t b) { return b != 0; }); }()
         << " undo=" << undo.getCurrentIndex() << " manual=" << (isManualRedraw() ? 1 : 0)
         << " fresh=" << (isFreshProject() ? 1 : 0) << " busy=" << (jobRunning ? 1 : 0)
         << " alert=" << alertName
         << " image=" << (hasDocument() ? juce::String(originalImage->width) + "x" + juce::String(originalImage->height) : juce::String("none"))
         << " project=" << (projectFile == juce::File() ? juce::String("none") : projectFile.getFullPathName().replaceCharacter(' ', '_'));
    // Where keys go: a key that a script sends and nothing answers is explained by these.
    auto* focused = juce::Component::getCurrentlyFocusedComponent();
    const auto focusName = focused == nullptr ? juce::String("none")
                           : focused->getName().isNotEmpty() ? focused->getName() : focused->getComponentID();
    auto* peer = getPeer();
    text << " focus=" << (focusName.isEmpty() ? juce::String("unnamed") : focusName.replaceCharacter(' ', '_'))
         << " windowFocused=" << (peer != nullptr && peer->isFocused() ? 1 : 0)
         << " modal=" << juce::ModalComponentManager::getInstance()->getNumModalComponents()
         << (inputTrace != nullptr ? inputTrace->describe() : juce::String())
         << (heartbeat != nullptr ? heartbeat->describe() : juce::String()) << '\n';
    text << ComponentMap::describeCommands(*this, AppCommands::allCommands());
    ComponentMap::replace(file, text);
}

bool GenericAppComponent::mayQuit()
{
    quitRequested = true;
    if (hostSession != nullptr && !hostSession->mayQuit())
        return false;
    waitForRender();
    originalBeforeEditFile().deleteFile();
    return true;
}

void GenericAppComponent::applicationShutdown()
{
    waitForRender();
    if (applicationProperties != nullptr)
        applicationProperties->saveIfNeeded();
}

juce::String GenericAppComponent::getWindowTitle()
{
    const auto name = juce::JUCEApplication::getInstance() != nullptr ? juce::JUCEApplication::getInstance()->getApplicationName()
                                                                       : getApplicationDataName();
    return currentFile == juce::File() ? name : name + " - " + currentFile.getFileName();
}

bool GenericAppComponent::isHostKind(int kind) const
{
    if (kind == 1)
        return (hostKind >= 2 && hostKind <= 4) || (hostKind >= 8 && hostKind <= 10) || isHostKind(11);
    if (kind == 7)
        return hostKind == 5 || hostKind == 6;
    return hostKind == kind;
}

void GenericAppComponent::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff1e1f22));
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
    log("Copied the render command: " + command);
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
        log("Cannot save " + destination.getFullPathName() + ": " + written.getErrorMessage());
        showAlert("saveFailed", "Cannot Save Photo", destination.getFileName() + "\n" + written.getErrorMessage());
        return false;
    }
    lastSavedPhoto = destination;
    auto& settings = *applicationProperties;
    settings.setValue("currentSaveCount_v2", settings.getIntValue("currentSaveCount_v2", 0) + 1);
    log("Saved " + destination.getFullPathName() + " (" + juce::String(result->width) + " x " + juce::String(result->height) + ")");
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
        RenderHiResActivityThread job(*this, message);
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
    previewRenderer->start(wholePicture(), false);
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
        SaveProjectActivityWindow job(*this, file);
        job.runThread();
        ok = job.succeeded;
    }
    jobRunning = false;
    if (previewStopped)
        previewRenderer->start(wholePicture(), false);
    auto& settings = *applicationProperties;
    settings.setValue("NeedsToLoadImagePath", "");
    if (!ok)
    {
        log("Cannot save project " + file.getFullPathName());
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
    log("Saved project " + file.getFullPathName());
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
        SavePresetActivityWindow job(*this, file, settings, displayImage.get() != nullptr ? displayImage.get() : previewImage.get());
        job.runThread();
        ok = job.succeeded;
    }
    jobRunning = false;
    if (previewStopped)
        previewRenderer->start(wholePicture(), false);
    if (!ok)
    {
        showAlert("saveFailed", "Cannot Save Preset", file.getFileName() + "\nThe preset could not be written.");
        return false;
    }
    log("Saved preset " + file.getFullPathName());
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

//==============================================================================
// Commands and menus.

juce::ApplicationCommandTarget* GenericAppComponent::getNextCommandTarget()
{
    return juce::JUCEApplication::getInstance();
}

void GenericAppComponent::getAllCommands(juce::Array<juce::CommandID>& commands)
{
    commands.addArray(AppCommands::allCommands());
}

void GenericAppComponent::getCommandInfo(juce::CommandID commandID, juce::ApplicationCommandInfo& result)
{
    const auto productName = juce::JUCEApplication::getInstance() != nullptr ? juce::JUCEApplication::getInstance()->getApplicationName()
                                                                             : getApplicationDataName();
    AppCommands::describe(commandID, result, hasDocument(), hostKind, isHostKind(1), productName);
    // Nothing starts while a job runs behind the activity panel.
    if (jobRunning)
        result.setActive(false);
    if (commandID == AppCommands::hidePanels)
        result.setTicked(!effectPanelOpen && (presetManager == nullptr || !presetManager->isOpen()));
    if (commandID == AppCommands::penGesture)
        result.setTicked(isPenGestureOn());
}

bool GenericAppComponent::perform(const InvocationInfo& info)
{
    if (AppCommands::find(info.commandID) == nullptr)
        return false;
    juce::ApplicationCommandInfo state(info.commandID);
    getCommandInfo(info.commandID, state);
    if ((state.flags & juce::ApplicationCommandInfo::isDisabled) != 0)
        return true; // taken, but off: a menu item or key of a disabled command does nothing

    switch (info.commandID)
    {
        case AppCommands::resetDefaults: resetStartupSettings(); break;
        case AppCommands::defineDefaults: saveStartupSettings(); break;
        case AppCommands::openProject: openProjectDialog(); break;
        case AppCommands::saveProject: saveProject(true); break;
        case AppCommands::savePreset: savePresetDialog(); break;
        case AppCommands::preferences: showPreferences(); break;
        case AppCommands::savePhoto: saveImage(); break;
        case AppCommands::copyRenderCommand: copyRenderCommand(); break;
        case AppCommands::undo: undoStep(); break;
        case AppCommands::redo: redoStep(); break;
        case AppCommands::getPhoto: openImageDialog(); break;
        case AppCommands::zoomIn: document->zoomIn(); break;
        case AppCommands::zoomOut: document->zoomOut(); break;
        case AppCommands::fitInWindow: document->fitToWindow(true); break;
        case AppCommands::actualSize: document->actualSize(); break;
        case AppCommands::hidePanels:
        {
            // One key for both panels: any panel up means hide them all.
            const bool show = !effectPanelOpen && (presetManager == nullptr || !presetManager->isOpen());
            setEffectPanelOpen(show, true);
            if (presetManager != nullptr)
                presetManager->setOpen(show, true);
            break;
        }
        case AppCommands::penGesture: togglePenGesture(); break;
        case AppCommands::about: showAboutAlert(); break;
        case AppCommands::revealPresetFolder:
        {
            const auto folder = BuiltInPresets::getPresetFolder();
            folder.createDirectory();
            folder.revealToUser();
            break;
        }
        default: break;
    }
    return true;
}

juce::StringArray GenericAppComponent::getMenuBarNames()
{
    return AppCommands::menuNames();
}

juce::PopupMenu GenericAppComponent::getMenuForIndex(int topLevelMenuIndex, const juce::String&)
{
    juce::PopupMenu menu;
    if (topLevelMenuIndex < 0 || topLevelMenuIndex > 3)
        return menu;
    const auto items = AppCommands::menuItems((AppCommands::Menu) topLevelMenuIndex, hasNewProject(), usesLayerStack(),
                                              hasPresetFolder(), hasProductTips(), false);
    for (auto id : items)
    {
        if (id == 0)
            menu.addSeparator();
        else
            menu.addCommandItem(&commandManager, id); // ids no target has are left out
    }
    return menu;
}

void GenericAppComponent::commandStatusChanged()
{
    // The manager tells the menu bar asynchronously; the key mappings ask for the state afresh
    // at each key.
    if (juce::MessageManager::getInstanceWithoutCreating() != nullptr
        && juce::MessageManager::getInstance()->isThisTheMessageThread())
        commandManager.commandStatusChanged();
}
