#pragma once
// The view of the picture: draws the shown image at a zoom and offset over the background colour
// of the settings. It never owns the image; the main component keeps it alive while it is shown.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

class GenericAppDocument : public juce::Component, private juce::MultiTimer
{
public:
    explicit GenericAppDocument(juce::PropertySet* settings);
    ~GenericAppDocument() override;

    /** Shows an image (null shows only the background). The pixels are converted for drawing
        once here, so painting costs one scaled blit. */
    void setImage(SxImageRgbaBytes* newImage);
    SxImageRgbaBytes* getImage() const { return image; }

    /** Fits the image into 95% of the view and centres it; animated, it eases there in steps. */
    void fitToWindow(bool animate);

    float getZoom() const { return zoom; }
    float getPanX() const { return panX; }
    float getPanY() const { return panY; }

    /** Where the image lies in the view at the current zoom and offset. */
    juce::Rectangle<float> imageBounds() const;

    /** Repaints the view pixels that cover the image rectangle x..x2, y..y2 (inclusive). */
    void repaintImageRegion(int x, int y, int x2, int y2);

    /** The fill behind the image: the "backgroundColor.*" settings (0 to 1 each) or a dark grey. */
    juce::Colour backgroundColour() const;

    void paint(juce::Graphics& g) override;
    void resized() override;

private:
    void timerCallback(int timerID) override;

    enum
    {
        zoomAnimationTimer = 100
    };

    juce::PropertySet* settings;
    SxImageRgbaBytes* image = nullptr;
    juce::Image drawable;

    float zoom = 1.0f;
    float panX = 0.0f;
    float panY = 0.0f;
    float targetZoom = 1.0f;
    float targetPanX = 0.0f;
    float targetPanY = 0.0f;
    bool fitted = false;
};
