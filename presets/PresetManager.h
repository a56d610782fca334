#pragma once
// The preset strip along the lower edge of the window: a bar with the "PRESETS" title, the
// arrow that slides the strip away, and the save, remove and randomize buttons, over the
// scrolling row of thumbnails with an arrow at either end. It knows files and pictures only;
// applying, saving and the history belong to the application behind PresetManagerCallback.

#include "presets/PresetImageList.h"
#include "presets/PresetManagerCallback.h"
#include "ui/EaseComponentAnimator.h"
#include "ui/SxComponent.h"

#include <memory>

class PresetManager : public SxComponent,
                      public PresetImageListCallback,
                      public juce::Button::Listener,
                      public juce::MultiTimer
{
public:
    /** Height of the strip: the bar, and a row of thumbnails with their labels. */
    static constexpr int stripHeight = 30 + 128;
    static constexpr int slideMs = 150;

    PresetManager(PresetManagerCallback& callback, const juce::String& effectName, const juce::File& presetFolder,
                  juce::PropertiesFile* settings);
    ~PresetManager() override;

    juce::File getEffectPresetFolder() const { return presetFolder; }
    PresetImageList& getList() { return *presetImageList; }
    void rebuildList() { presetImageList->rebuild(); }
    /** A preview rendered from the open picture replaces a thumbnail. */
    void renderedPreview(const juce::String& path, const juce::Image& image);

    /** Places the strip in its parent, open or away, at once or sliding. rightEdge is the
        expression of its right side in the parent (the side panel's left edge). */
    void setOpen(bool open, bool animate);
    bool isOpen() const { return open; }
    bool isSliding() const { return animator.isAnimating(); }
    void setRightEdge(const juce::String& expression) { rightEdge = expression; }

    /** The arrow that brings the strip back; it stands in the parent while the strip is away. */
    juce::Button& getUpArrowButton() { return *upArrowButton; }

    /** Lines for the window's component map. */
    juce::String describe() const;

    void presetClicked(const juce::String& path) override;
    void presetDeleted(const juce::String& path) override;
    void buttonClicked(juce::Button* button) override;
    void timerCallback(int timerID) override;
    void paint(juce::Graphics& g) override;

private:
    void buildPanel();
    void updateArrows();
    juce::String boundsFor(bool shown) const;
    std::unique_ptr<juce::ShapeButton> makeButton(const char* name, const juce::Path& shape, const char* tooltip);

    enum TimerIds
    {
        hiddenTimer = 200,
        shownTimer = 201
    };

    PresetManagerCallback& callback;
    const juce::File presetFolder;
    juce::PropertiesFile* settings;
    std::unique_ptr<SxComponent> mainInsideComponent, scrollerParent;
    std::unique_ptr<juce::ShapeButton> leftArrowButton, rightArrowButton, presetArrowDownButton, upArrowButton, addPresetButton,
        removePresetButton, randomizeEffectButton;
    std::unique_ptr<juce::Label> titleLabel;
    std::unique_ptr<PresetImageList> presetImageList;
    EaseComponentAnimator animator;
    juce::String rightEdge { "left + parent.width" };
    bool open = true;
};
