#pragma once
// The mask brushes: press and drag on the picture to lay dabs into the effect mask, one brush
// restoring the effect (taking mask away), the other removing it (adding mask). Between two
// mouse events the dabs go along the straight line at a fixed spacing, and only the rectangle
// they touched is shown again. The cursor is a ring of the brush's size at the view's zoom.

#include "brush/SxBrush.h"
#include "tools/SxTool.h"

#include <memory>

class SxBrushTool;

/** What a brush tool asks of its host: the mask to paint in and the dabs' spacing. */
class SxBrushToolCallback
{
public:
    virtual ~SxBrushToolCallback() = default;
    /** The mask to paint in at this moment; null paints nothing. */
    virtual SxImageAlphaByte* getBrushMask() { return nullptr; }
    /** From the document's image pixels to mask pixels. */
    virtual void mapBrushPoint(SxBrushPoint& out, const SxBrushPoint& in) { out = in; }
    /** The distance between dabs for a dab of that width, in mask pixels. */
    virtual float dabSpacing(float width) { return width * 0.125f; }
    virtual void strokeFinished(SxBrushTool*) {}
};

class SxBrushTool : public SxTool
{
public:
    /** Mode 1 restores the effect (paintOnDab takes mask away); mode 0 removes it. */
    SxBrushTool(const juce::String& name, int brushMode);
    ~SxBrushTool() override;

    void setCallback(SxBrushToolCallback* c) { callback = c; }

    // Each of these makes a new brush.
    void setBrushSize(float newSize);
    void setOpacity(float newOpacity);
    void setSoftness(float newSoftness);
    float getBrushSize() const { return size; }
    float getOpacity() const { return mOpacity; }
    int getBrushMode() const { return mBrushMode; }
    SxBrush& getBrush() { return *brush; }

    /** With it set, every press makes the brush as wide on the screen as its size; the effect
        leaves it off, so that a size is a number of mask pixels whatever the zoom. */
    void setScaleWithZoom(bool scale) { mScaleWithZoom = scale; }
    /** Hides the red view of the mask that the tool draws while the mouse is down. */
    void setHideMaskOverlay(bool hide) { mHideMaskOverlay = hide; }

    void setToolOn(bool on) override;
    void updateCursor() override;
    /** The ring, as wide as twice the brush at the present zoom (it is drawn at half size). */
    const juce::Image& getCursorImage() const { return cursorImage; }

    void paintOverImage(juce::Graphics& g, juce::Rectangle<float> imageArea) override;

    void documentMouseDown(const juce::MouseEvent& e) override;
    void documentMouseDrag(const juce::MouseEvent& e) override;
    void documentMouseUp(const juce::MouseEvent& e) override;
    void documentMouseMove(const juce::MouseEvent& e) override;
    void documentMouseEnter(const juce::MouseEvent& e) override;
    void documentMouseExit(const juce::MouseEvent& e) override;

    /** What the present stroke touched, in image pixels. */
    const LayerRect& getDirtyRect() const { return mDirtyRect; }

    /** The brush icon of the two tool buttons. */
    static juce::Path brushIcon(bool restores);

private:
    void rebuildBrush(float diameter, float opacity);
    SxBrushPoint pointFor(const juce::MouseEvent& e);
    void stamp(const SxBrushPoint& p, float pressure);
    LayerRect boxOf(const SxBrushPoint& p);
    void report(const LayerRect& box);
    /** Repaints where the cursor was and where it is now. */
    void moveCursor(juce::Point<float> to);
    juce::Rectangle<int> cursorArea(juce::Point<float> at) const;

    SxBrushToolCallback* callback = nullptr;
    std::unique_ptr<SxBrush> brush;
    bool mScaleWithZoom = false;
    SxBrushPoint mLastPoint;
    LayerRect mDirtyRect;
    juce::Image cursorImage;
    juce::Point<float> mCursorPosition { -1000.0f, -1000.0f };
    bool mOutlineCursor = true;
    bool mMultiTouch = false;
    float mOpacity = 0.5f;
    float size = 40.0f;
    float mSoftness = 1.0f;
    int mBrushMode = 0;
    bool mHideMaskOverlay = false;
    bool mMouseIsDown = false;
    bool mDragged = false;
};
