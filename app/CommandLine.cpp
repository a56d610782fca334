#include "app/CommandLine.h"

namespace CommandLine
{
namespace
{
juce::File resolve(const juce::String& path, const juce::File& workingDirectory)
{
    if (path.isEmpty())
        return {};
    return juce::File::isAbsolutePath(path) ? juce::File(path) : workingDirectory.getChildFile(path);
}

// One pair of quotes around a single path of "-r a,b"; the whole-text stripping only sees the
// outer ends of the text, so "\"a\",\"b\"" would otherwise keep a quote on each side of the comma.
juce::String unquotePath(const juce::String& path)
{
    auto p = path.trim();
    if (p.startsWithChar('"'))
        p = p.substring(1);
    if (p.endsWithChar('"'))
        p = p.dropLastCharacters(1);
    return p.trim();
}
} // namespace

juce::String stripQuotes(const juce::String& text)
{
    auto t = text;
    if (t.startsWithChar('"'))
    {
        t = t.trimCharactersAtStart("\"");
        t = t.trimCharactersAtStart("\\");
    }
    if (t.endsWithChar('"'))
        t = t.dropLastCharacters(1);
    return t;
}

juce::StringArray splitArguments(const juce::String& text)
{
    juce::StringArray arguments;
    juce::String current;
    bool quoted = false, started = false;
    for (auto c : text)
    {
        if (c == '"')
            quoted = !quoted;
        if (!quoted && juce::CharacterFunctions::isWhitespace(c))
        {
            if (started)
                arguments.add(current);
            current.clear();
            started = false;
            continue;
        }
        current += c;
        started = true;
    }
    if (started)
        arguments.add(current);
    return arguments;
}

namespace
{
/** Where the switch is, and what was glued to it ("-r\"/a.png\",..."): -1 when there is none. */
int renderSwitch(const juce::StringArray& arguments, juce::String& glued)
{
    for (int i = 0; i < arguments.size(); ++i)
    {
        const auto& a = arguments[i];
        if (a == "-r")
            return i;
        if (a.startsWith("-r\"") || a.startsWith("-r/"))
        {
            glued = a.substring(2);
            return i;
        }
    }
    return -1;
}
} // namespace

bool isRenderRequest(const juce::StringArray& arguments)
{
    juce::String glued;
    return renderSwitch(arguments, glued) >= 0;
}

bool isRenderRequest(const juce::String& text)
{
    return isRenderRequest(splitArguments(text));
}

RenderJob parseRender(const juce::String& text)
{
    return parseRender(splitArguments(text));
}

RenderJob parseRender(const juce::StringArray& arguments)
{
    juce::String glued;
    const int at = renderSwitch(arguments, glued);
    juce::StringArray rest;
    if (glued.isNotEmpty())
        rest.add(glued);
    for (int i = at + 1; at >= 0 && i < arguments.size(); ++i)
        rest.add(arguments[i]);
    auto t = stripQuotes(rest.joinIntoString(" ").trim());

    RenderJob job;
    const int comma = t.indexOfChar(',');
    if (comma < 0)
    {
        job.input = unquotePath(t);
    }
    else
    {
        job.input = unquotePath(t.substring(0, comma));
        job.output = unquotePath(t.substring(comma + 1));
    }

    job.render = juce::File::isAbsolutePath(job.input) && juce::File(job.input).existsAsFile();
    return job;
}

juce::File fileToOpen(const juce::String& text, const juce::File& workingDirectory)
{
    auto path = text.containsChar('"') ? stripQuotes(text) : text;
    return resolve(path.trim(), workingDirectory);
}

SecondInstanceRequest routeSecondInstance(const juce::String& text, const juce::String& projectExtension,
                                          const juce::File& workingDirectory)
{
    const auto path = stripQuotes(text).trim();
    SecondInstanceRequest request;
    if (path.isEmpty())
        return request;

    const auto file = resolve(path, workingDirectory);
    if (path.endsWithIgnoreCase(".qhp") || path.endsWithIgnoreCase(".qrp")
        || (projectExtension.isNotEmpty() && path.endsWithIgnoreCase("." + projectExtension)))
    {
        request.route = Route::project;
        request.file = file;
    }
    else if (file.existsAsFile())
    {
        request.route = Route::image;
        request.file = file;
    }
    return request;
}

juce::String forwardableText(const juce::String& text, const juce::File& workingDirectory)
{
    if (isRenderRequest(text))
        return text;
    const auto path = stripQuotes(text).trim();
    if (path.isEmpty() || juce::File::isAbsolutePath(path))
        return text;
    const auto file = workingDirectory.getChildFile(path);
    return file.exists() ? file.getFullPathName().quoted() : text;
}
} // namespace CommandLine
