#include "app/CommandLineRender.h"
#include "app/CommandLine.h"
#include "cli/render/RenderJob.h"
#include "imaging/FileBytes.h"

#include <juce_events/juce_events.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace CommandLineRender
{
namespace
{
juce::StringArray argumentsOf(int argc, const char* const* argv)
{
    juce::StringArray arguments;
    for (int i = 1; i < argc; ++i)
        arguments.add(FileBytes::toTextReplacingBadBytes(argv[i], std::strlen(argv[i])));
    return arguments;
}
} // namespace

juce::Result run(const juce::File& input, const juce::String& output, juce::File& written)
{
    RenderOptions options; // the effect's defaults: no preset, no random settings
    options.output = output;
    RenderJob job(options);
    const auto target = RenderJob::freeName(job.outputFor(input, 1), false);
    const auto outcome = job.renderOne(input, target, nullptr);
    if (!outcome.ok)
        return juce::Result::fail(outcome.reason);
    written = outcome.output;
    return juce::Result::ok();
}

juce::String joinArguments(int argc, const char* const* argv)
{
    return argumentsOf(argc, argv).joinIntoString(" ");
}

bool wantsHeadlessRun(int argc, const char* const* argv)
{
    const char* display = std::getenv("DISPLAY");
    return (display == nullptr || *display == 0) && CommandLine::isRenderRequest(argumentsOf(argc, argv));
}

int runHeadless(int argc, const char* const* argv)
{
    juce::ScopedJuceInitialiser_GUI juce; // JUCE's services; no window is made
    const auto job = CommandLine::parseRender(argumentsOf(argc, argv));
    if (!job.render)
    {
        std::fprintf(stderr, "tornvale: nothing to render: the input must be an existing file named by an absolute path\n");
        return 1;
    }
    juce::File written;
    const auto result = run(juce::File(job.input), job.output, written);
    if (result.failed())
    {
        std::fprintf(stderr, "tornvale: %s: %s\n", job.input.toRawUTF8(), result.getErrorMessage().toRawUTF8());
        return 1;
    }
    std::fprintf(stderr, "tornvale: %s -> %s\n", job.input.toRawUTF8(), written.getFullPathName().toRawUTF8());
    return 0;
}
} // namespace CommandLineRender
