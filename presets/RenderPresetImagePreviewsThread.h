#pragma once
// Renders every preset's look from the open picture, small, one preset after another, and hands
// each picture to the strip through the message thread. The thread never touches the interface
// or the document: it works on its own copy of the picture and its own layer stack. Its owner
// stops it before anything changes the document, the preset files or the GL work of a render;
// a stop takes at most one preset's render.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <atomic>

class Layer;
class PresetManager;

class RenderPresetImagePreviewsThread : public juce::Thread
{
public:
    /** The side of the square the picture is fitted into before it is rendered. */
    static constexpr int pictureSide = 300;

    /** Copies and shrinks the picture now, on the caller's thread. presets are rendered in their
        order; the paths in alreadyRendered and multi-layer presets are left out. */
    RenderPresetImagePreviewsThread(PresetManager& manager, const Layer& effectPrototype, const SxImageRgbaBytes& picture,
                                    const juce::Array<juce::File>& presets, const juce::StringArray& alreadyRendered);
    ~RenderPresetImagePreviewsThread() override;

    void run() override;

    /** Previews finished so far (each one posted to the strip). */
    int getRenderedCount() const { return rendered.load(); }

    /** The fitted copy the previews are rendered from. */
    const SxImageRgbaBytes* getPicture() const { return picture.get(); }

private:
    juce::Component::SafePointer<PresetManager> manager;
    const Layer& prototype;
    SxRef<SxImageRgbaBytes> picture;
    const juce::Array<juce::File> presets;
    const juce::StringArray skip;
    std::atomic<int> rendered { 0 };
};
