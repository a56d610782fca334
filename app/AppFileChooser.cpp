#include "app/AppFileChooser.h"

namespace AppFileChooser
{
juce::File takeScriptedAnswer()
{
    const auto hook = juce::SystemStats::getEnvironmentVariable("TORNVALE_CHOOSER_FILE", {});
    if (hook.isEmpty() || !juce::File::isAbsolutePath(hook))
        return {};
    const juce::File answerFile(hook);
    if (!answerFile.existsAsFile())
        return {};
    const auto line = answerFile.loadFileAsString().upToFirstOccurrenceOf("\n", false, false).trim();
    answerFile.deleteFile();
    return juce::File::isAbsolutePath(line) ? juce::File(line) : juce::File();
}

void choose(std::unique_ptr<juce::FileChooser>& holder, const juce::String& title, const juce::File& start,
            const juce::String& patterns, int flags, std::function<void(const juce::File&)> done)
{
    const auto scripted = takeScriptedAnswer();
    if (scripted != juce::File())
    {
        // Answered later, as a dialog would be, so the caller's state is the same either way.
        juce::MessageManager::callAsync([scripted, done] { done(scripted); });
        return;
    }
    // JUCE's own dialog on every platform: the same look as the rest of the window, and no
    // dependence on desktop helpers that may not be installed.
    holder = std::make_unique<juce::FileChooser>(title, start, patterns, false);
    holder->launchAsync(flags, [done](const juce::FileChooser& chooser) {
        const auto result = chooser.getResult();
        if (result != juce::File())
            done(result);
    });
}

juce::File photoDestination(const juce::File& chosen)
{
    const auto extension = chosen.getFileExtension().toLowerCase();
    if (extension == ".tiff" || extension == ".tif" || extension == ".jpg" || extension == ".jpeg" || extension == ".png")
        return chosen;
    return chosen.getSiblingFile(chosen.getFileName() + ".png");
}

juce::File projectDestination(const juce::File& chosen, const juce::String& extension)
{
    if (chosen.hasFileExtension(extension))
        return chosen;
    return chosen.getSiblingFile(chosen.getFileName() + "." + extension);
}

juce::File presetFileFor(const juce::File& folder, const juce::String& typedName)
{
    const auto name = juce::File::createLegalFileName(typedName.trim()).trim();
    if (name.isEmpty() || name.containsOnly("."))
        return {};
    return folder.getChildFile(name + ".pre");
}
} // namespace AppFileChooser
