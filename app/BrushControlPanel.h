#pragma once
// The mask brushes' panel: the two brush tools ("B" restores the effect, "E" removes it), and
// for the selected one its size, its opacity and the Fill, Clear and Invert buttons of the mask.
// The panel lives as long as the effect's controls; the brush settings it edits outlive it. It
// is the tools' host: it hands them the effect mask and the spacing of their dabs.

#include "tools/SxBrushTool.h"
#include "ui/SxComponent.h"

#include <memory>

class SxBrushSizeLabelSlider;
class SxSlider;

class BrushControlPanel : public SxComponent,
                          public SxBrushToolCallback,
                          public SxToolCallback,
                          public SxControlChangedCallback,
                          private juce::Button::Listener
{
public:
    /** owner makes a tool current and shows what the mask changes. The tool selected when the
        last panel closed is selected again. */
    explicit BrushControlPanel(SxToolOwner& owner);
    /** Remembers which tool was selected, and leaves no tool of this panel current. */
    ~BrushControlPanel() override;

    /** B and E select a tool (unless it already is); [ and ] step the size of both brushes.
        True when the key was taken. */
    bool handleKey(const juce::KeyPress& key);

    SxBrushTool* getOnTool() const { return brushOnTool.get(); }
    SxBrushTool* getOffTool() const { return brushOffTool.get(); }

    /** The mask buttons: the effect everywhere, the adjusted photo everywhere, or each turned
        round; then the whole picture is shown again, with no render. */
    void fillMask();
    void clearMask();
    void invertMask();

    // SxBrushToolCallback
    SxImageAlphaByte* getBrushMask() override;
    /** A fifth of the dab: dense enough that a soft brush paints an even line. */
    float dabSpacing(float width) override { return width / 5.0f; }

    void stateChanged(SxTool* tool, bool on) override;
    void controlChanged(juce::Component* control) override;
    void paint(juce::Graphics& g) override;

private:
    void buttonClicked(juce::Button* button) override;
    /** One tool's tab: its size, opacity and mask buttons, numbered 1 or 2 as the tools are. */
    void buildTab(SxBrushTool& tool, int number, float* opacity);
    /** Gives both tools the stored size and their opacities, and shows them on every slider. */
    void applySettings();
    void showTabOf(SxBrushTool* tool);

    SxToolOwner& owner;
    juce::Label title { "brushPanelTitle", "BRUSH" };
    std::unique_ptr<SxBrushTool> brushOnTool, brushOffTool;
    SxBrushSizeLabelSlider* manualBrushSizeSliderOn = nullptr;
    SxBrushSizeLabelSlider* manualBrushSizeSliderOff = nullptr;
    SxSlider* manualBrushOpacitySliderPaintOn = nullptr;
    SxSlider* manualBrushOpacitySliderPaintOff = nullptr;
    SxComponent tabArea { "brushTabArea" };
};
