#pragma once
// The tornvale-render command line that reproduces the window's look: every parameter as
// --set, full size, the document's file. A look found by hand can then be run over a batch.

#include "effect/EffectParameters.h"

#include <juce_core/juce_core.h>

namespace RenderCommand
{
/** The command for the file the document came from (a photo or a project), quoted for a POSIX
    shell. program is the renderer to name: the one beside the application when it is there. */
juce::String forDocument(const EffectParameters& parameters, const juce::File& documentFile, const juce::String& program);

/** tornvale-render beside the running application, or its bare name for a search of PATH. */
juce::String renderProgram();

/** text in single quotes, with any single quote in it closed, escaped and reopened. */
juce::String shellQuoted(const juce::String& text);
} // namespace RenderCommand
