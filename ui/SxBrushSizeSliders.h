#pragma once
// The other members of the brush size family (the labelled one is SxBrushSizeLabelSlider): the
// bare slider, the row of the pro panels, and a slider under a 150-pixel box that shows the brush
// at its size. All of them count in whole pixels.

#include "ui/SxBrushSizeLabelSlider.h"
#include "ui/SxLabelSliderPro.h"

class SxBrushSizeSlider : public SxSlider
{
public:
    SxBrushSizeSlider(const juce::String& name, float* field, SxControlChangedCallback* callback, float minimum, float maximum);
};

class SxProBrushSizeSlider : public SxLabelSliderPro
{
public:
    SxProBrushSizeSlider(const juce::String& name, const juce::String& labelText, float* field, SxControlChangedCallback* callback,
                         float minimum, float maximum);
};

class SxBrushSizeComponent : public SxBrushSizeSlider
{
public:
    SxBrushSizeComponent(const juce::String& name, float* field, SxControlChangedCallback* callback, float minimum, float maximum);

    static constexpr int previewSide = 150;
    /** The disc's diameter in the box: the brush's own size while it fits, else scaled so the
        largest size just fits, keeping a 2-pixel margin for the outline. */
    static float previewDiameter(double size, double maximum);

    juce::Component& getPreview() { return preview; }
    void valueShown() override { preview.repaint(); }
    void update() override;

private:
    struct Preview : juce::Component
    {
        explicit Preview(SxSliderBase& s) : juce::Component("brushPreview"), slider(s) {}
        void paint(juce::Graphics& g) override;
        SxSliderBase& slider;
    };
    Preview preview { slider };
};
