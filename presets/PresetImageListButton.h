#pragma once
// One thumbnail of the preset strip, and the large picture that comes up while the pointer rests
// on it. The button's name is its index in the strip, so a click resolves to its preset by
// parsing the name.

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

class PresetImageList;

/** The large picture: the thumbnail's image under its label, on a dark square. */
class PresetImageButtonHoverOverComponent : public juce::Component
{
public:
    PresetImageButtonHoverOverComponent(const juce::Image& image, const juce::String& text);
    void paint(juce::Graphics& g) override;
    void resized() override;

    juce::String getText() const { return label.getText(); }

private:
    juce::Image picture;
    juce::Label label { "presetHoverOverLabel" };
};

class PresetImageListButton : public juce::ImageButton, private juce::Timer
{
public:
    PresetImageListButton(PresetImageList& owner, int index, const juce::String& presetPath);
    ~PresetImageListButton() override;

    const juce::String presetPath;
    juce::Label* label = nullptr;

    /** Shows a picture on all three states; a rendered preview shows at full opacity. */
    void setPicture(const juce::Image& image, bool rendered);
    const juce::Image& getPicture() const { return picture; }

    /** The preset whose large picture is up, or empty. At most one is up in the process. */
    static juce::String openHoverName();
    /** The open large picture, or null. */
    static juce::Component* openHoverBox();
    static void closeHover();

    void mouseEnter(const juce::MouseEvent&) override;
    void mouseExit(const juce::MouseEvent&) override;
    void mouseUp(const juce::MouseEvent&) override;

    /** How long the large picture stays up without the pointer moving away. */
    static constexpr int hoverCloseMs = 10000;

private:
    void timerCallback() override;
    void openHover();

    PresetImageList& list;
    juce::Image picture;
};
