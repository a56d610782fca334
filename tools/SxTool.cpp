#include "tools/SxTool.h"

#include "tools/SxToolDocument.h"

#include <cmath>

SxTool::SxTool(const juce::String& name, const juce::Image& normal, const juce::Image& over, const juce::Image& down)
    : juce::ImageButton(name), normalImage(normal), overImage(over), downImage(down)
{
    addListener(this);
    setImages(false, true, true, normalImage, 1.0f, {}, overImage, 1.0f, {}, downImage, 1.0f, {});
}

SxTool::~SxTool()
{
    removeListener(this);
    toolUIComponent.deleteAllChildren();
}

void SxTool::setToolOn(bool on)
{
    const bool wasOn = mToolIsOn;
    mToolIsOn = on;
    if (firstCallback != nullptr)
        firstCallback->stateChanged(this, on);
    if (secondCallback != nullptr)
        secondCallback->stateChanged(this, on);

    if (on)
        setImages(false, true, true, downImage, 1.0f, {}, downImage, 1.0f, {}, downImage, 1.0f, {});
    else
        setImages(false, true, true, normalImage, 1.0f, {}, overImage, 1.0f, {}, downImage, 1.0f, {});
    setToggleState(on, juce::dontSendNotification);

    // A tool switched off from elsewhere (a panel closing, a layer refusing it) must not keep
    // receiving the document's events.
    if (mDocument != nullptr && mDocument->getTool() == this && wasOn && !on)
        mDocument->setTool(nullptr);
    if (!on && mDocument != nullptr)
        mDocument->setMouseCursor(juce::MouseCursor::NormalCursor);
    if (on && mDocument != nullptr)
        updateCursor();
}

void SxTool::updatePanel()
{
    for (auto* child : toolUIComponent.getChildren())
        if (auto* updating = dynamic_cast<SxUpdateComponent*>(child))
            updating->update();
}

void SxTool::repaintDocument()
{
    if (mDocument != nullptr)
        mDocument->repaint();
}

void SxTool::buttonClicked(juce::Button*)
{
    if (owner != nullptr)
        owner->setCurrentTool(mToolIsOn ? nullptr : this);
}

void SxTool::paintButton(juce::Graphics& g, bool highlighted, bool down)
{
    if (normalImage.isValid() || iconPath.isEmpty())
    {
        juce::ImageButton::paintButton(g, highlighted, down);
        return;
    }
    // The icon's states follow the images': lit while on or pressed, brighter under the mouse.
    const bool lit = mToolIsOn || down;
    const auto area = getLocalBounds().toFloat().reduced(3.0f);
    if (lit)
    {
        g.setColour(juce::Colours::white.withAlpha(0.18f));
        g.fillRoundedRectangle(area, 4.0f);
    }
    auto colour = lit ? juce::Colours::white : juce::Colours::lightgrey.withAlpha(highlighted ? 1.0f : 0.75f);
    if (!isEnabled())
        colour = colour.withAlpha(0.3f);
    g.setColour(colour);
    const auto iconArea = area.reduced(area.getHeight() * 0.15f);
    g.fillPath(iconPath, iconPath.getTransformToScaleToFit(iconArea, true));
}

void SxTool::documentMouseDown(const juce::MouseEvent& e)
{
    gestureStart(e);
}

void SxTool::documentMouseDrag(const juce::MouseEvent& e)
{
    gestureStep(e);
}

void SxTool::documentMouseUp(const juce::MouseEvent& e)
{
    gestureEnd(e);
}

void SxTool::gestureStart(const juce::MouseEvent&)
{
    if (!gesturesInForce() || mDocument == nullptr)
        return;
    mPinchCentre = {};
    const auto touches = mDocument->getTouches();
    if (touches.size() != 2)
        return;
    mPinchCentre = { (touches[0].x + touches[1].x) * 0.5f, (touches[0].y + touches[1].y) * 0.5f };
    mPinchDistance = touches[0].getMouseDownPosition().getDistanceFrom(touches[1].getMouseDownPosition());
}

void SxTool::gestureStep(const juce::MouseEvent& e)
{
    if (!gesturesInForce() || mDocument == nullptr || mDocument->getImage() == nullptr)
        return;
    const auto touches = mDocument->getTouches();
    // A coordinate of exactly 0 means no gesture is under way; only the first finger's events
    // step it, so that two fingers moving do not zoom twice.
    if (touches.size() != 2 || e.source.getIndex() != 0 || mPinchCentre.x == 0.0f || mPinchCentre.y == 0.0f)
        return;

    const float d = touches[0].position.getDistanceFrom(touches[1].position);
    if (mPinchDistance > 0.0f)
    {
        float newZoom = d / mPinchDistance * mDocument->getZoom();
        const auto* image = mDocument->getImage();
        const float fit = juce::jmin(mDocument->getWidth() / (float) image->width, mDocument->getHeight() / (float) image->height);
        newZoom = newZoom > 3.0f ? 3.0f : juce::jmax(newZoom, fit * 0.5f);
        mDocument->setZoom(newZoom, false, mPinchCentre, true);
    }
    mPinchDistance = d;

    const juce::Point<int> c { (touches[0].x + touches[1].x) / 2, (touches[0].y + touches[1].y) / 2 };
    mDocument->panBy(std::trunc(c.x - mPinchCentre.x), std::trunc(c.y - mPinchCentre.y));
    mPinchCentre = c.toFloat();
}

void SxTool::gestureEnd(const juce::MouseEvent&)
{
    mPinchCentre = {};
}
