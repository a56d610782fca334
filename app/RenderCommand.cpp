#include "app/RenderCommand.h"

namespace RenderCommand
{
juce::String shellQuoted(const juce::String& text)
{
    return "'" + text.replace("'", "'\\''") + "'";
}

juce::String renderProgram()
{
    const auto beside = juce::File::getSpecialLocation(juce::File::currentExecutableFile).getSiblingFile("tornvale-render");
    return beside.existsAsFile() ? beside.getFullPathName() : juce::String("tornvale-render");
}

juce::String forDocument(const EffectParameters& parameters, const juce::File& documentFile, const juce::String& program)
{
    juce::StringArray words { shellQuoted(program) };
    for (const auto* row : EffectParameterTable::inSaveOrder())
        words.add("--set " + juce::String(row->key) + "=" + row->toText(parameters));
    words.add("--size full");
    words.add(shellQuoted(documentFile.getFullPathName()));
    return words.joinIntoString(" ");
}
} // namespace RenderCommand
