#pragma once
// What the program is asked to do by its command line: open one picture, or render one file into
// another without a window ("-r input,output"). The same text arrives from a second launch, which
// only forwards it. Parsing is kept apart from acting so that it can be checked on its own.

#include <juce_core/juce_core.h>

namespace CommandLine
{
/** Hosts and shells wrap paths in double quotes, sometimes with an escaping backslash behind the
    opening one: leading quotes, then leading backslashes, and one closing quote are removed. */
juce::String stripQuotes(const juce::String& text);

struct RenderJob
{
    bool render = false; // true only when the input names an existing file by an absolute path
    juce::String input;
    juce::String output;
};

/** Splits a joined command line into its arguments: spaces separate them except inside double
    quotes, which stay part of the argument. */
juce::StringArray splitArguments(const juce::String& text);

/** True when an argument is the switch "-r" (alone, or glued to a quoted or absolute path). Only
    whole arguments count: "x-ray.png" or "my-render.png" are names, not switches. */
bool isRenderRequest(const juce::StringArray& arguments);
bool isRenderRequest(const juce::String& text);

/** Parses "-r input,output" from the arguments after the switch. Without a comma the whole text
    is the input and the output is empty. An input that is relative or names no existing file gives
    a job with render false, which makes the program start normally. */
RenderJob parseRender(const juce::StringArray& arguments);
RenderJob parseRender(const juce::String& text);

/** The file a plain command line names, resolved against workingDirectory when relative, whether
    or not it exists (the window says why it cannot open one); empty text gives File(). */
juce::File fileToOpen(const juce::String& text, const juce::File& workingDirectory);

/** Where a second launch's command line goes. */
enum class Route
{
    nothing,
    project,
    image
};

struct SecondInstanceRequest
{
    Route route = Route::nothing;
    juce::File file;
};

/** A text ending in ".qhp", ".qrp" or "." + projectExtension is a project; any other text that
    names an existing file that is not a folder is an image. Relative paths are resolved against
    workingDirectory. */
SecondInstanceRequest routeSecondInstance(const juce::String& text, const juce::String& projectExtension,
                                          const juce::File& workingDirectory);

/** The text a second launch forwards: a plain relative path is made absolute against the
    launch's own working directory, which the first instance does not share. Render requests and
    texts that name no existing file pass unchanged. */
juce::String forwardableText(const juce::String& text, const juce::File& workingDirectory);
} // namespace CommandLine
