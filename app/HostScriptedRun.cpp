#include "app/HostScriptedRun.h"

#include "app/CommandLineRender.h"
#include "app/HostSession.h"
#include "document/LayerManager.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"

#include <juce_events/juce_events.h>

#include <cstdio>
#include <cstdlib>

namespace HostScriptedRun
{
namespace
{
HandOverFiles::Paths paths()
{
    return HandOverFiles::pathsIn(juce::File::getSpecialLocation(juce::File::userHomeDirectory));
}

int fail(const juce::String& why)
{
    std::fprintf(stderr, "tornvale: scripted hand-over: %s\n", why.toRawUTF8());
    return 1;
}
} // namespace

bool wanted(int argc, const char* const* argv)
{
    if (!HostSession::startedByHandOverHost(CommandLineRender::joinArguments(argc, argv)))
        return false;
    const char* display = std::getenv("DISPLAY");
    return display == nullptr || *display == 0 || paths().action.existsAsFile();
}

int run()
{
    juce::ScopedJuceInitialiser_GUI juce; // JUCE's services; no window is made
    const auto files = paths();
    for (const auto& file : { files.flag, files.image })
        if (!file.existsAsFile())
        {
            std::fprintf(stderr, "tornvale: hand-over file missing: %s\n", file.getFullPathName().toRawUTF8());
            return HostSession::missingFileExitCode;
        }
    HandOverFiles::Image handedOver;
    juce::String error;
    if (!HandOverFiles::readImageFile(files.image, handedOver, error))
        return fail("the picture cannot be read: " + error);

    // The document's stack, rendered at the picture's own size as the window's apply does.
    auto picture = handedOver.toPicture();
    registerTornvaleEffect();
    LayerManager stack;
    stack.addLayer(new StaticImageLayer(picture.get()));
    auto* effect = new TornvaleEffect(TornvaleEffect::DefaultsOnly {});
    stack.addLayer(effect);
    effect->setDefaults();
    if (files.action.existsAsFile() && !HostSession::applySettingsFrom(files.action, *effect))
        return fail("the recorded settings in " + files.action.getFullPathName() + " cannot be used");
    TornvaleEffect::deleteBrushMask(); // the host's selection is the only mask
    stack.setHighQuality(true);
    stack.markAllDirty();
    auto result = SxRef<SxImageRgbaBytes>::adopt(stack.render(nullptr, false, true));
    if (result.get() == nullptr || result->width != picture->width || result->height != picture->height)
        return fail("the render failed (no GL context?)");

    const auto written = HandOverFiles::writeResult(files, HandOverFiles::withResult(handedOver, *result));
    if (written.failed())
        return fail(written.getErrorMessage());
    std::fprintf(stderr, "tornvale: handed %d x %d back to the host\n", result->width, result->height);
    return 0;
}
} // namespace HostScriptedRun
