#include "app/GenericAppDocument.h"

#include "imaging/ImageRGBAPixelData.h"

#include <cmath>

GenericAppDocument::GenericAppDocument(juce::PropertySet* s) : juce::Component("document"), settings(s)
{
    setOpaque(true);
}

GenericAppDocument::~GenericAppDocument()
{
    stopTimer(zoomAnimationTimer);
}

void GenericAppDocument::setImage(SxImageRgbaBytes* newImage)
{
    image = newImage;
    drawable = image != nullptr ? SxImageConversion::toJuceImage(*image) : juce::Image();
    repaint();
}

void GenericAppDocument::fitToWindow(bool animate)
{
    fitted = true;
    if (image == nullptr || image->width <= 0 || image->height <= 0 || getWidth() <= 0 || getHeight() <= 0)
        return;

    const float newZoom = juce::jmin(getWidth() * 0.95f / (float) image->width, getHeight() * 0.95f / (float) image->height);
    targetZoom = newZoom;
    targetPanX = (getWidth() - image->width * newZoom) * 0.5f;
    targetPanY = (getHeight() - image->height * newZoom) * 0.5f;

    if (animate)
    {
        startTimer(zoomAnimationTimer, 30);
        return;
    }
    stopTimer(zoomAnimationTimer);
    zoom = targetZoom;
    panX = targetPanX;
    panY = targetPanY;
    repaint();
}

juce::Rectangle<float> GenericAppDocument::imageBounds() const
{
    if (image == nullptr)
        return {};
    return { panX, panY, image->width * zoom, image->height * zoom };
}

void GenericAppDocument::repaintImageRegion(int x, int y, int x2, int y2)
{
    const int left = (int) std::floor(x * zoom + panX);
    const int top = (int) std::floor(y * zoom + panY);
    const int right = (int) std::ceil((x2 + 1) * zoom + panX);
    const int bottom = (int) std::ceil((y2 + 1) * zoom + panY);
    repaint(left, top, right - left, bottom - top);
}

juce::Colour GenericAppDocument::backgroundColour() const
{
    if (settings == nullptr || !settings->containsKey("backgroundColor.red"))
        return juce::Colour::fromFloatRGBA(0.17f, 0.17f, 0.18f, 1.0f);
    auto channel = [this](const char* key, double fallback) {
        return (float) juce::jlimit(0.0, 1.0, settings->getDoubleValue(key, fallback));
    };
    return juce::Colour::fromFloatRGBA(channel("backgroundColor.red", 0.0), channel("backgroundColor.green", 0.0),
                                       channel("backgroundColor.blue", 0.0), channel("backgroundColor.alpha", 1.0));
}

void GenericAppDocument::paint(juce::Graphics& g)
{
    // A translucent setting would let whatever was drawn last show through an opaque component.
    g.fillAll(juce::Colours::black);
    g.fillAll(backgroundColour());
    if (!drawable.isValid())
        return;

    g.setImageResamplingQuality(zoom < 1.0f ? juce::Graphics::highResamplingQuality : juce::Graphics::mediumResamplingQuality);
    g.drawImageTransformed(drawable, juce::AffineTransform::scale(zoom).translated(panX, panY));
}

void GenericAppDocument::resized()
{
    // Until the user zooms (a later tool), a new size keeps the picture fitted.
    if (fitted)
        fitToWindow(false);
}

void GenericAppDocument::timerCallback(int timerID)
{
    if (timerID != zoomAnimationTimer)
        return;

    // Each tick covers a third of what is left, so the motion slows into place.
    zoom += (targetZoom - zoom) / 3.0f;
    panX += (targetPanX - panX) / 3.0f;
    panY += (targetPanY - panY) / 3.0f;
    if (std::abs(targetZoom - zoom) < 0.001f && std::abs(targetPanX - panX) < 0.5f && std::abs(targetPanY - panY) < 0.5f)
    {
        stopTimer(zoomAnimationTimer);
        zoom = targetZoom;
        panX = targetPanX;
        panY = targetPanY;
    }
    repaint();
}
