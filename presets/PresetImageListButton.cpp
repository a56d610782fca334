#include "presets/PresetImageListButton.h"

#include "presets/PresetImageList.h"

namespace
{
// The one open large picture and the button that opened it. A call-out box that is not modal:
// a modal one would swallow the pointer's leaving of the thumbnail, and it must close then.
struct OpenHover
{
    std::unique_ptr<PresetImageButtonHoverOverComponent> content;
    std::unique_ptr<juce::CallOutBox> box;
    PresetImageListButton* owner = nullptr;
};
OpenHover hoverState;
} // namespace

PresetImageButtonHoverOverComponent::PresetImageButtonHoverOverComponent(const juce::Image& image, const juce::String& text)
    : picture(image)
{
    setName("presetHoverOver");
    setSize(300, 300);
    setInterceptsMouseClicks(false, false);
    label.setText(text, juce::dontSendNotification);
    label.setFont(juce::Font(17.0f));
    label.setColour(juce::Label::textColourId, juce::Colour(0xfffafafa));
    label.setJustificationType(juce::Justification::centredTop);
    label.setInterceptsMouseClicks(false, false);
    addAndMakeVisible(label);
}

void PresetImageButtonHoverOverComponent::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff343434));
    if (picture.isValid())
        g.drawImage(picture, getLocalBounds().withTrimmedTop(22).toFloat(), juce::RectanglePlacement::centred);
}

void PresetImageButtonHoverOverComponent::resized()
{
    label.setBounds(getWidth() / 2 - 125, 3, 250, 45);
}

//==============================================================================
PresetImageListButton::PresetImageListButton(PresetImageList& owner, int index, const juce::String& path)
    : juce::ImageButton(juce::String(index)), presetPath(path), list(owner)
{
}

PresetImageListButton::~PresetImageListButton()
{
    if (hoverState.owner == this)
        closeHover();
}

void PresetImageListButton::setPicture(const juce::Image& image, bool rendered)
{
    picture = image;
    const float normal = rendered ? 1.0f : 0.9f;
    setImages(false, true, true, image, normal, {}, image, 1.0f, {}, image, 1.0f, {});
    repaint();
}

juce::String PresetImageListButton::openHoverName()
{
    return hoverState.content != nullptr ? hoverState.content->getText() : juce::String();
}

juce::Component* PresetImageListButton::openHoverBox()
{
    return hoverState.box.get();
}

void PresetImageListButton::closeHover()
{
    if (hoverState.owner != nullptr)
        hoverState.owner->stopTimer();
    hoverState.owner = nullptr;
    hoverState.box.reset();
    hoverState.content.reset();
}

void PresetImageListButton::openHover()
{
    closeHover();
    auto* top = getTopLevelComponent();
    if (top == nullptr || !picture.isValid())
        return;
    // The box points at the thumbnail from above it, inside the window's content.
    juce::Component* parent = top;
    if (auto* window = dynamic_cast<juce::ResizableWindow*>(top))
        if (auto* content = window->getContentComponent())
            parent = content;
    const auto area = parent->getLocalArea(this, getLocalBounds());
    hoverState.content = std::make_unique<PresetImageButtonHoverOverComponent>(picture, label != nullptr ? label->getText() : getName());
    hoverState.box = std::make_unique<juce::CallOutBox>(*hoverState.content, area, parent);
    hoverState.box->setName("presetHoverBox");
    hoverState.box->setInterceptsMouseClicks(false, false);
    hoverState.box->setVisible(true);
    hoverState.owner = this;
    startTimer(hoverCloseMs);
}

void PresetImageListButton::mouseEnter(const juce::MouseEvent& e)
{
    juce::ImageButton::mouseEnter(e);
    if (list.hoverEnabled && !list.isDeleteMode())
        openHover();
}

void PresetImageListButton::mouseExit(const juce::MouseEvent& e)
{
    juce::ImageButton::mouseExit(e);
    if (hoverState.owner == this)
        closeHover();
}

void PresetImageListButton::mouseUp(const juce::MouseEvent& e)
{
    if (hoverState.owner == this)
        closeHover();
    juce::ImageButton::mouseUp(e);
}

void PresetImageListButton::timerCallback()
{
    stopTimer();
    if (hoverState.owner == this)
        closeHover();
}
