#pragma once
// One run of tornvale-render: expands the inputs, and for each one reads the picture (or the
// project), sets up the effect from the defaults, a random roll, a preset and single settings
// in that order, renders the stack at full or preview size, and writes the result through a
// temporary file. Each input succeeds or fails on its own.

#include "cli/render/RenderOptions.h"

#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

class SxImageRgbaBytes;
class SxPropertySet;
class TornvaleEffect;

struct RenderOutcome
{
    bool ok = false;
    juce::File output;
    juce::String reason; // when not ok: "cannot read: ...", "not an image: ...", "cannot write: ..."
};

class RenderJob
{
public:
    explicit RenderJob(const RenderOptions& options);

    /** Files to render: images and projects as given, folders expanded to the images and
        projects directly inside them (sorted). Names that exist nowhere stay, to fail later with
        a clear reason. Files whose names are not UTF-8 are left out; a line for each folder that
        held some goes to skipped. */
    juce::Array<juce::File> expandInputs(juce::StringArray* skipped = nullptr) const;

    /** Where an input's result goes (before numbering). */
    juce::File outputFor(const juce::File& input, int inputCount) const;

    /** A free name: the file itself unless it exists (and --overwrite is off), else the name
        with " (1)", " (2)" ... before the extension. */
    static juce::File freeName(const juce::File& file, bool overwrite);

    /** Loads the preset named by the options into settings; false with a reason when it cannot. */
    bool loadPreset(SxPropertySet& settings, juce::String& reason) const;

    /** Reads the --mask picture as grey bytes (its luminance); false with a reason when it cannot. */
    bool loadMask(juce::String& reason);

    /** Applies defaults, random roll, preset and single settings to an effect. */
    void configure(TornvaleEffect& effect, const SxPropertySet* presetSettings) const;

    /** Applies the single settings (--set) one key at a time. */
    void applySingleSettings(TornvaleEffect& effect) const;

    /** The render itself, shared by this tool, the application's "-r" and the bench: source in
        a stack of its own, the effect set up from the project's settings (or none) and the
        options, rendered at full quality or as the window's interactive preview. */
    SxRef<SxImageRgbaBytes> renderPicture(const SxImageRgbaBytes& source, const SxPropertySet* projectSettings,
                                          const SxPropertySet* presetSettings, bool hadAlpha, bool fullSize) const;

    RenderOutcome renderOne(const juce::File& input, const juce::File& output, const SxPropertySet* presetSettings) const;

    /** The whole run: returns the exit status (0 all written, 1 some failed, 2 the output options
        make no sense, found before anything renders). */
    int run(juce::OutputStream& log);

private:
    const RenderOptions& options;
    SxRef<SxImageAlphaByte> mask;
};

namespace RenderFiles
{
bool isProjectFile(const juce::File& file);
bool isImageFile(const juce::File& file);
} // namespace RenderFiles
