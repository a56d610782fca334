#pragma once
// The hand: a press and drag moves the view of the image, two fingers move and zoom it, a click
// at or below the fitting size brings the image back to the centre, and a double click toggles
// between the fitted view and twice that about the clicked point.

#include "tools/SxTool.h"

class SxPanTool : public SxTool
{
public:
    /** A press must travel this far (in view pixels) before it pans, so that a click with a
        shaky hand does not nudge the view. */
    static constexpr int dragThreshold = 9;
    /** The fraction of the view below which a click recentres. Lower than the document's 0.95
        fit on purpose, so that a fitted view still counts as "at or below fit". */
    static constexpr float fitFraction = 0.85f;

    explicit SxPanTool(const juce::String& name = "panTool");

    /** Whether a single finger or the mouse pans; two fingers always do. */
    void setSingleFingerPanning(bool allowed) { allowSingleFinger = allowed; }

    void updateCursor() override;

    void documentMouseDown(const juce::MouseEvent& e) override;
    void documentMouseDrag(const juce::MouseEvent& e) override;
    void documentMouseUp(const juce::MouseEvent& e) override;

    /** The outline of an open hand, the tool's icon when the top bar gives it no images. */
    static juce::Path handIcon();

private:
    bool allowSingleFinger = true;
    /** Where the last pan step ended, in view pixels; a 0 coordinate means no pan under way,
        so a press on the left or top edge of the view never pans. */
    juce::Point<int> anchor;
    bool moved = false;
    float pinchDistance = 0.0f;
};
