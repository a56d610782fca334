#include "wizards/CropInsideComponent.h"

#include <cmath>

CropInsideComponent::CropInsideComponent() : SxComponent("cropInsideComponent")
{
    setRepaintsOnMouseActivity(false);
}

void CropInsideComponent::setImageBounds(juce::Rectangle<float> bounds)
{
    if (bounds.isEmpty())
        return;
    if (imageBounds.isEmpty() || cropRect.isEmpty())
    {
        imageBounds = bounds;
        cropRect = bounds;
    }
    else
    {
        // Keep the frame on the same part of the picture.
        const float sx = bounds.getWidth() / imageBounds.getWidth();
        const float sy = bounds.getHeight() / imageBounds.getHeight();
        cropRect = { bounds.getX() + (cropRect.getX() - imageBounds.getX()) * sx,
                     bounds.getY() + (cropRect.getY() - imageBounds.getY()) * sy, cropRect.getWidth() * sx,
                     cropRect.getHeight() * sy };
        imageBounds = bounds;
        cropRect = cropRect.getIntersection(imageBounds);
    }
    repaint();
}

float CropInsideComponent::getAspectRatio() const
{
    switch (aspectMode)
    {
        case 1: return 1.0f;
        case 2: return 0.6666667f;
        case 3: return 1.5f;
        case 4: return 0.75f;
        case 5: return 1.25f;
        case 6: return 1.777777f;
        default: return imageBounds.getHeight() > 0.0f ? imageBounds.getWidth() / imageBounds.getHeight() : 1.0f;
    }
}

void CropInsideComponent::setAspectMode(int mode)
{
    aspectMode = juce::jlimit(0, 6, mode);
    if (aspectMode == 0 || imageBounds.isEmpty())
        return;
    const float ratio = getAspectRatio();
    const float pictureRatio = imageBounds.getWidth() / imageBounds.getHeight();
    float w, h;
    if (ratio >= pictureRatio)
    {
        w = imageBounds.getWidth() * 0.8f;
        h = w / ratio;
    }
    else
    {
        h = imageBounds.getHeight() * 0.8f;
        w = h * ratio;
    }
    setFrame(juce::Rectangle<float>(w, h).withCentre(imageBounds.getCentre()));
}

juce::Point<float> CropInsideComponent::constrainSize(juce::Point<float> size) const
{
    if (aspectMode == 0 || size.x <= 0.0f || size.y <= 0.0f)
        return size;
    const float ratio = getAspectRatio();
    if (size.x > size.y * ratio)
        size.x = size.y * ratio;
    else
        size.y = size.x / ratio;
    return size;
}

juce::Rectangle<int> CropInsideComponent::getCropRect(juce::Rectangle<int> imageRect) const
{
    if (imageBounds.isEmpty() || imageRect.isEmpty())
        return {};
    const float scale = imageBounds.getWidth() / (float) imageRect.getWidth();
    const int x = juce::roundToInt((cropRect.getX() - imageBounds.getX()) / scale);
    const int y = juce::roundToInt((cropRect.getY() - imageBounds.getY()) / scale);
    const int w = juce::roundToInt(cropRect.getWidth() / scale);
    const int h = juce::roundToInt(cropRect.getHeight() / scale);
    return { imageRect.getX() + x, imageRect.getY() + y, w, h };
}

void CropInsideComponent::setCropRect(juce::Rectangle<int> rect, juce::Rectangle<int> imageRect)
{
    if (imageBounds.isEmpty() || imageRect.isEmpty() || rect.isEmpty())
        return;
    const float scale = imageBounds.getWidth() / (float) imageRect.getWidth();
    setFrame(juce::Rectangle<float>(imageBounds.getX() + (rect.getX() - imageRect.getX()) * scale,
                                    imageBounds.getY() + (rect.getY() - imageRect.getY()) * scale, rect.getWidth() * scale,
                                    rect.getHeight() * scale)
                 .getIntersection(imageBounds));
}

juce::Point<float> CropInsideComponent::corner(int mode) const
{
    switch (mode)
    {
        case dragTopLeft: return cropRect.getTopLeft();
        case dragTopRight: return cropRect.getTopRight();
        case dragBottomLeft: return cropRect.getBottomLeft();
        default: return cropRect.getBottomRight();
    }
}

int CropInsideComponent::hitTest(juce::Point<float> p) const
{
    for (int mode = dragTopLeft; mode <= dragBottomRight; ++mode)
        if (p.getDistanceFrom(corner(mode)) <= cornerReach)
            return mode;
    return cropRect.contains(p) ? dragInside : dragNone;
}

void CropInsideComponent::setFrame(juce::Rectangle<float> frame)
{
    const auto old = cropRect;
    cropRect = frame;
    // Only the frame's neighbourhood changes: the shade outside it is the same elsewhere.
    repaint(old.getUnion(frame).getSmallestIntegerContainer().expanded(repaintMargin));
}

void CropInsideComponent::dragCorner(juce::Point<float> p)
{
    p = imageBounds.getConstrainedPoint(p);
    const bool left = dragMode == dragTopLeft || dragMode == dragBottomLeft;
    const bool top = dragMode == dragTopLeft || dragMode == dragTopRight;
    // The opposite corner stays; the moved sides keep their distance from it.
    const float fixedX = left ? cropRect.getRight() : cropRect.getX();
    const float fixedY = top ? cropRect.getBottom() : cropRect.getY();
    const float x = left ? juce::jmin(p.x, fixedX - minimumSide) : juce::jmax(p.x, fixedX + minimumSide);
    const float y = top ? juce::jmin(p.y, fixedY - minimumSide) : juce::jmax(p.y, fixedY + minimumSide);
    auto size = constrainSize({ std::abs(x - fixedX), std::abs(y - fixedY) });
    // A frame smaller than the picture allows near its edge still fits: clamp the size too.
    size.x = juce::jmin(size.x, left ? fixedX - imageBounds.getX() : imageBounds.getRight() - fixedX);
    size.y = juce::jmin(size.y, top ? fixedY - imageBounds.getY() : imageBounds.getBottom() - fixedY);
    size = constrainSize(size);
    setFrame({ left ? fixedX - size.x : fixedX, top ? fixedY - size.y : fixedY, size.x, size.y });
}

void CropInsideComponent::mouseDown(const juce::MouseEvent& e)
{
    pressPoint = e.position;
    frameAtPress = cropRect;
    dragMode = hitTest(e.position);
    repaint();
}

void CropInsideComponent::mouseDrag(const juce::MouseEvent& e)
{
    if (dragMode == dragInside)
    {
        auto moved = frameAtPress + (e.position - pressPoint);
        moved.setX(juce::jlimit(imageBounds.getX(), imageBounds.getRight() - moved.getWidth(), moved.getX()));
        moved.setY(juce::jlimit(imageBounds.getY(), imageBounds.getBottom() - moved.getHeight(), moved.getY()));
        setFrame(moved);
    }
    else if (dragMode != dragNone)
        dragCorner(e.position);
}

void CropInsideComponent::mouseUp(const juce::MouseEvent&)
{
    dragMode = dragNone;
    repaint();
}

void CropInsideComponent::resized()
{
    repaint();
}

void CropInsideComponent::paint(juce::Graphics& g)
{
    if (cropRect.isEmpty())
        return;
    juce::RectangleList<float> shade(getLocalBounds().toFloat());
    shade.subtract(cropRect);
    g.setColour(juce::Colours::black.withAlpha(0.6f));
    g.fillRectList(shade);

    g.setColour(juce::Colours::white.withAlpha(0.9f));
    g.drawRect(cropRect, 1.5f);
    // Thirds help place a subject; they are faint so the frame itself stays the main line.
    g.setColour(juce::Colours::white.withAlpha(0.3f));
    for (int i = 1; i < 3; ++i)
    {
        g.drawVerticalLine(juce::roundToInt(cropRect.getX() + cropRect.getWidth() * i / 3.0f), cropRect.getY(), cropRect.getBottom());
        g.drawHorizontalLine(juce::roundToInt(cropRect.getY() + cropRect.getHeight() * i / 3.0f), cropRect.getX(), cropRect.getRight());
    }
    for (int mode = dragTopLeft; mode <= dragBottomRight; ++mode)
    {
        const auto grip = juce::Rectangle<float>(14.0f, 14.0f).withCentre(corner(mode));
        g.setColour(mode == dragMode ? juce::Colour(0xff4da3ff) : juce::Colours::white);
        g.fillEllipse(grip);
        g.setColour(juce::Colours::black.withAlpha(0.7f));
        g.drawEllipse(grip, 1.0f);
    }
}

juce::String CropInsideComponent::componentMapEntries() const
{
    juce::String text;
    const auto origin = getScreenPosition().toFloat();
    const auto r = (cropRect + origin).toNearestInt();
    text << "cropFrame " << r.getX() << ' ' << r.getY() << ' ' << r.getWidth() << ' ' << r.getHeight() << '\n';
    static const char* const names[] = { "cropTopLeft", "cropTopRight", "cropBottomLeft", "cropBottomRight" };
    for (int mode = dragTopLeft; mode <= dragBottomRight; ++mode)
    {
        // A box of odd size centred on the corner: its centre is the corner itself.
        const auto c = (corner(mode) + origin).toInt();
        text << names[mode - 1] << ' ' << c.x - 5 << ' ' << c.y - 5 << " 11 11\n";
    }
    return text;
}
