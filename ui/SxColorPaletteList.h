#pragma once
// The palettes saved in a folder, as a scrolling column of their swatches with names, in a panel
// that slides in over its parent from the right. A click on one hands its file to onPicked and
// closes the panel.

#include "ui/EaseComponentAnimator.h"
#include "ui/SxComponent.h"

#include <functional>
#include <memory>

class SxColorPaletteList : public SxComponent
{
public:
    explicit SxColorPaletteList(const juce::File& folder);
    ~SxColorPaletteList() override;

    /** The palette files shown, by name. */
    juce::Array<juce::File> getFiles() const { return files; }
    /** Re-reads the folder. */
    void refresh();
    /** Places the panel beside parent's right edge and slides it over parent. */
    void slideIn(juce::Component& parent);
    void pick(int index);

    std::function<void(const juce::File&)> onPicked;
    std::function<void()> onClose;

    void paint(juce::Graphics& g) override;
    void resized() override;

    static constexpr int entryHeight = 64;
    static constexpr int slideMs = 500;

private:
    juce::File folder;
    juce::Array<juce::File> files;
    juce::Viewport scroller { "ImageListScroller" };
    SxComponent insideComponent { "insideComponent" };
    juce::OwnedArray<juce::Button> entries;
    juce::TextButton closeButton { "Close" };
    EaseComponentAnimator animator;
};
