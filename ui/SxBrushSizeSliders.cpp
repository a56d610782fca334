#include "ui/SxBrushSizeSliders.h"

#include "ui/SxLookAndFeel.h"

SxBrushSizeSlider::SxBrushSizeSlider(const juce::String& name, float* field, SxControlChangedCallback* callbackToUse, float minimum,
                                     float maximum)
    : SxSlider(name, field, callbackToUse)
{
    SxBrushSize::showInPixels(slider, minimum, maximum);
    update();
}

SxProBrushSizeSlider::SxProBrushSizeSlider(const juce::String& name, const juce::String& labelText, float* field,
                                           SxControlChangedCallback* callbackToUse, float minimum, float maximum)
    : SxLabelSliderPro(name, labelText, field, callbackToUse)
{
    SxBrushSize::showInPixels(slider, minimum, maximum);
    update();
}

//==============================================================================
SxBrushSizeComponent::SxBrushSizeComponent(const juce::String& name, float* field, SxControlChangedCallback* callbackToUse,
                                           float minimum, float maximum)
    : SxBrushSizeSlider(name, field, callbackToUse, minimum, maximum)
{
    addAndMakeVisible(preview);
    SxComponent::place(preview, "0,0, 150, 150");
    SxComponent::place(slider, "0, 154, left + 150, top + 20");
    setSize(previewSide, 174);
    setBoundsString("0, 0, left + 150, top + 174");
}

float SxBrushSizeComponent::previewDiameter(double size, double maximum)
{
    const double room = previewSide - 4;
    const double scale = maximum > room ? room / maximum : 1.0;
    return (float) juce::jlimit(1.0, room, size * scale);
}

void SxBrushSizeComponent::update()
{
    SxBrushSizeSlider::update();
    preview.repaint();
}

void SxBrushSizeComponent::Preview::paint(juce::Graphics& g)
{
    SxPaint::outlinedPanel(g, getLocalBounds(), SxColours::window, 4.0f);
    const float d = previewDiameter(slider.getValue(), slider.getMaximum());
    g.setColour(SxColours::text.withAlpha(0.85f));
    g.fillEllipse(getLocalBounds().toFloat().withSizeKeepingCentre(d, d));
}
