#pragma once
// The command line of tornvale-render, parsed into plain values. Parsing never exits or prints:
// it returns the options or the usage error, so that the rules are testable on their own.

#include <juce_core/juce_core.h>

#include <optional>
#include <vector>

struct RenderOptions
{
    juce::StringArray inputs;
    juce::String output;           // -o: a file for one input, else a folder
    juce::String format;           // "jpg", "png", "tif" or empty (keep the input's)
    juce::String preset;           // a built-in's name or a .pre file
    juce::String mask;             // --mask FILE: a grey picture, white shows the adjusted photo
    std::vector<std::pair<juce::String, juce::String>> settings; // --set KEY=VALUE, in order
    std::optional<juce::int64> randomSettings; // --seed N
    bool previewSize = false;      // --size preview: fit into 1500 × 1500
    double maxMegapixels = 0.0;    // --max-megapixels N: raises the readers' limit (0: the default)
    bool overwrite = false;
    bool listPresets = false;
    bool help = false;
};

namespace RenderCommandLine
{
/** The eleven keys --set accepts. */
const juce::StringArray& parameterKeys();

/** Parses arguments (without the program name). On a usage error, returns nothing and sets
    error to one line saying what is wrong. */
std::optional<RenderOptions> parse(const juce::StringArray& arguments, juce::String& error);

juce::String helpText();
} // namespace RenderCommandLine
