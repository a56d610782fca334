#include "app/HostSession.h"

#include "app/ParentProcess.h"
#include "document/Layer.h"
#include "effect/TornvaleEffect.h"
#include "ui/SxAlertComponent.h"

#include <cstdio>
#include <unistd.h>

namespace
{
void log(const juce::String& text)
{
    juce::Logger::writeToLog(text);
}
} // namespace

HostSession::HostSession(HostSessionCallback& owner) : component(owner) {}

bool HostSession::handsOverFiles(int hostKind)
{
    return hostKind == 2 || hostKind == 9 || hostKind == 10 || hostKind == 11;
}

bool HostSession::startedByHandOverHost(const juce::String& commandLine)
{
    return handsOverFiles(ParentProcess::hostKindForName(ParentProcess::hostNameFor(commandLine)));
}

juce::String HostSession::applyTooltip(int hostKind)
{
    switch (hostKind)
    {
        case ParentProcess::hostEditorLr: return "Apply your image back to Lightroom.";
        case 3: return "Apply your image back to Aperture.";
        case ParentProcess::hostEditorPhotos: return "Apply your image back to Photos.";
        default: return "Apply your image back to Host.";
    }
}

void HostSession::endForMissingFile(const juce::File& file)
{
    // The host guarantees the files before it starts the program, so a missing one means the host
    // is gone or broken: there is nobody to tell but the status and the log.
    std::fprintf(stderr, "tornvale: hand-over file missing: %s\n", file.getFullPathName().toRawUTF8());
    std::fflush(stderr);
    ::_exit(missingFileExitCode);
}

void HostSession::findHandOverFiles()
{
    if (!component.isHostKind(1))
        return;
    // The host starts the program as soon as it has written the files; the pause lets a slow
    // disk catch up before they are looked for.
    juce::Thread::sleep(500);
    paths = HandOverFiles::pathsIn(juce::File::getSpecialLocation(juce::File::userHomeDirectory));
}

void HostSession::readHandOverHeader()
{
    if (!handsOverFiles(component.handOverHostKind()))
        return;
    if (!paths.flag.existsAsFile())
        endForMissingFile(paths.flag);
    readHandOverImage(paths.image, true);
}

bool HostSession::readHandOverImage(const juce::File& file, bool headerOnly)
{
    selectiveMask.reset();
    previewMask.reset();
    juce::FileInputStream in(file);
    if (!in.openedOk())
        endForMissingFile(file);
    if (headerOnly)
    {
        pending = HandOverFiles::readTitle(in, hostTitle, parameterBlockSize);
        if (!pending)
            log("The hand-over picture " + file.getFullPathName() + " has no title");
        return pending;
    }

    pending = false;
    juce::String error;
    juce::BufferedInputStream buffered(in, 1 << 16);
    if (!HandOverFiles::readImage(buffered, handedOver, error))
    {
        log("Cannot read the hand-over picture " + file.getFullPathName() + ": " + error);
        component.showAlert("openFailed", "Cannot Open Photo", "The picture from the host could not be read:\n" + error);
        return false;
    }
    hostTitle = handedOver.header.title;
    parameterBlockSize = (int) handedOver.header.parameterBlock.getSize();

    // The document is the host's picture under its own title; it is never a file of ours.
    const auto titleFile = juce::File::getCurrentWorkingDirectory().getChildFile(hostTitle.isNotEmpty() ? hostTitle : "Photo");
    selectiveMask = handedOver.toSelectionMask();
    const auto* preview = component.openHostPicture(handedOver.toPicture(), titleFile);
    if (selectiveMask.get() != nullptr && preview != nullptr)
    {
        previewMask = SxRef<SxImageAlphaByte>::adopt(new SxImageAlphaByte(*selectiveMask));
        previewMask->resample(preview->width, preview->height);
    }
    if (auto* effect = component.getEffectLayer(); effect != nullptr && applyHandOverSettings(*effect))
        component.updateControls();

    active = true;
    component.hostPictureReady();
    return true;
}

bool HostSession::applySettingsFrom(const juce::File& actionFile, Layer& effect)
{
    juce::FileInputStream in(actionFile);
    HandOverFiles::ActionSettings settings;
    if (!in.openedOk() || !HandOverFiles::readActionSettings(in, settings))
        return false;
    if (settings.effectName.isNotEmpty() && settings.effectName != effect.getClassName())
    {
        log("The scripted settings are for \"" + settings.effectName + "\", not for this effect");
        return false;
    }
    // A host script names only the settings it wants changed, as tornvale-render's --set does:
    // each key it gives is set and the others keep their values. Read as a whole saved state,
    // every key it left out would fall to 0.
    if (auto* tornvale = dynamic_cast<TornvaleEffect*>(&effect))
    {
        const auto& values = settings.dictionary.getAllProperties();
        for (int i = 0; i < values.size(); ++i)
            if (!tornvale->setFromText(values.getAllKeys()[i], values.getAllValues()[i]))
                log("The scripted setting \"" + values.getAllKeys()[i] + "\" is not known; it is left out");
        return true;
    }
    effect.restoreFromDictionary(settings.dictionary, {});
    return true;
}

bool HostSession::applyToHost()
{
    if (!active)
        return false;
    auto result = component.renderFullImage("Rendering...");
    if (result.get() == nullptr || result->width != handedOver.header.width() || result->height != handedOver.header.height())
    {
        component.showAlert("saveFailed", "Cannot Apply", "The picture could not be rendered.");
        return false;
    }
    const auto written = HandOverFiles::writeResult(paths, HandOverFiles::withResult(handedOver, *result));
    if (written.failed())
    {
        log("Cannot hand the picture back: " + written.getErrorMessage());
        component.showAlert("saveFailed", "Cannot Apply", written.getErrorMessage());
        return false;
    }
    log("Handed " + juce::String(result->width) + " x " + juce::String(result->height) + " back to the host");
    // The host is waiting for the program to end before it reads the result.
    active = false;
    juce::JUCEApplicationBase::quit();
    return true;
}

bool HostSession::mayQuit()
{
    if (!active)
        return true;
    auto* question = SxAlertComponent::ask(component.hostQuestionHost(), "pluginQuitAlert", "Quit or Apply?",
                                           "Plugin is active, would you like to Quit or Apply?", { "Apply", "Quit" });
    question->getAnswerButton(0)->setName("pluginQuitAlertApplyButton");
    question->getAnswerButton(1)->setName("pluginQuitAlertQuitButton");
    question->onAnswer = [this](int answer) {
        if (answer == 0)
        {
            component.saveImage();
            return;
        }
        active = false;
        juce::JUCEApplicationBase::quit();
    };
    return false;
}

SxRef<SxImageRgbaBytes> HostSession::throughSelection(SxImageRgbaBytes& rendered, const SxImageRgbaBytes& preview)
{
    if (!active || previewMask.get() == nullptr || previewMask->width != rendered.width || previewMask->height != rendered.height
        || preview.width != rendered.width || preview.height != rendered.height)
        return SxRef<SxImageRgbaBytes>::share(&rendered);
    auto shown = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(preview));
    shown->compositeWithMask(rendered, *previewMask);
    return shown;
}
