#include "ui/SxButtonSliders.h"

#include "ui/SxLookAndFeel.h"

SxLabelSliderButton::SxLabelSliderButton(const juce::String& name, const juce::String& labelText, float* field,
                                         const juce::String& buttonText, bool* boundButtonField, SxControlChangedCallback* callbackToUse)
    : SxLabelSliderButton(name, labelText, field, std::make_unique<juce::TextButton>(buttonText), boundButtonField, callbackToUse)
{
}

SxLabelSliderButton::SxLabelSliderButton(const juce::String& name, const juce::String& labelText, float* field,
                                         std::unique_ptr<juce::Button> buttonToUse, bool* boundButtonField,
                                         SxControlChangedCallback* callbackToUse)
    : SxLabelSlider(name, labelText, field, callbackToUse), button(std::move(buttonToUse)), buttonField(boundButtonField)
{
    button->setComponentID("sliderButton");
    button->setClickingTogglesState(buttonField != nullptr);
    button->addListener(this);
    addAndMakeVisible(*button);
    SxComponent::place(*button, "parent.width - 1 - 44, 15, left + 44, top + 20");
    SxComponent::place(slider, "5, 10, left + parent.width - 5 - 50, top + 34");
    update();
}

SxLabelSliderButton::~SxLabelSliderButton()
{
    button->removeListener(this);
}

void SxLabelSliderButton::update()
{
    SxLabelSlider::update();
    if (buttonField != nullptr)
        button->setToggleState(*buttonField, juce::dontSendNotification);
}

void SxLabelSliderButton::buttonClicked(juce::Button*)
{
    if (buttonField != nullptr)
        *buttonField = button->getToggleState();
    if (callback != nullptr)
        callback->controlChanged(this);
}

//==============================================================================
namespace
{
class BlackAndWhiteButton : public juce::Button
{
public:
    BlackAndWhiteButton() : juce::Button("blackAndWhiteButton") { setTooltip("Black and white"); }

    void paintButton(juce::Graphics& g, bool highlighted, bool) override
    {
        const float side = (float) juce::jmin(getWidth(), getHeight()) - 4.0f;
        const auto disc = getLocalBounds().toFloat().withSizeKeepingCentre(side, side);
        g.setColour(juce::Colours::white);
        g.fillEllipse(disc);
        juce::Path dark;
        dark.addPieSegment(disc, juce::MathConstants<float>::pi, juce::MathConstants<float>::twoPi, 0.0f);
        g.setColour(juce::Colours::black);
        g.fillPath(dark);
        // On, the ring wears the accent; off, a hairline that brightens under the mouse.
        const bool on = getToggleState();
        g.setColour(on ? SxColours::accent : (highlighted ? SxColours::dimText : SxColours::outline));
        g.drawEllipse(disc, on ? 2.0f : 1.0f);
    }
};
} // namespace

SxBlackAndWhiteButtonSlider::SxBlackAndWhiteButtonSlider(const juce::String& name, const juce::String& labelText, float* field,
                                                         bool* blackAndWhiteField, SxControlChangedCallback* callbackToUse)
    : SxLabelSliderButton(name, labelText, field, std::make_unique<BlackAndWhiteButton>(), blackAndWhiteField, callbackToUse)
{
}
