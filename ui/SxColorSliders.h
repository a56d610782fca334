#pragma once
// The colour members of the slider family: a colour as three channel sliders, a hue strip, and
// sliders with one or two colour chips beside them (a strength and its colour, a blend between
// two colours, a knob with its colour). Each binds its fields and reports changes as SxSlider does.

#include "ui/SxColorButton.h"
#include "ui/SxImageListSliders.h"
#include "ui/SxSliderComposites.h"

#include <memory>
#include <vector>

/** Red, green and blue, 0 to 255 each, bound together to one colour field whose alpha they keep. */
class SxRGBSlider : public SxComponent, public SxUpdateComponent, private SxControlChangedCallback
{
public:
    SxRGBSlider(const juce::String& name, juce::Colour* field, SxControlChangedCallback* callback);

    SxLabelThreeSliders& getSliders() { return sliders; }
    void update() override;

private:
    void controlChanged(juce::Component*) override;

    juce::Colour* field = nullptr;
    SxControlChangedCallback* callback = nullptr;
    float red = 0.0f, green = 0.0f, blue = 0.0f; // the sliders' own fields, declared before them
    SxLabelThreeSliders sliders;
};

/** A hue in degrees, 0 to 360, over a strip of the hues themselves. */
class SxHueSelectionSlider : public SxLabelSlider
{
public:
    SxHueSelectionSlider(const juce::String& name, const juce::String& labelText, float* field, SxControlChangedCallback* callback);
    void paint(juce::Graphics& g) override;
};

/** A labelled slider with one or two colour chips sharing a 44-pixel box at its right end (or, in
    the knob form, left of the knob), each chip bound to its own colour field. */
class SxColorChipSlider : public SxLabelSlider
{
public:
    enum class Shape
    {
        linear,
        knob
    };
    SxColorChipSlider(const juce::String& name, const juce::String& labelText, float* field,
                      const std::vector<juce::Colour*>& colourFields, SxControlChangedCallback* callback, Shape shape = Shape::linear);

    int getNumChips() const { return (int) chips.size(); }
    SxColorButton& getChip(int index = 0) { return *chips[(size_t) index]; }
    void update() override;

    static constexpr int chipBoxWidth = 44;
    static constexpr int chipGap = 2;

private:
    std::vector<std::unique_ptr<SxColorButton>> chips;
};

/** A strength and its colour, named "Color". */
class SxColorChipSelectionSlider : public SxColorChipSlider
{
public:
    SxColorChipSelectionSlider(const juce::String& name, float* field, juce::Colour* colourField, SxControlChangedCallback* callback);
};

/** A blend between two colours, named "Color". */
class SxTwoColorChipSelectionSlider : public SxColorChipSlider
{
public:
    SxTwoColorChipSelectionSlider(const juce::String& name, float* field, juce::Colour* firstColour, juce::Colour* secondColour,
                                  SxControlChangedCallback* callback);
};

/** Two colours of which one is in use, as a pair of paint colours: a click on the other chip
    makes it the one in use (written to selectionField as 0 or 1), a click on the chip in use
    opens its picker. */
class SxColorChipDualSelectionSlider : public SxColorChipSlider
{
public:
    SxColorChipDualSelectionSlider(const juce::String& name, float* field, juce::Colour* firstColour, juce::Colour* secondColour,
                                   int* selectionField, SxControlChangedCallback* callback);
    int getSelection() const { return selection; }
    /** As a click on a chip that is not in use; writes the field, then tells the owner. */
    void select(int index);
    void update() override;

private:
    void showSelection();

    int* selectionField = nullptr;
    int selection = 0;
};

/** A strength and its colour with a row of thumbnails under them (a pattern to paint with). */
class SxColorChipImageListSlider : public SxColorChipSlider
{
public:
    SxColorChipImageListSlider(const juce::String& name, float* field, juce::Colour* colourField, std::vector<juce::Image> images,
                               int* imageField, SxControlChangedCallback* callback);
    SxImageList& getImageList() { return list; }
    void update() override;

private:
    SxImageList list;
};

/** A knob with the colour it applies, left of the knob. */
class SxLabelSliderColorPickerRoundSlider : public SxColorChipSlider
{
public:
    SxLabelSliderColorPickerRoundSlider(const juce::String& name, const juce::String& labelText, float* field, juce::Colour* colourField,
                                        SxControlChangedCallback* callback);
};

/** A knob with two colours, left of the knob. */
class SxLabelSliderDualColorPickerRoundSlider : public SxColorChipSlider
{
public:
    SxLabelSliderDualColorPickerRoundSlider(const juce::String& name, const juce::String& labelText, float* field,
                                            juce::Colour* firstColour, juce::Colour* secondColour, SxControlChangedCallback* callback);
};
