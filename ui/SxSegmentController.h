#pragma once
// A row of mutually exclusive choices (a style of the effect), bound by pointer to an int field
// that holds the chosen index. Like the sliders, the control writes the field itself and then
// tells its owner; update() re-reads the field silently.

#include "ui/SxComponent.h"

class SegmentController;

class SegmentControllerCallback
{
public:
    virtual ~SegmentControllerCallback() = default;
    virtual void segmentChanged(SegmentController* controller, int index) = 0;
};

class SegmentController : public SxComponent, public SxUpdateComponent
{
public:
    SegmentController(const juce::String& componentName, int* field, const juce::StringArray& buttonTexts,
                      const juce::StringArray& buttonTooltips, SegmentControllerCallback* callback);
    ~SegmentController() override;

    /** Shows the field's index as the chosen segment; an index outside the row shows none. */
    void update() override;

    int getNumSegments() const { return buttons.size(); }
    juce::Button* getButton(int index) const { return buttons[index]; }
    /** The index of the segment that is on, or -1. */
    int getSelectedIndex() const;

    void resized() override;
    void paint(juce::Graphics&) override;

private:
    void segmentClicked(int index);

    int* field = nullptr;
    SegmentControllerCallback* callback = nullptr;
    juce::OwnedArray<juce::Button> buttons;
    int radioGroup = 1; // radio groups are scoped to one parent, so one id serves every row
};

/** A segment row with its name above it: the row of the effect panels, 53 pixels high. */
class SxLabelSegmentController : public SxComponent, public SxUpdateComponent
{
public:
    SxLabelSegmentController(const juce::String& componentName, const juce::String& labelText, int* field,
                             const juce::StringArray& buttonTexts, const juce::StringArray& buttonTooltips,
                             SegmentControllerCallback* callback);

    void update() override { segments.update(); }
    void setLabelText(const juce::String& text) { label.setText(text, juce::dontSendNotification); }
    juce::String getLabelText() const { return label.getText(); }
    SegmentController& getSegmentController() { return segments; }

    static constexpr int rowHeight = 53;

private:
    juce::Label label { "SxLabelSegmentControllerLabel" };
    SegmentController segments;
};
