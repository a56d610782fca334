#pragma once
// The "ADJUST" side panel: the effect's sliders and style segments in one column, each bound
// straight to a field of the effect. A change writes the field, records an undo step and asks
// for a render; an update re-reads every field (after undo, randomize or a restore) without
// feeding back.

#include "ui/SxComponent.h"
#include "ui/SxLayoutController.h"
#include "ui/SxSegmentController.h"

#include <functional>
#include <memory>
#include <vector>

class BrushControlPanel;
class SxToolOwner;
class Layer;
class SxLabelSlider;
class SxIconButton;
class TornvaleEffect;

class EffectControlPanel : public SxComponent,
                           public SxControlChangedCallback,
                           public SegmentControllerCallback,
                           private juce::Button::Listener
{
public:
    /** toolOwner makes the brushes current; randomize is the panel's own dice, which keeps the
        style and varies the adjust settings. */
    EffectControlPanel(SxToolOwner& toolOwner, std::function<void()> randomize);
    ~EffectControlPanel() override;

    /** Binds the controls to an effect, or shows an empty panel for null. */
    void setEffect(Layer* layer);
    TornvaleEffect* getEffect() const { return effect; }

    /** Shows every bound value again and relabels the two sliders whose meaning the taper
        style turns around. */
    void updateControls();

    void controlChanged(juce::Component* control) override;
    void segmentChanged(SegmentController* controller, int index) override;

    void paint(juce::Graphics& g) override;

    /** The brush keys, while an effect is shown; true when taken. */
    bool handleKey(const juce::KeyPress& key);
    BrushControlPanel* getBrushPanel() const { return brushPanel.get(); }

    /** The slider or segment of that component name, for tests and scripts. */
    juce::Component* findControl(const juce::String& name) const;

private:
    void buttonClicked(juce::Button*) override;
    void buildControls();
    /** Two controls side by side in one row of the column. */
    juce::Component* makePair(juce::Component& left, juce::Component& right, int height);

    SxToolOwner& toolOwner;
    std::function<void()> randomize;
    TornvaleEffect* effect = nullptr;
    juce::Label title { "effectTabSegmentTitleBar", "ADJUST" };
    std::unique_ptr<SxIconButton> randomizeEffectButton;
    std::unique_ptr<SxLayoutComponent> column;
    std::vector<std::unique_ptr<juce::Component>> controls;
    std::unique_ptr<BrushControlPanel> brushPanel;
};
