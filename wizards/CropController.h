#pragma once
// The crop panel: a small panel with the shape choice and "Apply", and the frame it lays over the
// picture. It changes nothing itself; the owner hears the chosen rectangle (in pixels of the
// full-size picture) or the cancel, after the click or key that caused it has returned, and then
// deletes the controller.

#include "tools/SxToolDocument.h"
#include "ui/SxSegmentController.h"
#include "wizards/CropInsideComponent.h"

#include <memory>

class SxRoundRectangleButton;

class CropController : public SxComponent,
                       public juce::Button::Listener,
                       public SxControlChangedCallback,
                       public SegmentControllerCallback,
                       private SxToolDocument::Listener
{
public:
    class Owner
    {
    public:
        virtual ~Owner() = default;
        /** "Apply" was pressed with rect, within the picture and never empty. */
        virtual void cropApplied(juce::Rectangle<int> rect) = 0;
        /** A command of the panel; "cropCancel" when it was left without change. */
        virtual void cropCommand(const juce::String& command) = 0;
    };

    /** Puts a frame over the picture of document, whose full size is picture; a non-empty
        lastCrop (from an earlier crop) is where the frame starts. */
    CropController(SxToolDocument& document, juce::Rectangle<int> picture, juce::Rectangle<int> lastCrop, Owner& owner);
    ~CropController() override;

    /** Height the panel's widgets need. */
    static constexpr int panelHeight = 140;

    CropInsideComponent& getInside() { return *inside; }
    SegmentController& getShapeSegment() { return *shapeSegment; }
    juce::Button& getApplyButton();

    /** Esc without Shift, Ctrl or Alt leaves the panel; true when the key was taken. */
    bool keyPressed(const juce::KeyPress& key) override;
    /** Takes the panel off the window at once and tells the owner "cropCancel" later. */
    void cancel();

    void buttonClicked(juce::Button* button) override;
    void controlChanged(juce::Component*) override {}
    void segmentChanged(SegmentController*, int index) override;
    void paint(juce::Graphics& g) override;

private:
    void documentZoomChanged(SxToolDocument&) override;
    void leaveParent();

    SxToolDocument& document;
    juce::Rectangle<int> picture;
    Owner& owner;
    int shapeIndex = 0;
    std::unique_ptr<CropInsideComponent> inside;
    juce::Label presetEffectTitleLabel { "presetEffectTitleLabel", "Crop" };
    juce::Label cancelImageListLabel { "cancelImageListLabel" };
    std::unique_ptr<SegmentController> shapeSegment;
    std::unique_ptr<SxRoundRectangleButton> applyButton;
};
