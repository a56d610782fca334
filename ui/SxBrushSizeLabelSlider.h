#pragma once
// The brush size control: a labelled slider over a size in whole pixels (not a percentage),
// with a disc at the right of the name that grows with the size, so the number has a shape.

#include "ui/SxSlider.h"

namespace SxBrushSize
{
/** Gives a slider of the brush size family its range in whole pixels and drops the percent sign. */
void showInPixels(SxSliderBase& slider, float minimum, float maximum);
} // namespace SxBrushSize

class SxBrushSizeLabelSlider : public SxLabelSlider
{
public:
    SxBrushSizeLabelSlider(const juce::String& componentName, const juce::String& labelText, float* field,
                           SxControlChangedCallback* callback, float minimum, float maximum);

    void paintOverChildren(juce::Graphics& g) override;
    void valueShown() override;
};
