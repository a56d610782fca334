#pragma once
// The bottom of the stack: the source picture itself. It renders nothing and copies nothing;
// its result is the picture the application owns, plus a coverage mask of the same size.

#include "document/Layer.h"

class StaticImageLayer : public Layer
{
public:
    StaticImageLayer() = default;
    explicit StaticImageLayer(SxImageRgbaBytes* picture) : image(picture) {}
    ~StaticImageLayer() override;

    Layer* createInstance() const override { return new StaticImageLayer(); }
    juce::String getClassName() const override { return "StaticImageLayer"; }

    /** The picture is owned by the application; the layer only points at it. */
    void setImage(SxImageRgbaBytes* picture);
    SxImageRgbaBytes* getImage() const { return image; }

    /** All zeros outside the last render region; null until the first render. */
    SxImageAlphaByte* getMask() const { return mask; }

    /** Returns the picture itself, after making the mask match its size and clearing the mask
        inside the render region. */
    SxImageRgbaBytes* getRenderedImage(LayerRenderParameters& parameters) override;

private:
    SxImageRgbaBytes* image = nullptr;
    SxImageAlphaByte* mask = nullptr;
};
