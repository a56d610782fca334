#include "ui/SxColorSliders.h"

SxRGBSlider::SxRGBSlider(const juce::String& name, juce::Colour* boundField, SxControlChangedCallback* callbackToUse)
    : SxComponent(name), field(boundField), callback(callbackToUse), sliders(name, "Red", "Green", "Blue", &red, &green, &blue, this)
{
    // Channels read as the bytes they are, not as percentages.
    for (int i = 0; i < sliders.getNumSliders(); ++i)
    {
        sliders.getSlider(i).setRange(0.0, 255.0, 1.0);
        sliders.getSlider(i).setTextValueSuffix({});
    }
    addAndMakeVisible(sliders);
    setSize(200, 44);
    setBoundsString("0, 0, left + parent.width, top + 44");
    update();
}

void SxRGBSlider::update()
{
    if (field != nullptr)
    {
        red = field->getRed();
        green = field->getGreen();
        blue = field->getBlue();
    }
    sliders.update();
}

void SxRGBSlider::controlChanged(juce::Component*)
{
    const auto byte = [](float channel) { return (juce::uint8) juce::jlimit(0, 255, juce::roundToInt(channel)); };
    if (field != nullptr)
        *field = juce::Colour(byte(red), byte(green), byte(blue), field->getAlpha());
    if (callback != nullptr)
        callback->controlChanged(this);
}

//==============================================================================
SxHueSelectionSlider::SxHueSelectionSlider(const juce::String& name, const juce::String& labelText, float* field,
                                           SxControlChangedCallback* callbackToUse)
    : SxLabelSlider(name, labelText, field, callbackToUse)
{
    slider.setRange(0.0, 360.0, 1.0);
    slider.setTextValueSuffix(juce::String::fromUTF8("\xc2\xb0"));
    // The strip painted behind the slider is its track.
    slider.setColour(juce::Slider::backgroundColourId, juce::Colours::transparentBlack);
    slider.setColour(juce::Slider::trackColourId, juce::Colours::transparentBlack);
    update();
}

void SxHueSelectionSlider::paint(juce::Graphics& g)
{
    // The strip spans the thumb's travel, so the thumb sits on the hue it selects.
    const auto track = slider.getBounds().toFloat();
    const float inset = (float) SxSliderLookAndFeel::shared().getSliderThumbRadius(slider);
    const auto strip = juce::Rectangle<float>(track.getX() + inset, track.getCentreY() - 3.0f, track.getWidth() - 2.0f * inset, 6.0f);
    juce::ColourGradient hues(juce::Colours::red, strip.getX(), 0.0f, juce::Colours::red, strip.getRight(), 0.0f, false);
    for (int i = 1; i < 6; ++i)
        hues.addColour(i / 6.0, juce::Colour::fromHSV((float) i / 6.0f, 1.0f, 1.0f, 1.0f));
    g.setGradientFill(hues);
    g.fillRoundedRectangle(strip, 3.0f);
}

//==============================================================================
SxColorChipSlider::SxColorChipSlider(const juce::String& name, const juce::String& labelText, float* field,
                                     const std::vector<juce::Colour*>& colourFields, SxControlChangedCallback* callbackToUse, Shape shape)
    : SxLabelSlider(name, labelText, field, callbackToUse)
{
    juce::String boxLeft = "parent.width - 1 - 44", top = "16";
    if (shape == Shape::knob)
    {
        SxLabelRoundSlider::shapeAsKnob(*this);
        boxLeft = "parent.width - 36 - 4 - 44";
        top = "6";
    }
    else
    {
        SxComponent::place(slider, "5, 10, left + parent.width - 5 - 50, top + 34");
    }
    // The chips share the box in equal parts.
    const int count = juce::jmax(1, (int) colourFields.size());
    const int width = (chipBoxWidth - chipGap * (count - 1)) / count;
    for (size_t i = 0; i < colourFields.size(); ++i)
    {
        auto chip = std::make_unique<SxColorButton>(i == 0 ? "colorChip" : "secondColorChip", colourFields[i], callbackToUse, false);
        addAndMakeVisible(*chip);
        const int offset = (int) i * (width + chipGap);
        const auto left = offset == 0 ? boxLeft : boxLeft + " + " + juce::String(offset);
        SxComponent::place(*chip, left + ", " + top + ", left + " + juce::String(width) + ", top + 23");
        chips.push_back(std::move(chip));
    }
}

void SxColorChipSlider::update()
{
    SxLabelSlider::update();
    for (auto& chip : chips)
        chip->update();
}

SxColorChipSelectionSlider::SxColorChipSelectionSlider(const juce::String& name, float* field, juce::Colour* colourField,
                                                       SxControlChangedCallback* callbackToUse)
    : SxColorChipSlider(name, "Color", field, { colourField }, callbackToUse)
{
}

SxTwoColorChipSelectionSlider::SxTwoColorChipSelectionSlider(const juce::String& name, float* field, juce::Colour* firstColour,
                                                             juce::Colour* secondColour, SxControlChangedCallback* callbackToUse)
    : SxColorChipSlider(name, "Color", field, { firstColour, secondColour }, callbackToUse)
{
}

//==============================================================================
SxColorChipDualSelectionSlider::SxColorChipDualSelectionSlider(const juce::String& name, float* field, juce::Colour* firstColour,
                                                               juce::Colour* secondColour, int* boundSelection,
                                                               SxControlChangedCallback* callbackToUse)
    : SxColorChipSlider(name, "Color", field, { firstColour, secondColour }, callbackToUse), selectionField(boundSelection)
{
    for (int i = 0; i < getNumChips(); ++i)
        // The chip's own click handling runs first: the chip in use opens its picker, the other
        // does nothing there and becomes the one in use here.
        getChip(i).onClick = [this, i] {
            if (i != selection)
                select(i);
        };
    update();
}

void SxColorChipDualSelectionSlider::select(int index)
{
    selection = juce::jlimit(0, 1, index);
    if (selectionField != nullptr)
        *selectionField = selection;
    showSelection();
    if (callback != nullptr)
        callback->controlChanged(this);
}

void SxColorChipDualSelectionSlider::update()
{
    SxColorChipSlider::update();
    selection = selectionField != nullptr ? juce::jlimit(0, 1, *selectionField) : selection;
    showSelection();
}

void SxColorChipDualSelectionSlider::showSelection()
{
    for (int i = 0; i < getNumChips(); ++i)
    {
        getChip(i).setSelected(i == selection);
        getChip(i).setOpensPicker(i == selection);
    }
}

//==============================================================================
SxColorChipImageListSlider::SxColorChipImageListSlider(const juce::String& name, float* field, juce::Colour* colourField,
                                                       std::vector<juce::Image> images, int* imageField,
                                                       SxControlChangedCallback* callbackToUse)
    : SxColorChipSlider(name, "Color", field, { colourField }, callbackToUse), list("imageList", std::move(images), imageField)
{
    stackImageLists(*this, { &list }, SxImageList::topBelowSliderRow, callbackToUse);
}

void SxColorChipImageListSlider::update()
{
    SxColorChipSlider::update();
    list.update();
}

//==============================================================================
SxLabelSliderColorPickerRoundSlider::SxLabelSliderColorPickerRoundSlider(const juce::String& name, const juce::String& labelText,
                                                                         float* field, juce::Colour* colourField,
                                                                         SxControlChangedCallback* callbackToUse)
    : SxColorChipSlider(name, labelText, field, { colourField }, callbackToUse, Shape::knob)
{
}

SxLabelSliderDualColorPickerRoundSlider::SxLabelSliderDualColorPickerRoundSlider(const juce::String& name, const juce::String& labelText,
                                                                                 float* field, juce::Colour* firstColour,
                                                                                 juce::Colour* secondColour,
                                                                                 SxControlChangedCallback* callbackToUse)
    : SxColorChipSlider(name, labelText, field, { firstColour, secondColour }, callbackToUse, Shape::knob)
{
}
