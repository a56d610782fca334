// tornvale-render: the effect for scripts and batches, without a window.

#include "cli/render/RenderJob.h"
#include "imaging/FileBytes.h"
#include "imaging/FolderListing.h"
#include "presets/BuiltInPresets.h"

#include <cstring>
#include <juce_events/juce_events.h>

#include <iostream>

namespace
{
class StderrStream : public juce::OutputStream
{
public:
    void flush() override { std::cerr.flush(); }
    bool setPosition(juce::int64) override { return false; }
    juce::int64 getPosition() override { return 0; }
    bool write(const void* data, size_t size) override
    {
        std::cerr.write(static_cast<const char*>(data), (std::streamsize) size);
        return true;
    }
};

int listPresets()
{
    const auto folder = BuiltInPresets::getPresetFolder();
    // Like the application: a preset folder with nothing in it gets the built-ins first.
    if (!BuiltInPresets::hasPresets(folder))
        BuiltInPresets::writeDefaultPresets(folder);
    for (int i = 0; i < BuiltInPresets::numPresets; ++i)
        std::cout << BuiltInPresets::getName(i) << "\n";
    const auto files = FolderListing::files(folder, "*.pre").files;
    for (const auto& file : files)
    {
        bool builtIn = false;
        for (int i = 0; i < BuiltInPresets::numPresets; ++i)
            builtIn = builtIn || file.getFileNameWithoutExtension() == BuiltInPresets::getName(i);
        if (!builtIn)
            std::cout << file.getFullPathName() << "\n";
    }
    return 0;
}
} // namespace

int main(int argc, char* argv[])
{
    juce::ScopedJuceInitialiser_GUI juce; // message manager for JUCE's own services; no window opens
    juce::StringArray arguments;
    for (int i = 1; i < argc; ++i)
        arguments.add(FileBytes::toTextReplacingBadBytes(argv[i], std::strlen(argv[i])));

    juce::String error;
    const auto options = RenderCommandLine::parse(arguments, error);
    if (!options)
    {
        std::cerr << "tornvale-render: " << error << "\n" << "Try 'tornvale-render --help'.\n";
        return 2;
    }
    if (options->help)
    {
        std::cout << RenderCommandLine::helpText();
        return 0;
    }
    if (options->listPresets)
        return listPresets();

    StderrStream log;
    RenderJob job(*options);
    return job.run(log);
}
