#include "ui/SxSliderComposites.h"

SxNegativeToOneLabelSlider::SxNegativeToOneLabelSlider(const juce::String& name, const juce::String& labelText, float* field,
                                                       SxControlChangedCallback* callbackToUse)
    : SxLabelSlider(name, labelText, field, callbackToUse)
{
    slider.setRange(-1.0, 1.0, 0.01);
    setDoubleClickReturnValue(0.0);
    update();
}

SxLabelRoundSlider::SxLabelRoundSlider(const juce::String& name, const juce::String& labelText, float* field,
                                       SxControlChangedCallback* callbackToUse)
    : SxLabelSlider(name, labelText, field, callbackToUse)
{
    shapeAsKnob(*this);
}

void SxLabelRoundSlider::shapeAsKnob(SxLabelSlider& control)
{
    auto& knob = *control.getSlider();
    knob.setSliderStyle(juce::Slider::RotaryHorizontalVerticalDrag);
    control.setForm(Form::compact);
    SxComponent::place(knob, "parent.width - 36, 0, left + 34, top + 34");
    // The value goes under the name: at the right end it would lie over the knob.
    auto& value = control.getValueLabel();
    value.setJustificationType(juce::Justification::centredLeft);
    SxComponent::place(value, "8, 17, left + 45, top + 16");
}

//==============================================================================
SxLabelMultiSliders::SxLabelMultiSliders(const juce::String& name, const juce::StringArray& labelTexts, const std::vector<float*>& fields,
                                         SxControlChangedCallback* callbackToUse)
    : SxComponent(name), callback(callbackToUse)
{
    static const char* const names[] = { "firstSlider", "secondSlider", "thirdSlider" };
    const int count = juce::jmin(3, labelTexts.size(), (int) fields.size());
    setSize(200, 44);
    setBoundsString("0, 0, left + parent.width, top + 44");
    for (int i = 0; i < count; ++i)
    {
        auto s = std::make_unique<SxSliderBase>(names[i]);
        s->setComponentID(names[i]);
        s->floatValue = fields[(size_t) i];
        s->setRange(0.0, 1.0, 0.01);
        s->setTextValueSuffix("%");
        s->readBoundField();
        s->addListener(this);
        addAndMakeVisible(*s);
        // Equal thirds (or halves), each slider 5 pixels in from its share's left edge.
        const juce::String share = "(parent.width / " + juce::String(count) + ")";
        const juce::String left = i == 0 ? juce::String("5") : juce::String(names[i - 1]) + ".right + 5";
        SxComponent::place(*s, left + ", 10, left + " + share + " - 5, top + 34");

        auto l = std::make_unique<juce::Label>(juce::String(names[i]) + "Label", labelTexts[i]);
        l->setFont(juce::Font(12.0f));
        l->setColour(juce::Label::textColourId, juce::Colour(0xFFFAFAFA));
        l->setBorderSize({ 0, 0, 0, 0 });
        addAndMakeVisible(*l);
        SxComponent::place(*l, juce::String(names[i]) + ".left-5, 0, left + 190, top + 23");
        sliders.push_back(std::move(s));
        labels.push_back(std::move(l));
    }
}

SxLabelMultiSliders::~SxLabelMultiSliders()
{
    for (auto& s : sliders)
        s->removeListener(this);
}

void SxLabelMultiSliders::update()
{
    for (auto& s : sliders)
        s->readBoundField();
}

void SxLabelMultiSliders::sliderValueChanged(juce::Slider* changed)
{
    if (auto* s = dynamic_cast<SxSliderBase*>(changed))
        s->writeBoundField();
    tellOwner();
}

void SxLabelMultiSliders::tellOwner()
{
    if (callback != nullptr)
        callback->controlChanged(this);
}
