#pragma once
// The view of the picture: draws the shown image at a zoom and offset over the background colour
// of the settings, zooms and pans it (at once or eased over a few frames), hands the mouse to the
// current tool or to an interceptor, and shows a small activity panel while a render runs. It
// never owns the image; the main component keeps it alive while it is shown.

#include "imaging/SxImageRgbaBytes.h"
#include "tools/SxToolDocument.h"
#include "tools/SxTouchList.h"

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

#include <array>

class GenericAppDocument : public SxToolDocument, public juce::Button::Listener, private juce::MultiTimer
{
public:
    /** The zooms that the zoom buttons step through. Pinch and wheel zoom freely between the
        first and the last. */
    static constexpr std::array<float, 11> zoomSteps { 0.125f, 1.0f / 6.0f, 0.25f, 1.0f / 3.0f, 0.5f, 2.0f / 3.0f,
                                                       1.0f, 1.5f, 2.0f, 2.5f, 3.0f };
    /** How much of the image a pan always leaves in view on each side, in view pixels. */
    static constexpr float panMargin = 45.0f;
    /** Frames of a zoom animation; at 30 ms a frame it lasts about a quarter of a second. */
    static constexpr int animationFrames = 8;

    explicit GenericAppDocument(juce::PropertySet* settings);
    ~GenericAppDocument() override;

    /** Shows an image (null shows only the background). The pixels are converted for drawing
        once here, so painting costs one scaled blit. A fitted view refits when the new image
        has another size; otherwise the view stays where it is, as a render result expects. */
    void setImage(SxImageRgbaBytes* newImage);
    SxImageRgbaBytes* getImage() const override { return image; }
    /** The shown image changed inside area (image pixels): only that part is converted for
        drawing and repainted. */
    void imageChanged(juce::Rectangle<int> area);

    //==============================================================================
    /** Fits the image into 95% of the view and centres it; animated, it eases there in steps. */
    void fitToWindow(bool animate) override;
    /** True from a fit until the next zoom or pan; a fitted view refits when it is resized. */
    bool isFitted() const { return fitted; }

    /** Animated steps through zoomSteps about the centre of the view. */
    void zoomIn();
    void zoomOut();
    bool canZoomIn() const;
    bool canZoomOut() const;
    /** One image pixel to one screen pixel, about the centre of the view, animated. */
    void actualSize();

    /** Sets the zoom (limited to minZoom..maxZoom) so that the image point under about, in view
        pixels, stays under it. With snap a zoom within 3% of a step becomes the step, so that a
        pinch or a wheel can land on exactly 100%. */
    void setZoom(float newZoom, bool animate, juce::Point<float> about, bool snap = false) override;
    /** The same about the centre of the view. */
    void setZoom(float newZoom, bool animate) { setZoom(newZoom, animate, viewCentre()); }

    /** Moves the image by dx, dy view pixels, keeping at least panMargin pixels of it in view
        on each side: an axis whose step would pass a limit stops at that limit. */
    void panBy(float dx, float dy) override;

    float getZoom() const override { return zoom; }
    float getPanX() const override { return panX; }
    float getPanY() const override { return panY; }
    /** Where an animation ends; equal to the current values when none runs. */
    float getTargetZoom() const { return targetZoom; }
    bool isAnimating() const { return isTimerRunning(zoomAnimationTimer); }
    /** One frame of the zoom animation (the timer calls it every 30 ms). */
    void advanceAnimation();

    /** View pixels to image pixels and back, at the current zoom and offset. */
    juce::Point<float> viewToImage(juce::Point<float> p) const override;
    juce::Point<float> imageToView(juce::Point<float> p) const override;

    /** Where the image lies in the view at the current zoom and offset. */
    juce::Rectangle<float> imageBounds() const override;

    /** Repaints the view pixels that cover the image rectangle x..x2, y..y2 (inclusive). */
    void repaintImageRegion(int x, int y, int x2, int y2) override;

    /** The fill behind the image: the "backgroundColor.*" settings (0 to 1 each) or a dark grey. */
    juce::Colour backgroundColour() const;

    //==============================================================================
    /** The tool that receives the mouse while it is on and an image is shown; not owned. */
    void setTool(SxTool* newTool) override;
    SxTool* getTool() const override { return tool; }

    /** Installs (or with null removes) the interceptor; not owned. */
    void setMouseInterceptor(GenericAppDocumentMouseInterceptCallback* interceptor) override { mouseInterceptor = interceptor; }
    GenericAppDocumentMouseInterceptCallback* getMouseInterceptor() const { return mouseInterceptor; }

    /** One event per finger or button held, oldest first. During a mouse up the released touch
        is still listed, so that a tool can tell a single press from the end of a gesture. */
    std::vector<juce::MouseEvent> getTouches() const override { return touches.events(); }

    //==============================================================================
    /** While set, the tool draws nothing: the image under it is being replaced. */
    void setRenderingFull(bool rendering);
    bool isRenderingFull() const { return renderingFull; }

    /** Shows or hides a small centred panel with a spinner and the text ("Rendering..." when
        empty) over the image. */
    void setShowActivity(bool show, const juce::String& text = {});
    bool isShowingActivity() const { return showActivity; }
    /** Where the activity panel is drawn, in view pixels. */
    juce::Rectangle<int> activityPanelBounds() const;

    //==============================================================================
    /** The zoom buttons of the top bar, not owned: clicks step the zoom, and each button is
        enabled only while a step is left in its direction. */
    void setZoomButtons(juce::Button* zoomInButton, juce::Button* zoomOutButton);


    //==============================================================================
    void paint(juce::Graphics& g) override;
    void resized() override;
    void buttonClicked(juce::Button* button) override;

    void mouseDown(const juce::MouseEvent& e) override;
    void mouseDrag(const juce::MouseEvent& e) override;
    void mouseUp(const juce::MouseEvent& e) override;
    void mouseMove(const juce::MouseEvent& e) override;
    void mouseEnter(const juce::MouseEvent& e) override;
    void mouseExit(const juce::MouseEvent& e) override;
    /** A plain wheel zooms about the pointer: the view has no scroll bars, panning belongs to
        the pan tool, and a trackpad pinch arrives as a magnify gesture instead. */
    void mouseWheelMove(const juce::MouseEvent& e, const juce::MouseWheelDetails& wheel) override;
    void mouseMagnify(const juce::MouseEvent& e, float scaleFactor) override;

private:
    void timerCallback(int timerID) override;

    enum
    {
        zoomAnimationTimer = 100,
        activityTimer = 101
    };

    bool hasImage() const { return image != nullptr && image->width > 0 && image->height > 0; }
    juce::Point<float> viewCentre() const { return { getWidth() * 0.5f, getHeight() * 0.5f }; }
    /** The tool, when it may take events: it is on and there is an image to work on. */
    SxTool* activeTool();
    /** Moves the view to the given zoom and offset, at once or eased from where it is now. */
    void moveTo(float newZoom, float newPanX, float newPanY, bool animate);
    /** The offsets nearest to x, y that keep panMargin of the image in view at zoom z. */
    juce::Point<float> limitPan(float x, float y, float z) const;
    void zoomSettled();
    void updateZoomButtons();

    juce::PropertySet* settings;
    SxImageRgbaBytes* image = nullptr;
    juce::Image drawable;

    float zoom = 1.0f;
    float panX = 0.0f;
    float panY = 0.0f;
    float targetZoom = 1.0f;
    float targetPanX = 0.0f;
    float targetPanY = 0.0f;
    float startZoom = 1.0f;
    float startPanX = 0.0f;
    float startPanY = 0.0f;
    int animationFrame = 0;
    bool fitted = false;
    int lastWidth = 0;
    int lastHeight = 0;

    SxTool* tool = nullptr;
    GenericAppDocumentMouseInterceptCallback* mouseInterceptor = nullptr;
    SxTouchList touches;

    bool renderingFull = false;
    bool showActivity = false;
    juce::String activityText;
    float spinnerAngle = 0.0f;

    juce::Component::SafePointer<juce::Button> zoomInButton;
    juce::Component::SafePointer<juce::Button> zoomOutButton;
};
