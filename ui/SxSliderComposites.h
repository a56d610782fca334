#pragma once
// The smaller members of the slider family, each a slider row with one thing added: a signed
// range, a knob, or two or three sliders side by side. They bind fields and report changes exactly
// as SxSlider does.

#include "ui/SxSlider.h"

#include <memory>
#include <vector>

/** -1 to 1, shown as -100% to 100%, centred by a double click. */
class SxNegativeToOneLabelSlider : public SxLabelSlider
{
public:
    SxNegativeToOneLabelSlider(const juce::String& name, const juce::String& labelText, float* field, SxControlChangedCallback* callback);
};

/** The name at the left and a knob at the right, for angles and other turning values. */
class SxLabelRoundSlider : public SxLabelSlider
{
public:
    SxLabelRoundSlider(const juce::String& name, const juce::String& labelText, float* field, SxControlChangedCallback* callback);

    /** Turns any labelled slider into this shape: compact, the name at the left, a 34-pixel knob
        at the right end. Composites that add to a knob call it before placing their own parts. */
    static void shapeAsKnob(SxLabelSlider& control);
};

/** Two or three sliders in a row, each with its own name above it and its own field. */
class SxLabelMultiSliders : public SxComponent, public SxUpdateComponent, private juce::Slider::Listener
{
public:
    SxLabelMultiSliders(const juce::String& name, const juce::StringArray& labels, const std::vector<float*>& fields,
                        SxControlChangedCallback* callback);
    ~SxLabelMultiSliders() override;

    int getNumSliders() const { return (int) sliders.size(); }
    SxSliderBase& getSlider(int index) { return *sliders[(size_t) index]; }
    juce::Label& getLabel(int index) { return *labels[(size_t) index]; }
    void update() override;

protected:
    /** Tells the owner that this row changed; the field was written already. */
    void tellOwner();

private:
    void sliderValueChanged(juce::Slider* s) override;

    std::vector<std::unique_ptr<SxSliderBase>> sliders;
    std::vector<std::unique_ptr<juce::Label>> labels;
    SxControlChangedCallback* callback = nullptr;
};

class SxLabelTwoSliders : public SxLabelMultiSliders
{
public:
    SxLabelTwoSliders(const juce::String& name, const juce::String& first, const juce::String& second, float* firstField,
                      float* secondField, SxControlChangedCallback* callback)
        : SxLabelMultiSliders(name, { first, second }, { firstField, secondField }, callback)
    {
    }
};

class SxLabelThreeSliders : public SxLabelMultiSliders
{
public:
    SxLabelThreeSliders(const juce::String& name, const juce::String& first, const juce::String& second, const juce::String& third,
                        float* firstField, float* secondField, float* thirdField, SxControlChangedCallback* callback)
        : SxLabelMultiSliders(name, { first, second, third }, { firstField, secondField, thirdField }, callback)
    {
    }
};
