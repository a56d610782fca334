#include "tools/SxBrushTool.h"

#include "tools/SxToolDocument.h"

#include <cmath>

namespace
{
constexpr float absent = -1000.0f;

float pressureOf(const juce::MouseEvent& e)
{
    // A plain mouse has no pressure to report; it presses fully.
    return e.isPressureValid() ? e.pressure : 1.0f;
}
} // namespace

SxBrushTool::SxBrushTool(const juce::String& name, int brushMode) : SxTool(name), mBrushMode(brushMode)
{
    setIconPath(brushIcon(brushMode == 1));
    rebuildBrush((float) (int) size, mOpacity);
}

SxBrushTool::~SxBrushTool() = default;

void SxBrushTool::rebuildBrush(float diameter, float opacity)
{
    brush = std::make_unique<SxBrush>(diameter, mSoftness, opacity);
    brush->regenerate();
}

void SxBrushTool::setBrushSize(float newSize)
{
    const float old = size;
    size = newSize;
    rebuildBrush((float) (int) size, mOpacity);
    if (mToolIsOn && mDocument != nullptr)
    {
        updateCursor();
        if (mCursorPosition.x != absent)
        {
            // The old ring may be the bigger one.
            const int half = (int) std::ceil((juce::jmax(old, size) * 0.5f + 1.0f) * mDocument->getZoom());
            mDocument->repaint((int) mCursorPosition.x - half, (int) mCursorPosition.y - half, 2 * half + 1, 2 * half + 1);
        }
    }
}

void SxBrushTool::setOpacity(float newOpacity)
{
    mOpacity = newOpacity;
    rebuildBrush((float) (int) size, mOpacity);
    if (mToolIsOn)
        updateCursor();
}

void SxBrushTool::setSoftness(float newSoftness)
{
    mSoftness = newSoftness;
    rebuildBrush((float) (int) size, mOpacity);
    if (mToolIsOn)
        updateCursor();
}

void SxBrushTool::setToolOn(bool on)
{
    SxTool::setToolOn(on);
    updateCursor();
}

//==============================================================================
void SxBrushTool::updateCursor()
{
    if (mDocument == nullptr || !mToolIsOn)
        return;
    const float zoom = mDocument->getZoom();
    // The ring shows the part of the brush that paints at full strength or near it.
    const float s = juce::jlimit(0.0f, 0.15f, mSoftness * 0.15f);
    const float r = (float) (int) ((1.0f - s) * size);
    const float d = r + r;
    const int side = juce::jmax(1, (int) (d * zoom));
    cursorImage = juce::Image(juce::Image::ARGB, side, side, true);
    if (d * zoom - 6.0f > 0.0f)
    {
        juce::Graphics g(cursorImage);
        juce::Path ring;
        ring.addEllipse(3.0f, 3.0f, d * zoom - 6.0f, d * zoom - 6.0f);
        g.setColour(juce::Colour(0x64000000));
        juce::Path outline;
        juce::PathStrokeType(4.0f).createStrokedPath(outline, ring);
        g.fillPath(outline);
        outline.clear();
        g.setColour(juce::Colour(0xffffffff));
        juce::PathStrokeType(2.0f).createStrokedPath(outline, ring);
        g.fillPath(outline);
    }
    // The tool draws all that the user sees of the pointer.
    mDocument->setMouseCursor(juce::MouseCursor::NoCursor);
}

juce::Rectangle<int> SxBrushTool::cursorArea(juce::Point<float> at) const
{
    const int k = (int) (cursorImage.getWidth() * 0.25f + 1.0f);
    return { (int) at.x - k, (int) at.y - k, 3 * k + 1, 3 * k + 1 };
}

void SxBrushTool::moveCursor(juce::Point<float> to)
{
    if (mDocument != nullptr)
    {
        auto area = cursorArea(to);
        if (mCursorPosition.x != absent)
            area = area.getUnion(cursorArea(mCursorPosition));
        mDocument->repaint(area);
    }
    mCursorPosition = to;
}

void SxBrushTool::paintOverImage(juce::Graphics& g, juce::Rectangle<float> imageArea)
{
    auto* mask = callback != nullptr ? callback->getBrushMask() : nullptr;
    if (mask != nullptr && !mHideMaskOverlay && mMouseIsDown && mask->width > 0 && mask->height > 0
        && g.clipRegionIntersects(imageArea.getSmallestIntegerContainer()))
    {
        // The mask seen directly: opaque red where it is full.
        juce::Image red(juce::Image::ARGB, mask->width, mask->height, true);
        {
            juce::Image::BitmapData data(red, juce::Image::BitmapData::writeOnly);
            for (int y = 0; y < mask->height; ++y)
                for (int x = 0; x < mask->width; ++x)
                {
                    const auto a = *mask->pixelAt(x, y);
                    *reinterpret_cast<juce::PixelARGB*>(data.getPixelPointer(x, y)) = juce::PixelARGB(a, a, 0, 0);
                }
        }
        const float zoom = mDocument != nullptr ? mDocument->getZoom() : 1.0f;
        g.drawImageTransformed(red, juce::AffineTransform::scale(zoom).translated(imageArea.getX(), imageArea.getY()));
    }

    if (cursorImage.isValid() && mCursorPosition.x != absent)
    {
        const float q = cursorImage.getWidth() * 0.25f;
        g.drawImage(cursorImage, (int) (mCursorPosition.x - q), (int) (mCursorPosition.y - q), (int) (2.0f * q), (int) (2.0f * q), 0,
                    0, cursorImage.getWidth(), cursorImage.getHeight());
    }
}

//==============================================================================
SxBrushPoint SxBrushTool::pointFor(const juce::MouseEvent& e)
{
    const float zoom = mDocument->getZoom();
    SxBrushPoint in;
    in.x = (float) e.x / zoom - mDocument->getPanX() / zoom;
    in.y = (float) e.y / zoom - mDocument->getPanY() / zoom;
    SxBrushPoint out = in;
    if (callback != nullptr)
        callback->mapBrushPoint(out, in);
    return out;
}

void SxBrushTool::stamp(const SxBrushPoint& p, float pressure)
{
    auto* mask = callback != nullptr ? callback->getBrushMask() : nullptr;
    if (mask == nullptr)
        return;
    if (mBrushMode == 1)
        mask->paintOnDab(p, *brush, SxBrush::paintOnStrength(mOpacity, pressure));
    else
        mask->paintOffDab(p, SxBrush::paintOffOpacityByte(mOpacity, pressure), *brush, 1.0f);
}

LayerRect SxBrushTool::boxOf(const SxBrushPoint& p)
{
    const int h = brush->dabWidth() / 2 + 1;
    return LayerRect::of(p.x - (float) h, p.y - (float) h, p.x + (float) h, p.y + (float) h);
}

void SxBrushTool::report(const LayerRect& box)
{
    if (owner != nullptr)
        owner->repaintImageRect(box);
}

void SxBrushTool::documentMouseDown(const juce::MouseEvent& e)
{
    if (mDocument == nullptr)
        return;
    const auto touches = mDocument->getTouches();
    if (touches.size() == 2)
    {
        mMultiTouch = true;
        gestureStart(e);
        return;
    }
    if (touches.size() != 1 || mMultiTouch)
        return;

    mMouseIsDown = true;
    mDragged = false;
    if (mScaleWithZoom)
    {
        const float d = (float) (int) (size / mDocument->getZoom());
        if (d != brush->getDiameter())
            rebuildBrush(d, mOpacity * pressureOf(e));
    }
    const auto p = pointFor(e);
    mLastPoint = p;
    stamp(p, pressureOf(e));
    mDirtyRect = boxOf(p);
    report(mDirtyRect);
}

void SxBrushTool::documentMouseDrag(const juce::MouseEvent& e)
{
    if (mDocument == nullptr)
        return;
    const auto touches = mDocument->getTouches();
    if (touches.size() == 2)
    {
        gestureStep(e);
        return;
    }
    if (touches.size() != 1 || mMultiTouch)
        return;

    moveCursor(e.position);
    const auto p = pointFor(e);
    const float dx = p.x - mLastPoint.x, dy = p.y - mLastPoint.y;
    const float dist = std::sqrt(dx * dx + dy * dy);
    const float w = (float) brush->dabWidth();
    const float spacing = callback != nullptr ? callback->dabSpacing(w) : w / 5.0f;
    // Slow movement builds up until it passes the spacing.
    if (dist < spacing || spacing <= 0.0f)
        return;

    const int n = (int) (dist / spacing);
    const float pressure = pressureOf(e);
    auto box = boxOf(p);
    for (int i = 1; i <= n; ++i)
    {
        SxBrushPoint dab = mLastPoint;
        dab.x = mLastPoint.x + dx * (1.0f / dist) * spacing * (float) i;
        dab.y = mLastPoint.y + dy * (1.0f / dist) * spacing * (float) i;
        dab.strength = 1.0f;
        stamp(dab, pressure);
        box.add(boxOf(dab));
    }
    if (n == 0)
        stamp(p, pressure);
    // The anchor jumps to the event: what is left of the distance after the last dab is dropped.
    mLastPoint = p;
    mDirtyRect.add(box);
    mDragged = true;
    report(box);
}

void SxBrushTool::documentMouseUp(const juce::MouseEvent& e)
{
    mMouseIsDown = false;
    if (mDocument == nullptr)
        return;
    // The released touch is still listed while its release is handled.
    const auto remaining = (int) mDocument->getTouches().size() - 1;
    if (remaining <= 0 && !mMultiTouch)
    {
        if (!mDragged)
        {
            // A click lays a second dab on the first.
            const auto p = pointFor(e);
            mLastPoint = p;
            stamp(p, pressureOf(e));
            const auto box = boxOf(p);
            mDirtyRect.add(box);
            report(box);
        }
        if (callback != nullptr)
            callback->strokeFinished(this);
        mMultiTouch = false;
    }
    else if (remaining == 1)
        gestureEnd(e);
    else
        mMultiTouch = false; // the gesture's last finger leaves no dab
}

void SxBrushTool::documentMouseMove(const juce::MouseEvent& e)
{
    moveCursor(e.position);
}

void SxBrushTool::documentMouseEnter(const juce::MouseEvent&)
{
    if (mDocument != nullptr)
        mDocument->setMouseCursor(juce::MouseCursor::NoCursor);
}

void SxBrushTool::documentMouseExit(const juce::MouseEvent&)
{
    if (mDocument != nullptr)
    {
        if (mCursorPosition.x != absent)
            mDocument->repaint(cursorArea(mCursorPosition));
        mDocument->setMouseCursor(juce::MouseCursor::NormalCursor);
    }
    mCursorPosition = { absent, absent };
}

juce::Path SxBrushTool::brushIcon(bool restores)
{
    // A round brush tip on a slanted handle; the restoring brush carries a plus, the removing
    // one a minus.
    juce::Path p;
    p.addEllipse(2.0f, 12.0f, 9.0f, 9.0f);
    juce::Path handle;
    handle.addRoundedRectangle(0.0f, 0.0f, 3.5f, 14.0f, 1.5f);
    p.addPath(handle, juce::AffineTransform::rotation(juce::MathConstants<float>::pi * 0.25f).translated(17.0f, 1.0f));
    p.addRectangle(13.0f, 18.5f, 9.0f, 2.0f);
    if (restores)
        p.addRectangle(16.5f, 15.0f, 2.0f, 9.0f);
    p.addRectangle(0.0f, 0.0f, 0.01f, 0.01f); // keeps the icon's frame square from (0, 0)
    return p;
}
