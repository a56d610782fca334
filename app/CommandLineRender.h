#pragma once
// The "-r input,output" job: the input rendered at full size with the effect's default settings
// and saved to the output, without any interaction. The window's start-up runs it from
// initializeComplete; with no display to open, main() runs it without starting the window at all,
// so that the same command works on a server.

#include <juce_core/juce_core.h>

namespace CommandLineRender
{
/** Renders and saves. An output without a known image extension takes the input's; an output
    that exists is not replaced but numbered, "name (1).ext" and up. On success written names
    the file; otherwise the result says why (cannot read, not an image, cannot write). */
juce::Result run(const juce::File& input, const juce::String& output, juce::File& written);

/** True when the arguments ask for a render and there is no display to show a window on. */
bool wantsHeadlessRun(int argc, const char* const* argv);

/** The arguments after the program's name as one text, as the application receives them. */
juce::String joinArguments(int argc, const char* const* argv);

/** Parses the arguments as the application would and runs the job; returns the exit status. */
int runHeadless(int argc, const char* const* argv);
} // namespace CommandLineRender
