#include "app/MainTopBar.h"

#include "app/GenericAppDocument.h"
#include "tools/SxPanTool.h"
#include "ui/SxAlertComponent.h"
#include "ui/SxIconButton.h"
#include "ui/SxIcons.h"
#include "ui/SxRoundRectangleButton.h"

namespace
{
/** The soft edge under the bar, over the view. */
class TopBarShadow : public juce::Component
{
public:
    TopBarShadow()
    {
        setInterceptsMouseClicks(false, false);
        setName("topBarShadow");
    }
    void paint(juce::Graphics& g) override
    {
        g.setGradientFill(juce::ColourGradient(juce::Colours::black.withAlpha(0.35f), 0.0f, 0.0f, juce::Colours::transparentBlack,
                                               0.0f, (float) getHeight(), false));
        g.fillAll();
    }
};
} // namespace

MainTopBar::MainTopBar(MainTopBarCallback& owner) : SxComponent("topBar"), component(owner)
{
    using Kind = SxIcons::Kind;
    addIconButton(getPhotoButton, "getPhotoButton", (int) Kind::openPhoto, "Load a photo from your hard drive. ",
                  "16, 1, left + 50, top + 30");
    addIconButton(savePhotoButton, "savePhotoButton", (int) Kind::save, "Save your image to your hard drive.",
                  "82, 1, left + 50, top + 30");

    renderingModeCheckbox = std::make_unique<juce::ToggleButton>();
    renderingModeCheckbox->setName("renderingModeCheckbox");
    renderingModeCheckbox->setComponentID("renderingModeCheckbox");
    renderingModeCheckbox->setTooltip("Controls how rendering is handled. Automatically render when you make a change or manual "
                                      "updating by hitting the 'Render' button.");
    renderingModeCheckbox->addListener(this);
    addAndMakeVisible(*renderingModeCheckbox);
    SxComponent::place(*renderingModeCheckbox, "savePhotoButton.right + 20, 4, left + 30, top + 24");

    renderButton = std::make_unique<SxRoundRectangleButton>("renderButton", "Render");
    renderButton->setComponentID("renderButton");
    renderButton->setTooltip("Render the project. (Ctrl/Cmd R)");
    renderButton->addListener(this);
    addChildComponent(*renderButton);
    SxComponent::place(*renderButton, "renderingModeCheckbox.right + 5, 6, left + 75, top + 20");

    addIconButton(cropButton, "cropButton", (int) Kind::crop, "Cut off unwanted areas around the image.",
                  "(parent.width - 256 - 130)/2 - 188 + 165, 1, left + 50, top + 30");
    addIconButton(undoButton, "undoButton", (int) Kind::undo, "Undo the last edit",
                  "(parent.width - 256 - 130)/2 - 146 + 165 + 20, 1, left + 50, top + 30");
    addIconButton(zoomInButton, "zoomInButton", (int) Kind::zoomIn, "Zoom in to examine small details.",
                  "(parent.width - 256 - 130)/2 - 104 + 165 + 40, 1, left + 50, top + 30");

    panTool = std::make_unique<SxPanTool>();
    panTool->setName("panTool");
    panTool->setComponentID("panTool");
    panTool->setTooltip("Use this to move the image within the app.");
    panTool->setIconPath(SxIcons::get(Kind::pan));
    panTool->setOwner(&component.topBarToolOwner());
    addAndMakeVisible(*panTool);
    SxComponent::place(*panTool, "(parent.width - 256 - 130)/2 - 62 + 165 + 60, 1, left + 50, top + 30");

    addIconButton(zoomOutButton, "zoomOutButton", (int) Kind::zoomOut, "Zoom Out to view a larger proportion of your image.",
                  "(parent.width - 256 - 130)/2 - 20 + 165 + 80, 1, left + 50, top + 30");
    addIconButton(redoButton, "redoButton", (int) Kind::redo, "Redo the last edit that was undone.",
                  "(parent.width - 256 - 130)/2 + 22 + 165 + 100, 1, left + 50, top + 30");
    addIconButton(originalButton, "originalButton", (int) Kind::original,
                  "Hold down to view the original image for a quick comparison.",
                  "(parent.width - 256 - 130)/2 + 64 + 165 + 120, 1, left + 50, top + 30");
    addIconButton(infoButton, "infoButton", (int) Kind::info,
                  "Opens the Info Page for this product. Internet connection required to view Info Page using web browser.",
                  "parent.width - 180, 1, left + 50, top + 30");
    addIconButton(randomizeButton, "randomizeButton", (int) Kind::randomize, "Random settings",
                  "parent.width - 68, 1, left + 50, top + 30");

    // The side panel's arrow stands below the bar, so it is a child of the main component.
    panelArrowButton = std::make_unique<SxIconButton>("arrowRightButton", Kind::arrowRight);
    panelArrowButton->setComponentID("arrowRightButton");
    panelArrowButton->addListener(this);
    component.topBarHost().addAndMakeVisible(*panelArrowButton);

    topBarShadow = std::make_unique<TopBarShadow>();
    topBarShadow->setComponentID("topBarShadow");
    component.topBarHost().addAndMakeVisible(*topBarShadow);
    SxComponent::place(*topBarShadow, "0, topBar.bottom, left + topBar.width, top + 8");

    if (component.getUserSettings() == nullptr || component.getUserSettings()->getBoolValue("showToolTips", true))
        tooltipWindow = std::make_unique<juce::TooltipWindow>(&component.topBarHost(), 700);

    updateButtons();
}

MainTopBar::~MainTopBar()
{
    if (panTool != nullptr && panTool->isToolOn())
        component.topBarToolOwner().setCurrentTool(nullptr);
}

SxIconButton& MainTopBar::addIconButton(std::unique_ptr<SxIconButton>& holder, const char* name, int kind, const char* tooltip,
                                        const char* bounds)
{
    holder = std::make_unique<SxIconButton>(name, (SxIcons::Kind) kind);
    holder->setComponentID(name);
    holder->setTooltip(tooltip);
    holder->addListener(this);
    addAndMakeVisible(*holder);
    SxComponent::place(*holder, bounds);
    return *holder;
}

void MainTopBar::updateButtons()
{
    const bool hasDocument = component.hasDocument();
    cropButton->setEnabled(component.canCrop());
    undoButton->setEnabled(hasDocument && component.canUndo());
    redoButton->setEnabled(hasDocument && component.canRedo());
    zoomInButton->setEnabled(hasDocument);
    zoomOutButton->setEnabled(hasDocument);
    panTool->setEnabled(hasDocument);
    originalButton->setEnabled(hasDocument);
    randomizeButton->setEnabled(hasDocument);
    renderButton->setEnabled(hasDocument);
    savePhotoButton->setEnabled(hasDocument);
    if (applyButton != nullptr)
        applyButton->setEnabled(hasDocument);
}

void MainTopBar::showHostApplyButton(const juce::String& tooltip)
{
    getPhotoButton->setVisible(false);
    savePhotoButton->setVisible(false);
    // The labelled button takes the name, so the bounds that refer to the save button follow it.
    savePhotoButton->setName("savePhotoIconButton");
    savePhotoButton->setComponentID("savePhotoIconButton");
    applyButton = std::make_unique<SxRoundRectangleButton>("savePhotoButton", "Apply to Photo");
    applyButton->setComponentID("savePhotoButton");
    applyButton->setTooltip(tooltip);
    applyButton->addListener(this);
    addAndMakeVisible(*applyButton);
    SxComponent::place(*applyButton, "15, 5, left + 130, top + 24");
    SxComponent::place(*renderingModeCheckbox, "savePhotoButton.right + 20, 4, left + 30, top + 24");
    updateButtons();
}

void MainTopBar::setManualRedraw(bool manual)
{
    renderingModeCheckbox->setToggleState(manual, juce::dontSendNotification);
    renderButton->setVisible(manual);
}

void MainTopBar::setPanelArrow(bool panelOpen)
{
    panelArrowButton->setIcon(panelOpen ? SxIcons::Kind::arrowRight : SxIcons::Kind::arrowLeft);
    panelArrowButton->setName(panelOpen ? "arrowRightButton" : "leftArrowButton");
    panelArrowButton->setTooltip(panelOpen ? "Hide the adjust panel" : "Show the adjust panel");
    SxComponent::place(*panelArrowButton, panelOpen ? "parent.width - 256 - 33, 33, left + 41, top + 30"
                                                    : "parent.width - 35, 33, left + 41, top + 30");
    panelArrowButton->toFront(false);
}

void MainTopBar::buttonClicked(juce::Button* button)
{
    auto* document = component.getDocument();
    if (button == getPhotoButton.get())
        component.openImageDialog();
    else if (button == savePhotoButton.get() || button == applyButton.get())
        component.saveImage();
    else if (button == renderingModeCheckbox.get())
        component.setManualRedraw(renderingModeCheckbox->getToggleState());
    else if (button == renderButton.get())
        component.renderImmediate();
    else if (button == cropButton.get())
        component.openCrop();
    else if (button == undoButton.get())
        component.undoStep();
    else if (button == redoButton.get())
        component.redoStep();
    else if (button == zoomInButton.get())
        document->zoomIn();
    else if (button == zoomOutButton.get())
        document->zoomOut();
    else if (button == randomizeButton.get())
        component.randomizeAll();
    else if (button == panelArrowButton.get())
        component.setEffectPanelOpen(!component.isEffectPanelOpen(), true);
    else if (button == infoButton.get())
        component.showAboutAlert();
    updateButtons();
}

void MainTopBar::buttonStateChanged(juce::Button* button)
{
    // The original shows only while the button is held down.
    if (button == originalButton.get())
    {
        const bool down = originalButton->isDown();
        if (down != originalHeld)
        {
            originalHeld = down;
            component.showOriginal(down);
        }
    }
}

void MainTopBar::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff2b2d31));
    g.setColour(juce::Colour(0xff17181a));
    g.drawHorizontalLine(getHeight() - 1, 0.0f, (float) getWidth());
}
