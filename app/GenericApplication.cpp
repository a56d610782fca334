#include "app/GenericApplication.h"

#include "ui/SxLookAndFeel.h"

#include "app/CommandLine.h"
#include "app/GenericAppComponent.h"
#include "app/HostSession.h"
#include "app/InitializeCompleteMessage.h"
#include "app/OmbrikMainWindow.h"
#include "app/SingleInstance.h"
#include "gpu/GPUImageOpenGLESContext.h"

#include <cstdio>

namespace
{
// How long a second launch waits for the first one to take its command line; the first may
// still be in its own start-up, which reads the GL driver.
constexpr int forwardTimeoutMs = 10000;
} // namespace

void InitializeCompleteMessage::messageCallback()
{
    if (mainAppComponent != nullptr)
        mainAppComponent->initializeComplete();
}

GenericApplication::GenericApplication() = default;
GenericApplication::~GenericApplication() = default;

GenericApplication* GenericApplication::getGenericInstance()
{
    return dynamic_cast<GenericApplication*>(juce::JUCEApplicationBase::getInstance());
}

juce::File GenericApplication::instanceFolder() const
{
    return juce::File::getSpecialLocation(juce::File::userApplicationDataDirectory)
        .getChildFile(const_cast<GenericApplication*>(this)->getApplicationName());
}

bool GenericApplication::moreThanOneInstanceAllowed()
{
    return HostSession::startedByHandOverHost(getCommandLineParameters());
}

bool GenericApplication::initialiseApp()
{
    if (!moreThanOneInstanceAllowed())
    {
        instance = std::make_unique<SingleInstance>(instanceFolder());
        if (!instance->becomeFirst())
        {
            const auto text = CommandLine::forwardableText(getCommandLineParameters(),
                                                           juce::File::getCurrentWorkingDirectory());
            instance.reset();
            if (SingleInstance::send(instanceFolder(), text, forwardTimeoutMs))
                return false;
            std::fprintf(stderr, "tornvale: another instance holds %s but does not answer\n",
                         instanceFolder().getFullPathName().toRawUTF8());
            setApplicationReturnValue(1);
            return false;
        }
        // The text is handed to the message thread; the application may be gone by the time the
        // call runs, so it is looked up there, not captured.
        instance->startListening([](const juce::String& text) {
            juce::MessageManager::callAsync([text] {
                if (auto* app = juce::JUCEApplicationBase::getInstance())
                    app->anotherInstanceStarted(text);
            });
        });
    }

    // What the base class would do after its own instance check, which cannot work on Linux.
    initialise(getCommandLineParameters());
    return !juce::MessageManager::getInstance()->hasStopMessageBeenSent();
}

void GenericApplication::checkGraphicsContext()
{
    useDesktopGL = false;
    auto& context = GPUImageOpenGLESContext::sharedImageProcessingContext();

    // Starting the context here makes a driver that cannot give one fail at start-up, where the
    // log says so, rather than in the first render.
    juce::String version;
    if (context.acquireContext())
        version = context.getVersionString();
    context.releaseContext();
    if (version.isEmpty())
    {
        juce::Logger::writeToLog("GL: no OpenGL ES context; rendering will not be available");
        return;
    }
    // ES drivers put "OpenGL ES " ahead of the number.
    const auto number = version.startsWith("OpenGL ES ") ? version.substring(10) : version;
    const double versionNumber = number.substring(0, 3).getDoubleValue();
    juce::Logger::writeToLog("GL: " + version + " (" + juce::String(versionNumber, 1) + ", " + context.getPlatformName() + ")");
}

void GenericApplication::initialise(const juce::String& text)
{
    checkGraphicsContext();
    commandLine = text;
    juce::Desktop::getInstance().setOrientationsEnabled(juce::Desktop::upright);

    auto& context = GPUImageOpenGLESContext::sharedImageProcessingContext();
    int textureLimit = 0;
    if (context.acquireContext())
        textureLimit = context.queryMaxTextureSize();
    context.releaseContext();
    maxTextureSize = textureLimit;
    juce::Logger::writeToLog("GL: maximum texture size " + juce::String(textureLimit));

    lookAndFeel = std::make_unique<SxMainLookAndFeel>();
    juce::LookAndFeel::setDefaultLookAndFeel(lookAndFeel.get());
    mainWindow = std::make_unique<OmbrikMainWindow>();
    if (mainComponent != nullptr)
        mainWindow->setName(mainComponent->getWindowTitle());

    openFromCommandLine(commandLine);
    (new InitializeCompleteMessage())->post();
}

void GenericApplication::openFromCommandLine(const juce::String& text)
{
    if (text.isEmpty() || mainComponent == nullptr)
        return;

    if (CommandLine::isRenderRequest(text))
    {
        const auto job = CommandLine::parseRender(text);
        if (job.render)
        {
            mainComponent->commandLineRender = true;
            mainComponent->commandLineInput = job.input;
            mainComponent->commandLineOutput = job.output;
        }
        return;
    }

    // A name that cannot be opened (missing, a folder, no picture) gets the window's alert.
    const auto file = CommandLine::fileToOpen(text, juce::File::getCurrentWorkingDirectory());
    if (file != juce::File())
        mainComponent->getSession().openImage(file);
}

void GenericApplication::openFromSecondInstance(const juce::String& text)
{
    if (mainComponent == nullptr)
        return;
    const auto request = CommandLine::routeSecondInstance(text, mainComponent->getProjectExtension(),
                                                          juce::File::getCurrentWorkingDirectory());
    if (request.route == CommandLine::Route::project)
        mainComponent->getSession().openProject(request.file);
    else if (request.route == CommandLine::Route::image)
        mainComponent->getSession().openImage(request.file);
}

void GenericApplication::anotherInstanceStarted(const juce::String& text)
{
    juce::Logger::writeToLog("Another launch asked for: " + text);
    openFromSecondInstance(text);
    if (mainWindow != nullptr)
        mainWindow->toFront(true);
}

void GenericApplication::systemRequestedQuit()
{
    if (mainComponent == nullptr || mainComponent->mayQuit())
        juce::JUCEApplication::quit();
}

void GenericApplication::suspended()
{
    isSuspended = true;
}

void GenericApplication::resumed()
{
    if (mainComponent != nullptr)
        mainComponent->applicationResumed();
    isSuspended = false;
}

void GenericApplication::shutdown()
{
    if (mainComponent != nullptr)
        mainComponent->applicationShutdown();
    if (instance != nullptr)
        instance->stopListening();
    mainWindow.reset();
    mainComponent = nullptr;
    juce::LookAndFeel::setDefaultLookAndFeel(nullptr);
    lookAndFeel.reset();
    instance.reset();
}
