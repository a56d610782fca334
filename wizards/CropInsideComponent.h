#pragma once
// The crop frame over the picture: a rectangle the user drags by its corners or moves whole,
// free or held to a shape, always inside the picture. It works in view pixels and converts to
// picture pixels only when asked, so that it needs nothing of the document but where the
// picture lies.

#include "ui/ComponentMapEntries.h"
#include "ui/SxComponent.h"

class CropInsideComponent : public SxComponent, public ComponentMapEntries
{
public:
    enum DragMode
    {
        dragNone = 0,
        dragTopLeft = 1,
        dragTopRight = 2,
        dragBottomLeft = 3,
        dragBottomRight = 4,
        dragInside = 5
    };

    /** A press this close to a corner (view pixels, inclusive) takes the corner. */
    static constexpr float cornerReach = 20.0f;
    /** A corner drag keeps its side this far from the opposite one. */
    static constexpr float minimumSide = 20.0f;
    /** Extra repaint around a moved frame, for the grips drawn outside it. */
    static constexpr int repaintMargin = 45;

    CropInsideComponent();

    /** Where the picture lies in this component. The frame keeps its place on the picture when
        the picture moves or is scaled (the view was resized); the first call frames the whole
        picture. */
    void setImageBounds(juce::Rectangle<float> bounds);
    juce::Rectangle<float> getImageBounds() const { return imageBounds; }

    /** Width over height of the shape: the picture's own for the free mode, which nothing
        constrains. */
    float getAspectRatio() const;
    /** 0 free, 1 square (2..6 are fixed photo shapes no control offers yet). A fixed shape
        restarts the frame centred, spanning 0.1 to 0.9 of the picture along the axis it fills. */
    void setAspectMode(int mode);
    int getAspectMode() const { return aspectMode; }

    /** The frame in picture pixels, for a picture whose whole is imageRect. Width and height are
        each rounded once from the frame's size, so a square frame gives a square cut. */
    juce::Rectangle<int> getCropRect(juce::Rectangle<int> imageRect) const;
    /** The inverse: shows rect, given in picture pixels of imageRect. */
    void setCropRect(juce::Rectangle<int> rect, juce::Rectangle<int> imageRect);

    /** The size held to the shape: the larger side (measured against the ratio) is set from the
        smaller. The free mode leaves it as it is. */
    juce::Point<float> constrainSize(juce::Point<float> size) const;

    /** The frame in view pixels. */
    juce::Rectangle<float> getViewCropRect() const { return cropRect; }
    int getDragMode() const { return dragMode; }

    juce::String componentMapEntries() const override;

    void paint(juce::Graphics& g) override;
    void resized() override;
    void mouseDown(const juce::MouseEvent& e) override;
    void mouseDrag(const juce::MouseEvent& e) override;
    void mouseUp(const juce::MouseEvent& e) override;
    /** The view does not zoom under an open frame: its drags are the frame's. */
    void mouseWheelMove(const juce::MouseEvent&, const juce::MouseWheelDetails&) override {}

private:
    /** The mode a press at p starts: corners by distance in the order of DragMode, then inside. */
    int hitTest(juce::Point<float> p) const;
    void dragCorner(juce::Point<float> p);
    void setFrame(juce::Rectangle<float> frame);
    juce::Point<float> corner(int mode) const;

    juce::Rectangle<float> imageBounds;
    juce::Rectangle<float> cropRect;
    int dragMode = dragNone;
    int aspectMode = 0;
    juce::Rectangle<float> frameAtPress;
    juce::Point<float> pressPoint;
};
