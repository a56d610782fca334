#pragma once
// The bar across the top of the main window: open, save, the render mode and its button, crop, undo,
// zoom, the pan tool, redo, the press-and-hold original, info and randomize. Every button is
// placed by the bounds strings the whole window uses, so the centre group stays centred over
// the view area as the window resizes. It also owns the arrow that opens and closes the side
// panel, which stands just below the bar.

#include "ui/SxComponent.h"

#include <memory>

class GenericAppComponent;
class SxIconButton;
class SxRoundRectangleButton;
class SxPanTool;

class MainTopBar : public SxComponent, private juce::Button::Listener
{
public:
    explicit MainTopBar(GenericAppComponent& owner);
    ~MainTopBar() override;

    /** Enables what makes sense for the present document and history. */
    void updateButtons();
    /** Shows the Render button only when renders start by hand. */
    void setManualRedraw(bool manual);
    /** In a host the picture goes back where it came from: the open button goes, and the save
        button becomes the labelled "Apply to Photo". */
    void showHostApplyButton(const juce::String& tooltip);
    /** Points the side panel's arrow the right way and moves it beside the panel. */
    void setPanelArrow(bool panelOpen);

    SxPanTool* getPanTool() const { return panTool.get(); }

    void paint(juce::Graphics& g) override;

private:
    void buttonClicked(juce::Button* button) override;
    void buttonStateChanged(juce::Button* button) override;
    SxIconButton& addIconButton(std::unique_ptr<SxIconButton>& holder, const char* name, int kind, const char* tooltip,
                                const char* bounds);

    GenericAppComponent& component;
    std::unique_ptr<SxIconButton> getPhotoButton, savePhotoButton, cropButton, undoButton, zoomInButton, zoomOutButton, redoButton,
        originalButton, infoButton, randomizeButton, panelArrowButton;
    std::unique_ptr<juce::ToggleButton> renderingModeCheckbox;
    std::unique_ptr<SxRoundRectangleButton> renderButton, applyButton;
    std::unique_ptr<SxPanTool> panTool;
    std::unique_ptr<juce::Component> topBarShadow;
    std::unique_ptr<juce::TooltipWindow> tooltipWindow;
    bool originalHeld = false;
};
