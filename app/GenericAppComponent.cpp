#include "app/GenericAppComponent.h"

#include "app/CommandLineRender.h"
#include "app/EffectControlPanel.h"
#include "app/MainTopBar.h"
#include "app/ParentProcess.h"
#include "app/RenderThread.h"
#include "document/StaticImageLayer.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileType.h"
#include "imaging/ImageStream.h"
#include "tools/SxPanTool.h"
#include "tools/SxToolSwitcher.h"
#include "ui/SxAlertComponent.h"
#include "ui/SxComponent.h"

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
} // namespace

GenericAppComponent::GenericAppComponent()
{
    setName("mainComponent");
    mainAppComponent = this;
}

GenericAppComponent::~GenericAppComponent()
{
    waitForRender();
    stopTimer(openPanelTimer);
    stopTimer(closePanelTimer);
    stopTimer(componentMapTimer);
    stopTimer(topBarRepaintTimer);
    if (toolSwitcher != nullptr)
        toolSwitcher->setCurrentTool(nullptr);
    if (document != nullptr)
        document->setImage(nullptr);
    // The panel points into the effect and the top bar owns the pan tool the document may hold.
    effectControlComponent.reset();
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

    document = std::make_unique<GenericAppDocument>(applicationProperties.get());
    document->setComponentID("document");
    addAndMakeVisible(*document);
    SxComponent::place(*document, "30, 34, left+parent.width - 300, top+parent.height - 150");

    toolSwitcher = std::make_unique<SxToolSwitcher>(document.get());
}

void GenericAppComponent::buildInterface()
{
    topBar = std::make_unique<MainTopBar>(*this);
    addAndMakeVisible(*topBar);
    topBar->setComponentID("topBar");
    topBar->setBoundsString("0, 0, left+parent.width, top+33");

    effectControlComponent = std::make_unique<EffectControlPanel>(*this);
    effectControlComponent->setComponentID("effectControlComponent");
    addAndMakeVisible(*effectControlComponent);
    effectPanelOpen = applicationProperties->getBoolValue("effectControlComponentOpened", true);
    setEffectPanelOpen(effectPanelOpen, false);

    setManualRedraw(isManualRedraw());
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

    const auto mapPath = juce::SystemStats::getEnvironmentVariable("TORNVALE_COMPONENT_MAP", {});
    if (mapPath.isNotEmpty())
    {
        componentMapFile = juce::File(mapPath);
        startTimer(componentMapTimer, 300);
    }
    grabKeyboardFocus();
}

bool GenericAppComponent::openImage(const juce::File& file, bool showStartDelay)
{
    return loadImageFile(file, showStartDelay);
}

bool GenericAppComponent::openProject(const juce::File& file)
{
    showAlert("openFailed", "Cannot Open Project", "Project files cannot be opened in this version:\n" + file.getFileName());
    return false;
}

void GenericAppComponent::waitForRender()
{
    if (currentRenderThread == nullptr)
        return;
    // A preview render is never cancelled half-way: it holds the GL context and the layers.
    auto* thread = currentRenderThread;
    thread->stopThread(-1);
    currentRenderThread = nullptr;
    delete thread;
    rendering = false;
    if (document != nullptr)
        document->setShowActivity(false, {});
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

    waitForRender();
    loadingDocument = true;
    showOriginal(false);
    document->setImage(nullptr);
    displayImage.reset();
    previewImage.reset();
    originalImage = decoded.image;

    auto& settings = *applicationProperties;
    settings.setValue("ImagePath", file.getFullPathName());
    settings.setValue("freshProject", true);
    settings.setValue("freshProjectUndoCount", juce::var(0));
    settings.setValue("NeedsToLoadImagePath", "");

    currentFile = file;
    imagePath = file.getFullPathName();
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

        // Settings the user made the defaults apply to every picture opened after.
        const auto startup = applicationProperties->getValue("startupLayerSettings");
        if (startup.isNotEmpty())
            if (auto xml = SxPropertySet::parseXmlText(startup))
            {
                SxPropertySet set;
                set.fromXml(*xml);
                if (set.size() > 0)
                    effect->restoreFromDictionary(set, {});
            }
        layerManager->setSelectedLayer(effect, false);
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
    startPreviewRender(region != nullptr ? *region : wholePicture(), showBusy);
}

float GenericAppComponent::getRenderScale()
{
    auto* base = layerManager != nullptr ? dynamic_cast<StaticImageLayer*>(layerManager->getLayer(0)) : nullptr;
    if (base == nullptr || base->getImage() == nullptr)
        return 1.0f;
    return (float) juce::jmax(base->getImage()->width, base->getImage()->height) * 0.0009765625f;
}

void GenericAppComponent::startPreviewRender(const LayerRect& region, bool showBusy)
{
    lastRenderRequest = juce::Time::currentTimeMillis();
    if (previewImage.get() == nullptr || layerManager == nullptr)
        return;
    // No queue: a change made now stays in the effect, and the end of the running render
    // renders the newest state.
    if (loadingDocument || currentRenderThread != nullptr)
        return;

    LayerRect clamped = region;
    if (!clamped.meansWholePicture())
        clamped = clamped.clampedTo(LayerRect::wholeOf(*previewImage));

    rendering = true;
    if (showBusy)
        document->setShowActivity(true, "Rendering...");
    document->repaint();
    layerManager->setHighQuality(false);
    currentRenderThread = new RenderThread(this, clamped);
    currentRenderThread->startThread();
}

void GenericAppComponent::renderOnThread(const LayerRect& region)
{
    layerManager->render(region.meansWholePicture() ? nullptr : &region, false, false);
}

void GenericAppComponent::previewRenderFinished(RenderThread* thread)
{
    if (thread != currentRenderThread)
        return; // a render stopped by an open or a quit; its owner deleted it already
    // Catch up on the message thread: clean layers return their cache, a layer a change made
    // dirty while the thread ran renders now, so the newest state always ends on the screen.
    renderImmediate();
    document->setShowActivity(false, {});
    rendering = false;
    thread->stopThread(-1);
    currentRenderThread = nullptr;
    delete thread;
    log("Render Complete");
}

void GenericAppComponent::renderImmediate()
{
    if (previewImage.get() == nullptr || layerManager == nullptr)
        return;
    layerManager->setHighQuality(false);
    showRenderedImage(layerManager->render(nullptr, false, false));
}

void GenericAppComponent::showRenderedImage(SxImageRgbaBytes* image)
{
    if (image == nullptr)
        return;
    displayImage = SxRef<SxImageRgbaBytes>::share(image);
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
    if (previewImage.get() == nullptr)
        return;
    SxPropertySet record;
    if (!undo.undo(record))
        return;
    restoringUndo = true;
    restoreRecord(*this, record);
    updateControls();
    restoringUndo = false;
    if (auto* effect = getEffectLayer())
        effect->invalidate(nullptr);
}

void GenericAppComponent::redoStep()
{
    if (previewImage.get() == nullptr)
        return;
    SxPropertySet record;
    if (!undo.redo(record))
        return;
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
    if (toolSwitcher != nullptr)
        toolSwitcher->setCurrentTool(tool);
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
        return;
    }
    // Slide there, then hand the place back to the bounds string so a resize keeps it.
    const auto target = juce::Rectangle<int>(open ? getWidth() - 256 : getWidth(), topBar != nullptr ? topBar->getHeight() : 33, 256,
                                             getHeight() - (topBar != nullptr ? topBar->getHeight() : 33));
    effectControlComponent->setPositioner(nullptr);
    panelAnimator.animateComponent(effectControlComponent.get(), target, 1.0f, 300, false, 0.0, 0.0, Easing::sineInOut);
    pendingPanelBounds = bounds;
    startTimer(open ? closePanelTimer : openPanelTimer, 320);
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
    const auto mods = key.getModifiers();
    if (mods.isCommandDown())
    {
        // With Ctrl held the text character is a control code, and X11 reports letters' key
        // codes in lower case: compare letters by their upper-case code.
        const auto c = juce::CharacterFunctions::toLowerCase(key.getTextCharacter());
        const int code = (int) juce::CharacterFunctions::toUpperCase((juce::juce_wchar) key.getKeyCode());
        if (code == 'Z' || c == 'z')
        {
            mods.isShiftDown() ? redoStep() : undoStep();
            return true;
        }
        if (code == 'R' || c == 'r')
        {
            renderImmediate();
            return true;
        }
        if (c == '=' || c == '+' || code == '=')
        {
            document->zoomIn();
            return true;
        }
        if (c == '-' || code == '-')
        {
            document->zoomOut();
            return true;
        }
        if (c == '0' || code == '0')
        {
            document->fitToWindow(true);
            return true;
        }
    }
    return false;
}

void GenericAppComponent::resized()
{
    juce::ImageComponent::resized();
    if (componentMapFile != juce::File())
        startTimer(componentMapTimer, 200);
}

void GenericAppComponent::writeComponentMap(const juce::File& file)
{
    juce::String text;
    std::function<void(juce::Component&)> visit = [&](juce::Component& c) {
        const auto name = c.getName().isNotEmpty() ? c.getName() : c.getComponentID();
        if (name.isNotEmpty() && c.isShowing())
        {
            const auto r = c.getScreenBounds();
            text << name.replaceCharacter(' ', '_') << ' ' << r.getX() << ' ' << r.getY() << ' ' << r.getWidth() << ' '
                 << r.getHeight() << '\n';
        }
        for (auto* child : c.getChildren())
            visit(*child);
    };
    visit(*this);
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
    text << "state rendering=" << (rendering ? 1 : 0) << " renders=" << renderCount << " zoom=" << document->getZoom()
         << " original=" << (showingOriginal ? 1 : 0)
         << " undo=" << undo.getCurrentIndex() << " manual=" << (isManualRedraw() ? 1 : 0) << '\n';
    const auto temp = file.getSiblingFile(file.getFileName() + ".part");
    if (temp.replaceWithText(text, false, false, "\n"))
        temp.moveFileTo(file);
}

bool GenericAppComponent::mayQuit()
{
    quitRequested = true;
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
