#include "app/GenericAppComponent.h"

#include "app/AppCommands.h"
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
#include "app/PreviewRenderer.h"
#include "brush/SxBrushSettings.h"
#include "effect/TornvaleEffect.h"
#include "imaging/ImageFileType.h"
#include "imaging/ImageLimits.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetManager.h"
#include "tools/SxPanTool.h"
#include "tools/SxToolSwitcher.h"
#include "ui/SxAlertComponent.h"
#include "ui/SxComponent.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

GenericAppComponent* mainAppComponent = nullptr;

GenericAppComponent::GenericAppComponent()
{
    setName("mainComponent");
    mainAppComponent = this;
    previewRenderer = std::make_unique<PreviewRenderer>(*this);
    session = std::make_unique<DocumentSession>(*this);
}

GenericAppComponent::~GenericAppComponent()
{
    waitForRender();
    previewRenderer.reset();
    stopTimer(openPanelTimer);
    stopTimer(closePanelTimer);
    stopTimer(componentMapTimer);
    stopTimer(topBarRepaintTimer);
    stopTimer(handOverTimer);
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
    // The pictures go last: the view and the layers pointed at them.
    session.reset();
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
        juce::Logger::writeToLog("PID: " + juce::String((int) ::getpid()) + "; PPID: " + juce::String((int) ::getppid()));
        const auto hostName = ParentProcess::hostNameFor(juce::JUCEApplicationBase::getCommandLineParameters());
        hostKind = ParentProcess::hostKindForName(hostName);
        juce::Logger::writeToLog("Host: " + hostName + " (kind " + juce::String(hostKind) + ")");
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
    juce::Logger::writeToLog("Settings: " + settings.getFile().getFullPathName() + ", last version " + juce::String(lastVersion)
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

    effectControlComponent = std::make_unique<EffectControlPanel>(*this, [this] { randomizeEffect(); });
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

//==============================================================================
void GenericAppComponent::requestRender(bool showBusy, const LayerRect* region)
{
    layerNeedsRender(showBusy, region);
}

void GenericAppComponent::layerNeedsRender(bool showBusy, const LayerRect* region)
{
    if (isManualRedraw())
        return;
    previewRenderer->start(region != nullptr ? *region : LayerRect::empty(), showBusy);
}

float GenericAppComponent::getRenderScale()
{
    return layerManager != nullptr ? layerManager->getRenderScale() : 1.0f;
}

LayerManager* GenericAppComponent::layersToPreview()
{
    // A job behind the activity panel holds the GL context and the layers; it puts the preview
    // back in step when it ends.
    if (session->getPreviewImage() == nullptr || session->isLoading() || session->isJobRunning())
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

void GenericAppComponent::previewRendered(SxImageRgbaBytes* picture, bool draft)
{
    showRenderedImage(picture);
    if (picture == nullptr)
        return;
    if (draft)
        ++draftCount;
    else
    {
        ++renderCount;
        juce::Logger::writeToLog("Render Complete");
    }
}

bool GenericAppComponent::previewInputMoving()
{
    // A slider's thumb held down: every move asks for a render, and only drafts keep up.
    const auto mouse = juce::Desktop::getInstance().getMainMouseSource();
    auto* under = mouse.isDragging() ? mouse.getComponentUnderMouse() : nullptr;
    return under != nullptr && (dynamic_cast<juce::Slider*>(under) != nullptr || under->findParentComponentOfClass<juce::Slider>() != nullptr);
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
        previewRenderer->start(LayerRect::empty(), true);
}

void GenericAppComponent::showRenderedImage(SxImageRgbaBytes* image)
{
    if (image == nullptr)
        return;
    auto* preview = session->getPreviewImage();
    displayImage = preview != nullptr && hostSession != nullptr ? hostSession->throughSelection(*image, *preview)
                                                                : SxRef<SxImageRgbaBytes>::share(image);
    if (!showingOriginal)
        document->setImage(displayImage.get());
}

void GenericAppComponent::showOriginal(bool pressed)
{
    if (pressed == showingOriginal)
        return;
    showingOriginal = pressed;
    if (getPreviewImage() == nullptr)
        return;
    document->setImage(pressed || displayImage.get() == nullptr ? getPreviewImage() : displayImage.get());
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
    if (!hasDocument() || isJobRunning() || previewRenderer->isRendering() || layerManager == nullptr)
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
        session->openProject(file);
    else
        session->openImage(file);
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
    text << "state rendering=" << (isRendering() ? 1 : 0) << " renders=" << renderCount << " drafts=" << draftCount
         << " lag=" << previewRenderer->getFirstPictureLagMs() << '/' << previewRenderer->getFullPictureLagMs() << " zoom=" << document->getZoom()
         << " original=" << (showingOriginal ? 1 : 0) << " dragOver=" << (fileDragOver ? 1 : 0)
         << " brush=" << SxBrushSettings::brushSize
         << " tool=" << (getCurrentTool() != nullptr ? getCurrentTool()->getName() : juce::String("none"))
         << " maskedPixels=" << [] { auto* m = TornvaleEffect::getBrushMask();
                                     return m == nullptr ? 0 : (int) std::count_if(m->pixels, m->pixels + m->byteCount(), [](uint8_t b) { return b != 0; }); }()
         << " undo=" << session->historyIndex() << " manual=" << (isManualRedraw() ? 1 : 0)
         << " fresh=" << (session->isFreshProject() ? 1 : 0) << " busy=" << (isJobRunning() ? 1 : 0)
         << " alert=" << alertName
         << " image=" << (hasDocument() ? juce::String(session->getOriginalImage()->width) + "x" + juce::String(session->getOriginalImage()->height) : juce::String("none"))
         << " project=" << (session->getProjectFile() == juce::File() ? juce::String("none") : session->getProjectFile().getFullPathName().replaceCharacter(' ', '_'));
    // Where keys go: a key that a script sends and nothing answers is explained by these.
    auto* focused = juce::Component::getCurrentlyFocusedComponent();
    const auto focusName = focused == nullptr ? juce::String("none")
                           : focused->getName().isNotEmpty() ? focused->getName() : focused->getComponentID();
    auto* peer = getPeer();
    // A popup menu is a modal window named "menu": a script waits for it to open before it sends
    // the menu's keys, and for it to close before the next shortcut.
    auto& modal = *juce::ModalComponentManager::getInstance();
    bool openMenu = false;
    for (int i = 0; i < modal.getNumModalComponents(); ++i)
        if (auto* c = modal.getModalComponent(i); c != nullptr && c->getName() == "menu")
            openMenu = true;
    text << " focus=" << (focusName.isEmpty() ? juce::String("unnamed") : focusName.replaceCharacter(' ', '_'))
         << " windowFocused=" << (peer != nullptr && peer->isFocused() ? 1 : 0)
         << " modal=" << modal.getNumModalComponents() << " menu=" << (openMenu ? 1 : 0)
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
    const auto& file = session->getCurrentFile();
    return file == juce::File() ? name : name + " - " + file.getFileName();
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
