#include "ui/SxBrushSizeLabelSlider.h"

void SxBrushSize::showInPixels(SxSliderBase& slider, float minimum, float maximum)
{
    slider.setRange(minimum, maximum, 1.0);
    slider.setTextValueSuffix({});
}

SxBrushSizeLabelSlider::SxBrushSizeLabelSlider(const juce::String& componentName, const juce::String& labelText, float* field,
                                               SxControlChangedCallback* callback, float minimum, float maximum)
    : SxLabelSlider(componentName, labelText, field, callback)
{
    SxBrushSize::showInPixels(slider, minimum, maximum);
    update();
}

void SxBrushSizeLabelSlider::valueShown()
{
    SxLabelSlider::valueShown();
    repaint();
}

void SxBrushSizeLabelSlider::paintOverChildren(juce::Graphics& g)
{
    // Between the name and the number: the largest size fills a 12-pixel disc.
    auto& name = getLabel();
    const float share = (float) ((slider.getValue() - slider.getMinimum()) / juce::jmax(1.0, slider.getMaximum() - slider.getMinimum()));
    const float d = 3.0f + 9.0f * share;
    const float cx = (float) name.getX() + (float) name.getFont().getStringWidth(name.getText()) + 18.0f;
    const float cy = (float) name.getBounds().getCentreY();
    g.setColour(juce::Colour(0xfffafafa).withAlpha(0.8f));
    g.fillEllipse(cx - d * 0.5f, cy - d * 0.5f, d, d);
}
