#include "ui/SxColorButton.h"

SxColourSelectorBase::SxColourSelectorBase(const juce::String& name, int flags) : SxComponent(name), selector(flags)
{
    selector.addChangeListener(this);
    addAndMakeVisible(selector);
    setSize(220, 240);
}

SxColourSelectorBase::~SxColourSelectorBase()
{
    selector.removeChangeListener(this);
}

void SxColourSelectorBase::setColour(juce::Colour colour)
{
    selector.setCurrentColour(colour, juce::dontSendNotification);
}

void SxColourSelectorBase::resized()
{
    selector.setBounds(getLocalBounds());
}

void SxColourSelectorBase::changeListenerCallback(juce::ChangeBroadcaster*)
{
    if (onChange)
        onChange(getColour());
}

namespace
{
constexpr int commonFlags = juce::ColourSelector::showColourspace | juce::ColourSelector::showColourAtTop
                            | juce::ColourSelector::editableColour;
}

SxColorPicker::SxColorPicker() : SxColourSelectorBase("SxColorPicker", commonFlags) {}

SxTransparentColorPicker::SxTransparentColorPicker()
    : SxColourSelectorBase("SxTransparentColorPicker", commonFlags | juce::ColourSelector::showAlphaChannel)
{
}

//==============================================================================
SxColorButton::SxColorButton(const juce::String& name, juce::Colour* boundField, SxControlChangedCallback* changed, bool alpha)
    : juce::Button(name), field(boundField), callback(changed), withAlpha(alpha)
{
    update();
}

void SxColorButton::update()
{
    if (field != nullptr)
        colour = *field;
    repaint();
}

void SxColorButton::setColour(juce::Colour newColour, juce::NotificationType notification)
{
    if (!withAlpha)
        newColour = newColour.withAlpha((juce::uint8) 255);
    colour = newColour;
    if (field != nullptr)
        *field = newColour;
    repaint();
    if (notification == juce::dontSendNotification)
        return;
    if (callback != nullptr)
        callback->controlChanged(this);
    if (onColourChanged)
        onColourChanged(newColour);
}

void SxColorButton::setSelected(bool selected)
{
    selectedCell = selected;
    repaint();
}

void SxColorButton::clicked()
{
    if (!opensPicker)
        return;
    std::unique_ptr<SxColourSelectorBase> picker;
    if (withAlpha)
        picker = std::make_unique<SxTransparentColorPicker>();
    else
        picker = std::make_unique<SxColorPicker>();
    picker->setColour(colour);
    juce::Component::SafePointer<SxColorButton> self(this);
    picker->onChange = [self](juce::Colour c) {
        if (self != nullptr)
            self->setColour(c, juce::sendNotification);
    };
    juce::CallOutBox::launchAsynchronously(std::move(picker), getScreenBounds(), nullptr);
}

void SxColorButton::paintButton(juce::Graphics& g, bool highlighted, bool)
{
    auto area = getLocalBounds().toFloat().reduced(1.0f);
    // A checkerboard under a translucent colour shows how much shows through.
    if (!colour.isOpaque())
        g.fillCheckerBoard(area, 5.0f, 5.0f, juce::Colour(0xffdddddd), juce::Colours::white);
    g.setColour(colour);
    g.fillRoundedRectangle(area, 3.0f);
    g.setColour(selectedCell ? juce::Colour(0xff4da3ff) : juce::Colours::black.withAlpha(highlighted ? 0.8f : 0.5f));
    g.drawRoundedRectangle(area, 3.0f, selectedCell ? 2.0f : 1.0f);
}
