#include "cli/render/RenderJob.h"
#include "document/LayerManager.h"
#include "document/ProjectFile.h"
#include "document/StaticImageLayer.h"
#include "document/SxPropertySet.h"
#include "effect/TornvaleEffect.h"
#include "imaging/ImageFileReader.h"
#include "imaging/FolderListing.h"
#include "imaging/ImageFileWriter.h"
#include "imaging/ImageLimits.h"
#include "cli/render/RenderOutput.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetFile.h"

namespace RenderFiles
{
bool isProjectFile(const juce::File& file)
{
    return file.hasFileExtension("qhp;qrp");
}

bool isImageFile(const juce::File& file)
{
    return ImageFileTypes::fromPath(file.getFullPathName()) != ImageFileType::unknown;
}
} // namespace RenderFiles

namespace
{
ImageFileType typeForExtension(const juce::String& format)
{
    return ImageFileTypes::fromPath("x." + format);
}

constexpr int previewSide = 1500;
} // namespace

RenderJob::RenderJob(const RenderOptions& o) : options(o) {}

juce::Array<juce::File> RenderJob::expandInputs(juce::StringArray* skipped) const
{
    juce::Array<juce::File> files;
    for (const auto& name : options.inputs)
    {
        const auto file = juce::File::getCurrentWorkingDirectory().getChildFile(name);
        if (file.isDirectory())
        {
            const auto listing = FolderListing::files(file);
            if (listing.unreadableNames > 0 && skipped != nullptr)
                skipped->add(file.getFullPathName() + ": not an image: " + juce::String(listing.unreadableNames)
                             + " file name(s) that are not UTF-8, left out");
            for (const auto& child : listing.files)
                if (RenderFiles::isImageFile(child) || RenderFiles::isProjectFile(child))
                    files.add(child);
        }
        else
            files.add(file);
    }
    return files;
}

juce::File RenderJob::outputFor(const juce::File& input, int inputCount) const
{
    juce::String extension = options.format.isNotEmpty() ? "." + options.format : input.getFileExtension();
    if (RenderFiles::isProjectFile(input) && options.format.isEmpty())
        extension = ".png";

    if (options.output.isNotEmpty())
    {
        const auto target = juce::File::getCurrentWorkingDirectory().getChildFile(options.output);
        if (inputCount == 1 && !target.isDirectory())
        {
            // An output name without a known image extension gets the format's.
            if (ImageFileTypes::fromPath(target.getFullPathName()) == ImageFileType::unknown)
                return target.withFileExtension(extension);
            return target;
        }
        return target.getChildFile(input.getFileNameWithoutExtension() + "_tornvale" + extension);
    }
    return input.getSiblingFile(input.getFileNameWithoutExtension() + "_tornvale" + extension);
}

juce::File RenderJob::freeName(const juce::File& file, bool overwrite)
{
    if (overwrite || !file.exists())
        return file;
    for (int counter = 1;; ++counter)
    {
        const auto candidate = file.getSiblingFile(file.getFileNameWithoutExtension() + " (" + juce::String(counter) + ")"
                                                   + file.getFileExtension());
        if (!candidate.exists())
            return candidate;
    }
}

bool RenderJob::loadPreset(SxPropertySet& settings, juce::String& reason) const
{
    if (options.preset.isEmpty())
        return true;

    for (int i = 0; i < BuiltInPresets::numPresets; ++i)
        if (BuiltInPresets::getName(i).equalsIgnoreCase(options.preset))
        {
            const auto bytes = BuiltInPresets::getPresetFile(i);
            juce::MemoryInputStream in(bytes, false);
            settings = PresetFile::read(in).settings;
            return true;
        }

    const auto file = juce::File::getCurrentWorkingDirectory().getChildFile(options.preset);
    if (!file.existsAsFile())
    {
        reason = "no built-in preset or preset file named \"" + options.preset + "\" (see --list-presets)";
        return false;
    }
    const auto contents = PresetFile::readFile(file);
    if (contents.settings.size() == 0)
    {
        reason = file.getFullPathName() + ": not a preset file";
        return false;
    }
    settings = contents.settings;
    return true;
}

bool RenderJob::loadMask(juce::String& reason)
{
    if (options.mask.isEmpty())
        return true;
    const auto file = juce::File::getCurrentWorkingDirectory().getChildFile(options.mask);
    auto decoded = ImageFileReader::read(file);
    if (!decoded.ok())
    {
        reason = file.getFullPathName() + ": cannot read the mask: " + decoded.error;
        return false;
    }
    const auto& picture = *decoded.image;
    mask = SxRef<SxImageAlphaByte>::adopt(new SxImageAlphaByte(picture.width, picture.height));
    // A grey file has equal channels; a coloured one counts by its brightness.
    for (size_t i = 0; i < mask->byteCount(); ++i)
    {
        const uint8_t* p = picture.pixels + i * 4;
        mask->pixels[i] = (uint8_t) ((p[1] * 77 + p[2] * 150 + p[3] * 29 + 128) >> 8);
    }
    return true;
}

void RenderJob::configure(TornvaleEffect& effect, const SxPropertySet* presetSettings) const
{
    effect.setDefaults();
    if (options.randomSettings)
    {
        juce::Random random(*options.randomSettings);
        effect.randomize(random);
    }
    if (presetSettings != nullptr && presetSettings->size() > 0)
        effect.restoreFromDictionary(*presetSettings, {});
    applySingleSettings(effect);
}

void RenderJob::applySingleSettings(TornvaleEffect& effect) const
{
    // One key at a time: the others stay as the preset or the project left them.
    for (const auto& [key, value] : options.settings)
        effect.setFromText(key, value);
    effect.setNeedsRender(true);
}

SxRef<SxImageRgbaBytes> RenderJob::renderPicture(const SxImageRgbaBytes& source, const SxPropertySet* projectSettings,
                                                 const SxPropertySet* presetSettings, bool hadAlpha, bool fullSize) const
{
    // The document's stack: the picture, and the effect above it. The stack's picture sets the
    // render scale, as in the window.
    registerTornvaleEffect();
    LayerManager stack;
    stack.addLayer(new StaticImageLayer(const_cast<SxImageRgbaBytes*>(&source)));
    if (projectSettings != nullptr)
        stack.restoreFromDictionary(*projectSettings, nullptr, {}, false);
    TornvaleEffect* effect = nullptr;
    for (auto* layer : stack.getLayers())
        if (auto* e = dynamic_cast<TornvaleEffect*>(layer))
            effect = e;
    if (effect == nullptr)
    {
        effect = new TornvaleEffect(TornvaleEffect::DefaultsOnly {});
        stack.addLayer(effect);
        configure(*effect, presetSettings);
    }
    else if (presetSettings != nullptr || !options.settings.empty() || options.randomSettings)
    {
        // A project's own settings stand unless the command line asks for others.
        SxPropertySet kept;
        effect->saveToDictionary(kept, {});
        configure(*effect, &kept);
        if (presetSettings != nullptr && presetSettings->size() > 0)
            effect->restoreFromDictionary(*presetSettings, {});
        applySingleSettings(*effect);
    }
    effect->originalImageHadAlpha = hadAlpha;
    // Without a mask the effect shows everywhere; a mask is enlarged (or reduced) to the picture
    // like the brush mask before a full-size render.
    if (mask.get() != nullptr)
        TornvaleEffect::loadEffectMask(*mask, source);
    else
        TornvaleEffect::deleteBrushMask();

    stack.setHighQuality(fullSize);
    stack.markAllDirty();
    return SxRef<SxImageRgbaBytes>::adopt(stack.render(nullptr, false, true));
}

RenderOutcome RenderJob::renderOne(const juce::File& input, const juce::File& output, const SxPropertySet* presetSettings) const
{
    RenderOutcome outcome;
    SxRef<SxImageRgbaBytes> source;
    SxPropertySet projectSettings;
    bool isProject = false;
    double dpiX = 72.0, dpiY = 72.0;
    bool hadAlpha = false;

    if (RenderFiles::isProjectFile(input))
    {
        if (!input.existsAsFile())
        {
            outcome.reason = "cannot read: no such file";
            return outcome;
        }
        auto project = ProjectFile::readFile(input);
        if (project == nullptr || project->image.get() == nullptr)
        {
            outcome.reason = "not a project file (damaged or of another program)";
            return outcome;
        }
        source = project->image;
        projectSettings = project->settings;
        dpiX = project->widthDpi;
        dpiY = project->heightDpi;
        isProject = true;
    }
    else
    {
        auto decoded = ImageFileReader::read(input);
        if (!decoded.ok())
        {
            outcome.reason = decoded.error;
            return outcome;
        }
        source = decoded.image;
        dpiX = decoded.resolutionX;
        dpiY = decoded.resolutionY;
        hadAlpha = decoded.hasAlpha;
    }

    if (options.previewSize)
    {
        const double ratio = juce::jmin(1.0, juce::jmin((double) previewSide / source->width, (double) previewSide / source->height));
        const int w = juce::jmax(1, (int) std::lround(source->width * ratio)), h = juce::jmax(1, (int) std::lround(source->height * ratio));
        if (w != source->width || h != source->height)
        {
            auto scaled = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(*source));
            scaled->resize(w, h, 3);
            source = scaled;
        }
    }

    auto result = renderPicture(*source, isProject ? &projectSettings : nullptr, presetSettings, hadAlpha, true);
    if (result.get() == nullptr)
    {
        outcome.reason = "render failed (no GL context?)";
        return outcome;
    }

    ImageWriteOptions writeOptions;
    writeOptions.resolutionX = dpiX;
    writeOptions.resolutionY = dpiY;
    writeOptions.jpegQuality = 92;
    const auto written = RenderOutput::write(*result, output, input, options.overwrite, writeOptions, outcome.output);
    if (written.failed())
    {
        outcome.reason = written.getErrorMessage();
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

int RenderJob::run(juce::OutputStream& log)
{
    if (options.maxMegapixels > 0.0)
        ImageLimits::setMaximumMegapixels(options.maxMegapixels);
    SxPropertySet presetSettings;
    juce::String reason;
    if (!loadPreset(presetSettings, reason) || !loadMask(reason))
    {
        log << "tornvale-render: " << reason << "\n";
        return 1;
    }

    juce::StringArray skipped;
    const auto inputs = expandInputs(&skipped);
    for (const auto& line : skipped)
        log << "tornvale-render: " << line << "\n";
    if (inputs.isEmpty())
    {
        log << "tornvale-render: no images or projects found in the inputs\n";
        return 1;
    }
    if (const auto problem = RenderOutput::problemBeforeRender(options, inputs); problem.isNotEmpty())
    {
        log << "tornvale-render: " << problem << "\nTry 'tornvale-render --help'.\n";
        return 2;
    }
    if (options.output.isNotEmpty() && inputs.size() > 1)
    {
        const auto folder = juce::File::getCurrentWorkingDirectory().getChildFile(options.output);
        if (!folder.isDirectory() && !folder.createDirectory())
        {
            log << "tornvale-render: " << folder.getFullPathName() << ": cannot write: cannot create the output folder\n";
            return 1;
        }
    }

    int failures = skipped.size();
    for (int i = 0; i < inputs.size(); ++i)
    {
        const auto& input = inputs.getReference(i);
        const auto wanted = outputFor(input, inputs.size());
        const auto output = freeName(wanted, options.overwrite && !RenderOutput::isSameFile(wanted, input));
        const auto started = juce::Time::getMillisecondCounterHiRes();
        RenderOutcome outcome;
        try
        {
            outcome = renderOne(input, output, options.preset.isNotEmpty() ? &presetSettings : nullptr);
        }
        catch (const std::bad_alloc&)
        {
            // One picture too big for this machine must not cost the rest of the batch.
            outcome.reason = ImageLimits::outOfMemory;
        }
        const auto seconds = (juce::Time::getMillisecondCounterHiRes() - started) / 1000.0;
        if (outcome.ok)
            log << "tornvale-render: [" << (i + 1) << "/" << inputs.size() << "] " << input.getFullPathName() << " -> "
                << outcome.output.getFullPathName() << " (" << juce::String(seconds, 1) << " s)\n";
        else
        {
            log << "tornvale-render: " << input.getFullPathName() << ": " << outcome.reason
                << (outcome.reason.startsWith("too large") ? " (--max-megapixels raises it)\n" : "\n");
            ++failures;
        }
        log.flush();
    }
    return failures == 0 ? 0 : 1;
}
