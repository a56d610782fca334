#pragma once
// The bar across the top of the main window: open, save, the render mode and its button, crop, undo,
// zoom, the pan tool, redo, the press-and-hold original, info and randomize. Every button is
// placed by the bounds strings the whole window uses, so the centre group stays centred over
// the view area as the window resizes. It also owns the arrow that opens and closes the side
// panel, which stands just below the bar.

#include "ui/SxComponent.h"

#include <juce_data_structures/juce_data_structures.h>

#include <memory>

class GenericAppDocument;
class SxIconButton;
class SxRoundRectangleButton;
class SxPanTool;
class SxToolOwner;

/** What the bar's buttons ask of the window that holds it: the window implements it, and the bar
    knows nothing else of the window. */
class MainTopBarCallback
{
public:
    virtual ~MainTopBarCallback() = default;
    /** Where the bar puts the side panel's arrow and its own shadow, which stand below it. */
    virtual juce::Component& topBarHost() = 0;
    virtual SxToolOwner& topBarToolOwner() = 0;
    virtual GenericAppDocument* getDocument() const = 0;
    virtual juce::PropertiesFile* getUserSettings() const = 0;
    virtual bool hasDocument() const = 0;
    virtual bool canCrop() const = 0;
    virtual bool canUndo() const = 0;
    virtual bool canRedo() const = 0;
    virtual bool isEffectPanelOpen() const = 0;

    virtual void openImageDialog() = 0;
    virtual void saveImage() = 0;
    virtual void setManualRedraw(bool manual) = 0;
    virtual void renderImmediate() = 0;
    virtual void openCrop() = 0;
    virtual void undoStep() = 0;
    virtual void redoStep() = 0;
    virtual void randomizeAll() = 0;
    virtual void setEffectPanelOpen(bool open, bool animate) = 0;
    virtual void showAboutAlert() = 0;
    virtual void showOriginal(bool pressed) = 0;
};

class MainTopBar : public SxComponent, private juce::Button::Listener
{
public:
    explicit MainTopBar(MainTopBarCallback& owner);
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

    MainTopBarCallback& component;
    std::unique_ptr<SxIconButton> getPhotoButton, savePhotoButton, cropButton, undoButton, zoomInButton, zoomOutButton, redoButton,
        originalButton, infoButton, randomizeButton, panelArrowButton;
    std::unique_ptr<juce::ToggleButton> renderingModeCheckbox;
    std::unique_ptr<SxRoundRectangleButton> renderButton, applyButton;
    std::unique_ptr<SxPanTool> panTool;
    std::unique_ptr<juce::Component> topBarShadow;
    std::unique_ptr<juce::TooltipWindow> tooltipWindow;
    bool originalHeld = false;
};
