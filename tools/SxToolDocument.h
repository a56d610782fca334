#pragma once
// What a tool (and a frame lying over the picture, such as the crop) may ask of the view it works
// in: the shown image, zoom and offset, the conversion between view and image pixels, repaints
// and the fingers held. The application's view implements it; tools see nothing else of the
// application, so they build and are tested without it.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <vector>

class SxTool;

/** Takes every mouse event of the document in place of the current tool while installed, for
    modes such as a crop frame that own the picture for a while. */
class GenericAppDocumentMouseInterceptCallback
{
public:
    virtual ~GenericAppDocumentMouseInterceptCallback() = default;
    virtual void interceptMouseUp(const juce::MouseEvent&) {}
    virtual void interceptMouseMove(const juce::MouseEvent&) {}
    virtual void interceptMouseDown(const juce::MouseEvent&) {}
    virtual void interceptMouseDrag(const juce::MouseEvent&) {}
    virtual void interceptMouseEnter(const juce::MouseEvent&) {}
    virtual void interceptMouseExit(const juce::MouseEvent&) {}
};

class SxToolDocument : public juce::Component
{
public:
    static constexpr float minZoom = 0.125f;
    static constexpr float maxZoom = 3.0f;

    /** Told when a change of zoom or offset has settled (at once, or at the last frame of an
        animation), so that the zoom buttons and frames over the picture can follow. */
    class Listener
    {
    public:
        virtual ~Listener() = default;
        virtual void documentZoomChanged(SxToolDocument&) {}
    };

    virtual SxImageRgbaBytes* getImage() const = 0;

    /** Fits the image into 95% of the view and centres it; animated, it eases there in steps. */
    virtual void fitToWindow(bool animate) = 0;
    /** Sets the zoom (limited to minZoom..maxZoom) so that the image point under about, in view
        pixels, stays under it. With snap a zoom within 3% of a step becomes the step. */
    virtual void setZoom(float newZoom, bool animate, juce::Point<float> about, bool snap = false) = 0;
    /** Moves the image by dx, dy view pixels, keeping part of it in view on each side. */
    virtual void panBy(float dx, float dy) = 0;
    virtual float getZoom() const = 0;
    virtual float getPanX() const = 0;
    virtual float getPanY() const = 0;

    /** View pixels to image pixels and back, at the current zoom and offset. */
    virtual juce::Point<float> viewToImage(juce::Point<float> p) const = 0;
    virtual juce::Point<float> imageToView(juce::Point<float> p) const = 0;
    /** Where the image lies in the view at the current zoom and offset. */
    virtual juce::Rectangle<float> imageBounds() const = 0;
    /** Repaints the view pixels that cover the image rectangle x..x2, y..y2 (inclusive). */
    virtual void repaintImageRegion(int x, int y, int x2, int y2) = 0;

    /** The tool that receives the mouse while it is on and an image is shown; not owned. */
    virtual void setTool(SxTool* newTool) = 0;
    virtual SxTool* getTool() const = 0;
    /** Installs (or with null removes) the interceptor; not owned. */
    virtual void setMouseInterceptor(GenericAppDocumentMouseInterceptCallback* interceptor) = 0;
    /** One event per finger or button held, oldest first. During a mouse up the released touch
        is still listed, so that a tool can tell a single press from the end of a gesture. */
    virtual std::vector<juce::MouseEvent> getTouches() const = 0;

    void addListener(Listener* listener) { listeners.add(listener); }
    void removeListener(Listener* listener) { listeners.remove(listener); }

protected:
    void callZoomListeners() { listeners.call([this](Listener& l) { l.documentZoomChanged(*this); }); }

private:
    juce::ListenerList<Listener> listeners;
};
