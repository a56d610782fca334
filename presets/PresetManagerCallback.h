#pragma once
// What the preset strip asks of the application: it knows files and pictures, the application
// knows the document, the layers and the history.

#include <juce_core/juce_core.h>

class PresetManagerCallback
{
public:
    virtual ~PresetManagerCallback() = default;
    /** Apply the preset at path to the effect. */
    virtual void presetClicked(const juce::String& path) = 0;
    /** The file at path is gone; previews of the set of files are out of date. */
    virtual void presetDeleted(const juce::String& path) = 0;
    /** Random adjust settings for the effect, keeping its style. */
    virtual void randomizeEffect() = 0;
    /** The user asked to save the present settings as a preset. */
    virtual void savePresetRequested() = 0;
    /** Render the thumbnails from the open picture again (when the application does that). */
    virtual void refreshPreviews() = 0;
    /** Whether a picture is open: clicks, long presses and badges need one. */
    virtual bool hasSourceImage() = 0;
};
