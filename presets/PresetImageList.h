#pragma once
// The scrolling row of preset thumbnails: the presets of the effect's folder with the user's
// favourites first, each with its label, and a long-press mode in which delete and favourite
// badges come up on every thumbnail. Rendered previews, when the application makes them, replace
// a thumbnail's picture and outlive rebuilds of the row.

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>
#include <vector>

class PresetImageListButton;

class PresetImageListCallback
{
public:
    virtual ~PresetImageListCallback() = default;
    virtual void presetClicked(const juce::String& path) = 0;
    virtual void presetDeleted(const juce::String& path) = 0;
};

/** One rendered preview; the path of its preset is the key. */
struct PresetRenderedCacheImage
{
    virtual ~PresetRenderedCacheImage() = default;
    juce::Image image;
    juce::String presetPath;
};

class PresetImageList : public juce::Component, public juce::Button::Listener, public juce::MultiTimer
{
public:
    PresetImageList(const juce::String& effectName, const juce::File& folder, juce::PropertiesFile* settings,
                    PresetImageListCallback* callback);
    ~PresetImageList() override;

    juce::Array<juce::File> getPresetFiles() const;
    juce::Array<juce::File> getImageFiles() const;
    juce::Array<juce::File> getAllPresetFiles() const { return getPresetFiles(); }
    /** The folder of this effect's presets, with name appended when given. */
    juce::File getPresetFolder(const juce::String& name = {}) const;

    void setRenderedPreview(const juce::String& path, const juce::Image& image);
    /** Drops a rendered preview (its preset was saved anew or deleted). */
    void removeRenderedPreview(const juce::String& path);
    void clearRenderedPreviews();
    /** Paths that have a rendered preview. */
    juce::StringArray getRenderedPaths() const;

    void toggleDeleteMode();
    bool isDeleteMode() const { return deleteMode; }
    void rebuild();

    /** Scrolls the row to x (clamped); the strip's arrows go to either end. */
    void scrollTo(int x);
    int getContentWidth() const;
    juce::Viewport* getScroller() const;

    /** Answers whether a picture is open: the badges and long press do nothing without one. */
    std::function<bool()> hasDocument = [] { return true; };
    /** Told when the delete mode starts (true) or ends (false). */
    std::function<void(bool)> onDeleteModeChanged;
    /** Told whenever the row scrolls. */
    std::function<void()> onScrolled;

    const std::vector<PresetImageListButton*>& getButtons() const { return buttons; }
    const std::vector<juce::String>& getFavourites() const { return favourites; }
    juce::ImageButton* getDeleteIcon(int index) const { return deleteIcons[index]; }
    juce::ImageButton* getFavouriteIcon(int index) const { return favouriteIcons[index]; }
    /** The index of the preset with the selection border, or -1. */
    int getSelectedIndex() const { return selectedIndex; }

    /** Lines for the window's component map: every thumbnail in view, its badges when up. */
    juce::String describe() const;

    void buttonClicked(juce::Button* button) override;
    void mouseDown(const juce::MouseEvent& e) override;
    void mouseDrag(const juce::MouseEvent& e) override;
    void mouseUp(const juce::MouseEvent& e) override;
    void timerCallback(int timerID) override;
    void resized() override;

    bool hoverEnabled = true;
    bool deleteOnlyRequest = false;
    static constexpr int labelHeight = 39;
    /** How long a press must last to start the delete mode. */
    static constexpr int longPressMs = 1000;

private:
    class Scroller;
    void addButton(int index, int x, int y);
    void setDeleteMode(bool on);
    void writeFavourites();
    void placeScroller();

    enum TimerIds
    {
        longPressTimer = 100,
        rebuildTimer = 200,
        rebuildNowTimer = 201
    };

    const juce::String effectName;
    const juce::File folder;
    juce::PropertiesFile* settings;
    PresetImageListCallback* callback;
    std::unique_ptr<Scroller> scrollerComponent;
    juce::ComponentAnimator animator;
    std::unique_ptr<juce::Component> selectionBorder;
    std::unique_ptr<juce::Component> insideComponent;
    std::vector<PresetImageListButton*> buttons;
    std::vector<std::unique_ptr<PresetRenderedCacheImage>> renderedPreviews;
    juce::Array<juce::ImageButton*> deleteIcons;
    bool keepDeleteMode = false;
    juce::Array<juce::ImageButton*> favouriteIcons;
    std::vector<juce::String> favourites;
    juce::Array<juce::File> presetFiles;
    juce::Array<juce::File> imageFiles;
    float thumbSize = 76.0f;
    int builtForHeight = -1;
    bool pendingRebuild = false;
    bool longPressArmed = false;
    bool gestureConsumed = false;
    bool deleteMode = false;
    int selectedIndex = -1;
    juce::String selectedPath;
    /** Everything made by one rebuild, owned here, deleted by the next. */
    std::vector<std::unique_ptr<juce::Component>> parts;
    juce::Image frameImage, deleteImage, starOn, starOff;
};
