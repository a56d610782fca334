#include "tools/SxPanTool.h"

#include "tools/SxToolDocument.h"

#include <cmath>

SxPanTool::SxPanTool(const juce::String& name) : SxTool(name)
{
    setIconPath(handIcon());
    setTooltip("Use this to move the image within the app.");
}

void SxPanTool::updateCursor()
{
    if (mDocument != nullptr)
        mDocument->setMouseCursor(juce::MouseCursor::DraggingHandCursor);
}

void SxPanTool::documentMouseDown(const juce::MouseEvent& e)
{
    anchor = {};
    if (mDocument == nullptr)
        return;
    const auto touches = mDocument->getTouches();
    if (touches.size() == 2)
    {
        anchor = { (touches[0].x + touches[1].x) / 2, (touches[0].y + touches[1].y) / 2 };
        pinchDistance = touches[0].getMouseDownPosition().getDistanceFrom(touches[1].getMouseDownPosition());
    }
    else if (touches.size() == 1 && allowSingleFinger)
    {
        anchor = { e.x, e.y };
    }
}

void SxPanTool::documentMouseDrag(const juce::MouseEvent& e)
{
    if (mDocument == nullptr || anchor.x == 0 || anchor.y == 0)
        return;
    const auto touches = mDocument->getTouches();

    juce::Point<int> position;
    const auto fromDown = e.position - e.mouseDownPosition;
    if (allowSingleFinger && touches.size() == 1
        && (moved || (int) std::trunc(std::hypot(fromDown.x, fromDown.y)) >= dragThreshold))
    {
        moved = true;
        position = { e.x, e.y };
    }
    else if (touches.size() == 2 && e.source.getIndex() == 0)
    {
        const float d = touches[0].position.getDistanceFrom(touches[1].position);
        if (pinchDistance > 0.0f)
        {
            const float newZoom = juce::jlimit(SxToolDocument::minZoom, SxToolDocument::maxZoom,
                                               d / pinchDistance * mDocument->getZoom());
            mDocument->setZoom(newZoom, false, anchor.toFloat());
        }
        pinchDistance = d;
        position = { (touches[0].x + touches[1].x) / 2, (touches[0].y + touches[1].y) / 2 };
    }
    else
    {
        return;
    }

    // Past the threshold the whole way from the anchor is applied at once, so the image jumps
    // to where it would be had it followed the pointer from the press.
    mDocument->panBy((float) (position.x - anchor.x), (float) (position.y - anchor.y));
    anchor = position;
}

void SxPanTool::documentMouseUp(const juce::MouseEvent& e)
{
    const auto* image = mDocument != nullptr ? mDocument->getImage() : nullptr;
    if (image != nullptr && image->width > 0 && image->height > 0)
    {
        const float fit = juce::jmin(mDocument->getHeight() * fitFraction / (float) image->height,
                                     mDocument->getWidth() * fitFraction / (float) image->width);
        const float zoom = mDocument->getZoom();
        if (e.getNumberOfClicks() < 2)
        {
            if (anchor.x != 0 && anchor.y != 0 && mDocument->getTouches().size() == 1 && zoom <= fit)
                mDocument->fitToWindow(true);
        }
        else if (zoom >= fit + 0.1f || zoom <= fit - 0.1f)
        {
            mDocument->fitToWindow(true);
        }
        else
        {
            mDocument->setZoom(2.0f * fit, true, e.position);
        }
    }
    pinchDistance = 0.0f;
    moved = false;
    anchor = {};
}

juce::Path SxPanTool::handIcon()
{
    // Four fingers and a thumb on a palm, in a 24 by 24 box.
    juce::Path hand;
    hand.addRoundedRectangle(6.0f, 11.0f, 13.0f, 11.0f, 4.0f);
    const float fingerX[] = { 6.0f, 9.5f, 13.0f, 16.5f };
    const float fingerTop[] = { 5.0f, 2.0f, 2.5f, 5.0f };
    for (int i = 0; i < 4; ++i)
        hand.addRoundedRectangle(fingerX[i], fingerTop[i], 2.6f, 14.0f - fingerTop[i], 1.3f);
    juce::Path thumb;
    thumb.addRoundedRectangle(1.5f, 12.0f, 2.6f, 7.0f, 1.3f);
    thumb.applyTransform(juce::AffineTransform::rotation(-0.6f, 2.8f, 19.0f));
    hand.addPath(thumb);
    hand.setUsingNonZeroWinding(true);
    return hand;
}
