#pragma once
// The file dialogs of the main window and the naming rules of what they return.
//
// Automation: when the environment variable TORNVALE_CHOOSER_FILE names a file that exists, the
// next dialog shows nothing and is answered by the first line of that file, which is then
// deleted; a test (or a script driving the program) writes the path it wants and presses the key.
// Without the variable, or without the file, the ordinary dialog opens.

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

namespace AppFileChooser
{
/** Asks for one file without blocking; done runs on the message thread with the choice, and is
    not called when the dialog is cancelled. holder keeps the dialog alive while it shows. */
void choose(std::unique_ptr<juce::FileChooser>& holder, const juce::String& title, const juce::File& start,
            const juce::String& patterns, int flags, std::function<void(const juce::File&)> done);

/** The scripted answer waiting in TORNVALE_CHOOSER_FILE, consumed; an empty file when none. */
juce::File takeScriptedAnswer();

/** A photo destination: kept if it ends in ".tiff", ".tif", ".jpg", ".jpeg" or ".png" (any
    case), otherwise ".png" is appended to the whole name. */
juce::File photoDestination(const juce::File& chosen);
/** A project destination gets the project extension unless it has it. */
juce::File projectDestination(const juce::File& chosen, const juce::String& extension);
/** The preset file for a name typed by the user, in folder; an invalid file for a name that
    leaves nothing once the characters a file name cannot hold are taken out. */
juce::File presetFileFor(const juce::File& folder, const juce::String& typedName);
} // namespace AppFileChooser
