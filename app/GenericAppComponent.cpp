#include "app/GenericAppComponent.h"
#include "app/CommandLineRender.h"

#include "app/ParentProcess.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageRGBAPixelData.h"
#include "imaging/ImageStream.h"

#include <cstdio>
#include <unistd.h>

GenericAppComponent* mainAppComponent = nullptr;

namespace
{
void log(const juce::String& text)
{
    juce::Logger::writeToLog(text);
}
} // namespace

GenericAppComponent::GenericAppComponent()
{
    setName("mainComponent");
    mainAppComponent = this;
}

GenericAppComponent::~GenericAppComponent()
{
    if (document != nullptr)
        document->setImage(nullptr);
    document.reset();
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

    document = std::make_unique<GenericAppDocument>(applicationProperties.get());
    addAndMakeVisible(*document);
    juce::RelativeRectangle("30, 34, left+parent.width - 300, top+parent.height - 150").applyToComponent(*document);
}

void GenericAppComponent::buildInterface()
{
    // The top bar, the side panel and the preset strip are added here as they come.
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
    }
}

bool GenericAppComponent::openImage(const juce::File& file, bool showStartDelay)
{
    // Nothing can change a document yet, so there are never unsaved changes to ask about here.
    return loadImageFile(file, showStartDelay);
}

bool GenericAppComponent::openProject(const juce::File& file)
{
    log("Cannot open " + file.getFullPathName() + ": project files are not supported in this build");
    return false;
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
        return false;
    }
    SxRef<SxImageRgbaBytes> image = decoded.image;

    document->setImage(nullptr);
    previewImage.reset();
    originalImage = image;

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

    newImageLoaded();

    if (auto* window = dynamic_cast<juce::DocumentWindow*>(getTopLevelComponent()))
        window->setName(getWindowTitle());
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

    document->setImage(previewImage.get());
    document->fitToWindow(false);
}

bool GenericAppComponent::mayQuit()
{
    quitRequested = true;
    originalBeforeEditFile().deleteFile();
    return true;
}

void GenericAppComponent::applicationShutdown()
{
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
    g.fillAll(juce::Colour(0xff202124));
}
