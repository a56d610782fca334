#include "app/GenericAppDocument.h"

#include "imaging/ImageRGBAPixelData.h"
#include "tools/SxTool.h"
#include "ui/Easing.h"

#include <cmath>

namespace
{
// A zoom this close to a step counts as on it: the buttons step from where the view really is
// and not from a rounding error of an animation or a pinch.
constexpr float stepTolerance = 1.0e-3f;
// Wide enough to catch a wheel notch (about 15%) or a slow pinch passing a step, narrow enough
// that the steps never swallow a zoom the user chose between them.
constexpr float snapTolerance = 0.03f;

float snappedToStep(float z)
{
    for (const float step : GenericAppDocument::zoomSteps)
        if (std::abs(z - step) <= step * snapTolerance)
            return step;
    return z;
}
} // namespace

GenericAppDocument::GenericAppDocument(juce::PropertySet* s) : settings(s)
{
    setName("document");
    setOpaque(true);
}

GenericAppDocument::~GenericAppDocument()
{
    stopTimer(zoomAnimationTimer);
    stopTimer(activityTimer);
    if (zoomInButton != nullptr)
        zoomInButton->removeListener(this);
    if (zoomOutButton != nullptr)
        zoomOutButton->removeListener(this);
}

void GenericAppDocument::setImage(SxImageRgbaBytes* newImage)
{
    const bool sizeChanged = newImage == nullptr || image == nullptr || newImage->width != image->width
                             || newImage->height != image->height;
    image = newImage;
    drawable = image != nullptr ? SxImageConversion::toJuceImage(*image) : juce::Image();
    // A press that began on the old picture must not continue on the new one as a gesture.
    if (image == nullptr)
        touches.clear();
    if (fitted && sizeChanged && hasImage())
        fitToWindow(false);
    repaint();
    updateZoomButtons();
}

void GenericAppDocument::imageChanged(juce::Rectangle<int> area)
{
    if (!hasImage() || !drawable.isValid())
        return;
    area = area.getIntersection(image->bounds());
    if (area.isEmpty())
        return;
    SxImageConversion::convertArea(*image, drawable, area);
    repaintImageRegion(area.getX(), area.getY(), area.getRight() - 1, area.getBottom() - 1);
}

//==============================================================================
void GenericAppDocument::fitToWindow(bool animate)
{
    fitted = true;
    if (!hasImage() || getWidth() <= 0 || getHeight() <= 0)
        return;

    const float newZoom = juce::jmin(getWidth() * 0.95f / (float) image->width, getHeight() * 0.95f / (float) image->height);
    moveTo(newZoom, (getWidth() - image->width * newZoom) * 0.5f, (getHeight() - image->height * newZoom) * 0.5f, animate);
}

bool GenericAppDocument::canZoomIn() const
{
    return hasImage() && targetZoom < zoomSteps.back() * (1.0f - stepTolerance);
}

bool GenericAppDocument::canZoomOut() const
{
    return hasImage() && targetZoom > zoomSteps.front() * (1.0f + stepTolerance);
}

void GenericAppDocument::zoomIn()
{
    // Steps count from where an animation will end, so that quick clicks keep stepping.
    for (const float step : zoomSteps)
        if (step > targetZoom * (1.0f + stepTolerance))
        {
            setZoom(step, true);
            return;
        }
}

void GenericAppDocument::zoomOut()
{
    for (auto it = zoomSteps.rbegin(); it != zoomSteps.rend(); ++it)
        if (*it < targetZoom * (1.0f - stepTolerance))
        {
            setZoom(*it, true);
            return;
        }
}

void GenericAppDocument::actualSize()
{
    setZoom(1.0f, true);
}

void GenericAppDocument::setZoom(float newZoom, bool animate, juce::Point<float> about, bool snap)
{
    if (!hasImage() || !std::isfinite(newZoom) || newZoom <= 0.0f)
        return;
    newZoom = juce::jlimit(minZoom, maxZoom, snap ? snappedToStep(newZoom) : newZoom);
    fitted = false;

    // The image point under about is taken where an animation will end, so that a zoom given
    // during an animation is relative to the view the user is heading for.
    const float ix = about.x / targetZoom - targetPanX / targetZoom;
    const float iy = about.y / targetZoom - targetPanY / targetZoom;
    const auto limited = limitPan(about.x - ix * newZoom, about.y - iy * newZoom, newZoom);
    moveTo(newZoom, limited.x, limited.y, animate);
}

juce::Point<float> GenericAppDocument::limitPan(float x, float y, float z) const
{
    if (!hasImage())
        return { x, y };
    auto limitAxis = [](float offset, float viewSize, float imageSize) {
        if (offset >= viewSize - panMargin)
            offset = viewSize - panMargin;
        if (offset + imageSize <= panMargin)
            offset = panMargin - imageSize;
        return offset;
    };
    return { limitAxis(x, (float) getWidth(), image->width * z), limitAxis(y, (float) getHeight(), image->height * z) };
}

void GenericAppDocument::panBy(float dx, float dy)
{
    if (!hasImage())
        return;
    // A pan during an animation would be overwritten by its next frame; it lands where the
    // animation was going.
    if (isAnimating())
    {
        stopTimer(zoomAnimationTimer);
        zoom = targetZoom;
        panX = targetPanX;
        panY = targetPanY;
    }
    fitted = false;
    const auto limited = limitPan(panX + dx, panY + dy, zoom);
    panX = targetPanX = limited.x;
    panY = targetPanY = limited.y;
    repaint();
    zoomSettled();
}

void GenericAppDocument::moveTo(float newZoom, float newPanX, float newPanY, bool animate)
{
    targetZoom = newZoom;
    targetPanX = newPanX;
    targetPanY = newPanY;
    if (animate)
    {
        startZoom = zoom;
        startPanX = panX;
        startPanY = panY;
        animationFrame = 0;
        startTimer(zoomAnimationTimer, 30);
        return;
    }
    stopTimer(zoomAnimationTimer);
    zoom = targetZoom;
    panX = targetPanX;
    panY = targetPanY;
    repaint();
    zoomSettled();
}

void GenericAppDocument::advanceAnimation()
{
    if (!isAnimating())
        return;
    ++animationFrame;
    if (animationFrame >= animationFrames)
    {
        stopTimer(zoomAnimationTimer);
        zoom = targetZoom;
        panX = targetPanX;
        panY = targetPanY;
        repaint();
        zoomSettled();
        return;
    }

    const float s = Easing::sineInOutF((float) animationFrame, 0.0f, 1.0f, (float) animationFrames);
    // The zoom moves by equal ratios, which the eye reads as an even speed. The offsets follow
    // the zoom linearly: the start and end views share one fixed point (the point a zoom was
    // made about; for a fit, wherever the two views agree), and it stays still in every frame.
    zoom = startZoom * std::pow(targetZoom / startZoom, s);
    const float zoomChange = targetZoom - startZoom;
    const float t = std::abs(zoomChange) > 1.0e-6f ? (zoom - startZoom) / zoomChange : s;
    panX = startPanX + (targetPanX - startPanX) * t;
    panY = startPanY + (targetPanY - startPanY) * t;
    repaint();
}

void GenericAppDocument::zoomSettled()
{
    if (tool != nullptr && tool->isToolOn())
        tool->updateCursor();
    updateZoomButtons();
    callZoomListeners();
}

//==============================================================================
juce::Point<float> GenericAppDocument::viewToImage(juce::Point<float> p) const
{
    return { p.x / zoom - panX / zoom, p.y / zoom - panY / zoom };
}

juce::Point<float> GenericAppDocument::imageToView(juce::Point<float> p) const
{
    return { p.x * zoom + panX, p.y * zoom + panY };
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

//==============================================================================
void GenericAppDocument::setTool(SxTool* newTool)
{
    tool = newTool;
    if (tool != nullptr)
        tool->setDocument(this);
    repaint();
}

SxTool* GenericAppDocument::activeTool()
{
    if (tool == nullptr || !tool->isToolOn() || image == nullptr)
        return nullptr;
    tool->setDocument(this);
    return tool;
}

void GenericAppDocument::mouseDown(const juce::MouseEvent& e)
{
    if (mouseInterceptor != nullptr)
    {
        mouseInterceptor->interceptMouseDown(e);
        return;
    }
    touches.pressed(e, e.source.getIndex());
    if (auto* t = activeTool())
        t->documentMouseDown(e);
}

void GenericAppDocument::mouseDrag(const juce::MouseEvent& e)
{
    if (mouseInterceptor != nullptr)
    {
        mouseInterceptor->interceptMouseDrag(e);
        return;
    }
    touches.dragged(e, e.source.getIndex());
    if (auto* t = activeTool())
        t->documentMouseDrag(e);
}

void GenericAppDocument::mouseUp(const juce::MouseEvent& e)
{
    if (mouseInterceptor != nullptr)
    {
        mouseInterceptor->interceptMouseUp(e);
        return;
    }
    // The tool sees the list as it was while the touch was held (see getTouches).
    if (auto* t = activeTool())
        t->documentMouseUp(e);
    touches.released(e.source.getIndex());
}

void GenericAppDocument::mouseMove(const juce::MouseEvent& e)
{
    if (mouseInterceptor != nullptr)
        mouseInterceptor->interceptMouseMove(e);
    else if (auto* t = activeTool())
        t->documentMouseMove(e);
}

void GenericAppDocument::mouseEnter(const juce::MouseEvent& e)
{
    if (mouseInterceptor != nullptr)
        mouseInterceptor->interceptMouseEnter(e);
    else if (auto* t = activeTool())
        t->documentMouseEnter(e);
}

void GenericAppDocument::mouseExit(const juce::MouseEvent& e)
{
    if (mouseInterceptor != nullptr)
        mouseInterceptor->interceptMouseExit(e);
    else if (auto* t = activeTool())
        t->documentMouseExit(e);
}

void GenericAppDocument::mouseWheelMove(const juce::MouseEvent& e, const juce::MouseWheelDetails& wheel)
{
    if (!hasImage() || wheel.deltaY == 0.0f)
        return;
    // One notch of a common wheel reports about 0.2 and zooms by about 15%; the snap lets the
    // wheel stop on 100% on its way.
    const float delta = wheel.isReversed ? -wheel.deltaY : wheel.deltaY;
    setZoom(targetZoom * std::pow(2.0f, delta), false, e.position, true);
}

void GenericAppDocument::mouseMagnify(const juce::MouseEvent& e, float scaleFactor)
{
    if (!hasImage())
        return;
    setZoom(targetZoom * scaleFactor, false, e.position);
}

//==============================================================================
void GenericAppDocument::setRenderingFull(bool rendering)
{
    if (renderingFull == rendering)
        return;
    renderingFull = rendering;
    repaint();
}

void GenericAppDocument::setShowActivity(bool show, const juce::String& text)
{
    const auto oldPanel = activityPanelBounds();
    showActivity = show;
    activityText = text.isNotEmpty() ? text : juce::String("Rendering...");
    if (show)
    {
        if (!isTimerRunning(activityTimer))
            startTimer(activityTimer, 40);
    }
    else
    {
        stopTimer(activityTimer);
    }
    repaint(oldPanel.getUnion(activityPanelBounds()));
}

juce::Rectangle<int> GenericAppDocument::activityPanelBounds() const
{
    return getLocalBounds().withSizeKeepingCentre(170, 44);
}

//==============================================================================
void GenericAppDocument::setZoomButtons(juce::Button* newZoomIn, juce::Button* newZoomOut)
{
    for (auto* old : { zoomInButton.getComponent(), zoomOutButton.getComponent() })
        if (old != nullptr)
            old->removeListener(this);
    zoomInButton = newZoomIn;
    zoomOutButton = newZoomOut;
    for (auto* button : { newZoomIn, newZoomOut })
        if (button != nullptr)
            button->addListener(this);
    updateZoomButtons();
}

void GenericAppDocument::updateZoomButtons()
{
    if (zoomInButton != nullptr)
        zoomInButton->setEnabled(canZoomIn());
    if (zoomOutButton != nullptr)
        zoomOutButton->setEnabled(canZoomOut());
}

void GenericAppDocument::buttonClicked(juce::Button* button)
{
    if (button == zoomInButton.getComponent())
        zoomIn();
    else if (button == zoomOutButton.getComponent())
        zoomOut();
}

//==============================================================================
void GenericAppDocument::paint(juce::Graphics& g)
{
    // A translucent setting would let whatever was drawn last show through an opaque component.
    g.fillAll(juce::Colours::black);
    g.fillAll(backgroundColour());

    // The tool draws nothing while the picture under it is being replaced.
    SxTool* paintingTool = tool != nullptr && tool->isToolOn() && !renderingFull ? tool : nullptr;
    if (paintingTool != nullptr)
        paintingTool->paintBeforeImage(g);

    if (drawable.isValid())
    {
        g.setImageResamplingQuality(zoom < 1.0f ? juce::Graphics::highResamplingQuality : juce::Graphics::mediumResamplingQuality);
        g.drawImageTransformed(drawable, juce::AffineTransform::scale(zoom).translated(panX, panY));
    }

    if (paintingTool != nullptr)
        paintingTool->paintOverImage(g, imageBounds());

    if (showActivity)
    {
        const auto panel = activityPanelBounds().toFloat();
        g.setColour(juce::Colours::black.withAlpha(0.7f));
        g.fillRoundedRectangle(panel, 8.0f);

        // A three-quarter ring turning once a second or so.
        const auto ring = panel.withWidth(panel.getHeight()).reduced(12.0f).translated(4.0f, 0.0f);
        juce::Path arc;
        arc.addCentredArc(ring.getCentreX(), ring.getCentreY(), ring.getWidth() * 0.5f, ring.getHeight() * 0.5f,
                          spinnerAngle, 0.0f, juce::MathConstants<float>::pi * 1.5f, true);
        g.setColour(juce::Colours::white);
        g.strokePath(arc, juce::PathStrokeType(2.5f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded));

        g.setFont(15.0f);
        g.drawText(activityText, panel.withTrimmedLeft(panel.getHeight() + 4.0f).withTrimmedRight(8.0f),
                   juce::Justification::centredLeft, true);
    }
}

void GenericAppDocument::resized()
{
    const int oldWidth = lastWidth;
    const int oldHeight = lastHeight;
    lastWidth = getWidth();
    lastHeight = getHeight();

    if (fitted)
    {
        fitToWindow(false);
        return;
    }
    // A zoomed view keeps the image point at its centre where it was, so a window resize does
    // not drift the detail the user is looking at.
    if (hasImage() && oldWidth > 0 && oldHeight > 0)
    {
        const float dx = (getWidth() - oldWidth) * 0.5f;
        const float dy = (getHeight() - oldHeight) * 0.5f;
        panX += dx;
        panY += dy;
        targetPanX += dx;
        targetPanY += dy;
        startPanX += dx;
        startPanY += dy;
        repaint();
    }
}

void GenericAppDocument::timerCallback(int timerID)
{
    if (timerID == zoomAnimationTimer)
    {
        advanceAnimation();
    }
    else if (timerID == activityTimer)
    {
        spinnerAngle = std::fmod(spinnerAngle + 0.35f, juce::MathConstants<float>::twoPi);
        repaint(activityPanelBounds());
    }
}
