#pragma once
// What the document and tool tests share: a GUI-initialised fixture holding a document of a
// known size with an image, and mouse events made by hand as the window system would deliver
// them to the document.

#include "app/GenericAppDocument.h"
#include "imaging/SxSmartPtr.h"

#include <gtest/gtest.h>

namespace tooltest
{
/** A left-button event at position on the document, pressed at down, from the main mouse. */
inline juce::MouseEvent mouseEvent(juce::Component& c, juce::Point<float> position, juce::Point<float> down, int clicks = 1)
{
    const auto now = juce::Time::getCurrentTime();
    return juce::MouseEvent(juce::Desktop::getInstance().getMainMouseSource(), position,
                            juce::ModifierKeys(juce::ModifierKeys::leftButtonModifier), 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, &c,
                            &c, now, down, now, clicks, position != down);
}

inline juce::MouseEvent mouseEvent(juce::Component& c, juce::Point<float> position, int clicks = 1)
{
    return mouseEvent(c, position, position, clicks);
}

class DocumentTest : public ::testing::Test
{
protected:
    /** Makes the document w by h and shows a fresh image iw by ih, fitted. */
    void show(int w, int h, int iw, int ih)
    {
        document.setSize(w, h);
        image = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(iw, ih));
        document.setImage(image.get());
        document.fitToWindow(false);
    }

    /** Runs an animation to its end frame by frame; returns the number of frames it took. */
    int finishAnimation()
    {
        int frames = 0;
        while (document.isAnimating() && frames < 1000)
        {
            document.advanceAnimation();
            ++frames;
        }
        return frames;
    }

    void press(juce::Point<float> p, int clicks = 1) { document.mouseDown(mouseEvent(document, p, clicks)); }
    void drag(juce::Point<float> p, juce::Point<float> down) { document.mouseDrag(mouseEvent(document, p, down)); }
    void release(juce::Point<float> p, juce::Point<float> down, int clicks = 1)
    {
        document.mouseUp(mouseEvent(document, p, down, clicks));
    }
    void click(juce::Point<float> p, int clicks = 1)
    {
        press(p, clicks);
        release(p, p, clicks);
    }

    juce::ScopedJuceInitialiser_GUI gui;
    GenericAppDocument document { nullptr };
    SxRef<SxImageRgbaBytes> image;
};
} // namespace tooltest
