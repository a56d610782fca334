#include "tools/SxPlacementTool.h"

#include "tools/SxToolDocument.h"

#include <cmath>

namespace
{
bool samePlace(const SxPlacement& a, const SxPlacement& b)
{
    return a.center == b.center && a.scale == b.scale && a.orientation == b.orientation;
}

juce::Rectangle<float> boxOf(const SxPlacement& p)
{
    return juce::Rectangle<float>::findAreaContainingPoints(p.corners, 4);
}

/** The midpoint of edge k (top, right, bottom, left) of a placement. */
juce::Point<float> edgeMidpoint(const SxPlacement& p, int k)
{
    return (p.corners[k] + p.corners[(k + 1) % 4]) * 0.5f;
}
} // namespace

SxPlacementTool::SxPlacementTool(const juce::String& name) : SxTool(name) {}

SxPlacementTool::~SxPlacementTool()
{
    stopTimer();
}

std::vector<SxPlacement*> SxPlacementTool::items()
{
    return callback != nullptr ? callback->getPlacements(this) : std::vector<SxPlacement*>();
}

std::vector<SxPlacement*> SxPlacementTool::selectedItems()
{
    std::vector<SxPlacement*> selected;
    for (auto* item : items())
        if (item->isSelected)
            selected.push_back(item);
    return selected;
}

float SxPlacementTool::zoom() const
{
    return mDocument != nullptr && mDocument->getZoom() > 0.0f ? mDocument->getZoom() : 1.0f;
}

juce::Point<float> SxPlacementTool::toView(juce::Point<float> p) const
{
    return mDocument != nullptr ? mDocument->imageToView(p) : p;
}

juce::Point<float> SxPlacementTool::toImage(juce::Point<float> p) const
{
    return mDocument != nullptr ? mDocument->viewToImage(p) : p;
}

int SxPlacementTool::hitTestItem(SxPlacement& item, juce::Point<float> p, bool edges)
{
    item.update();
    auto near = [&](juce::Point<float> imagePoint, float radius) { return p.getDistanceFrom(toView(imagePoint)) <= radius; };
    auto handle = [&](int k) { return callback != nullptr ? callback->extraHandlePosition(this, &item, extraHandle0 + k) : item.center; };

    if (near(item.center, handleRadius))
        return moving;
    if (extraHandles[1] && near(handle(1), nearHandleRadius))
        return extraHandle1;
    for (int corner : { 0, 2, 3, 1 })
        if (near(item.corners[corner], handleRadius))
            return cornerTopLeft + corner;
    if (edges)
        for (int k = 0; k < 4; ++k)
            if (near(edgeMidpoint(item, k), handleRadius))
                return edgeTop + k;
    for (int k : { 1, 0, 2 })
        if (extraHandles[k] && near(handle(k), handleRadius))
            return extraHandle0 + k;
    return item.contains(toImage(p)) ? moving : none;
}

void SxPlacementTool::pressOn(SxPlacement* item, int newMode, juce::Point<float> imagePoint)
{
    mode = newMode;
    pressedItem = item;
    itemAtPress = *item;
    const auto d = imagePoint - item->center;
    angleAtPress = lastAngle = std::atan2(d.x, d.y);
    lastDistance = d.getDistanceFromOrigin();
    rotationAtPress = item->orientation;
}

void SxPlacementTool::updateGroup()
{
    auto selected = selectedItems();
    if (selected.empty())
        return;
    auto box = boxOf(*selected.front());
    for (auto* item : selected)
        box = box.getUnion(boxOf(*item));
    group.imageSize = { juce::jmax(1.0f, box.getWidth()), juce::jmax(1.0f, box.getHeight()) };
    group.center = box.getCentre();
    group.scale = { 1.0f, 1.0f };
    group.orientation = 0.0f;
    group.update();
}

void SxPlacementTool::documentMouseDown(const juce::MouseEvent& e)
{
    SxTool::documentMouseDown(e);
    if (suspended)
        return;
    mode = none;
    pressedItem = nullptr;
    stopTimer();
    auto all = items();
    downView = e.position;
    downImage = lastImage = toImage(e.position);
    const bool ctrl = e.mods.isCtrlDown();
    const auto selected = selectedItems();

    bool hitsAny = false;
    for (auto* item : all)
        hitsAny = hitsAny || hitTestItem(*item, e.position, itemEdgeHandles) != none;
    if (marqueeSelection && !hitsAny)
    {
        mode = marquee;
        marqueeBox = juce::Rectangle<float>(downImage, downImage);
        return;
    }

    const bool single = !multiSelection || (!ctrl && selected.size() <= 1) || (ctrl && selected.empty());
    if (single)
    {
        for (auto it = all.rbegin(); it != all.rend(); ++it)
            if (const int hit = hitTestItem(**it, e.position, itemEdgeHandles); hit != none)
            {
                for (auto* other : all)
                    other->isSelected = other == *it;
                pressOn(*it, hit, downImage);
                repaintDocument();
                break;
            }
        if (mode == none && clickGrabs && !all.empty())
        {
            const int index = lastSelectedIndex >= 0 && lastSelectedIndex < (int) all.size() ? lastSelectedIndex : 0;
            for (auto* other : all)
                other->isSelected = other == all[(size_t) index];
            repaintDocument();
        }
        else if (mode == none)
        {
            for (auto* other : all)
                other->isSelected = false;
            repaintDocument();
        }
        return;
    }

    // Several selected, or Ctrl held over a selection: the group box, or a change of selection.
    if (ctrl)
    {
        for (auto it = all.rbegin(); it != all.rend(); ++it)
            if ((*it)->contains(downImage))
            {
                (*it)->isSelected = !(*it)->isSelected;
                mode = inert;
                repaintDocument();
                return;
            }
    }
    updateGroup();
    const int hit = hitTestItem(group, e.position, groupEdgeHandles);
    if (hit != none && hit < extraHandle0)
    {
        pressOn(&group, hit, downImage);
        groupAtPress = group;
    }
}

void SxPlacementTool::changed(SxPlacement& item, const SxPlacement& before)
{
    for (int i = 0; i < listeners.size(); ++i)
        if (listeners.getListeners()[i]->placementMoving(this, &item, before))
            break;
    item.update();
    repaintImageRect(boxOf(before).getUnion(boxOf(item)));
}

void SxPlacementTool::repaintImageRect(juce::Rectangle<float> box)
{
    if (mDocument == nullptr)
        return;
    const float z = zoom();
    box = box.expanded(50.0f / z);
    if (callback == nullptr || callback->mayRepaintAfterDrag(this))
        box = box.expanded(95.0f / z);
    mDocument->repaintImageRegion((int) std::floor(box.getX()), (int) std::floor(box.getY()), (int) std::ceil(box.getRight()),
                                  (int) std::ceil(box.getBottom()));
}

void SxPlacementTool::documentMouseDrag(const juce::MouseEvent& e)
{
    SxTool::documentMouseDrag(e);
    if (suspended || mode == none || mode == inert)
        return;
    const auto p = toImage(e.position);
    const auto step = p - lastImage;
    lastImage = p;

    if (mode == marquee)
    {
        marqueeBox = juce::Rectangle<float>(downImage, p);
        repaintDocument();
        return;
    }
    if (mode >= extraHandle0)
    {
        if (callback != nullptr)
            callback->extraHandleMoved(this, pressedItem, mode, p);
        return;
    }
    auto& item = *pressedItem;
    itemBeforeStep = item;
    const bool isGroup = pressedItem == &group;
    auto members = isGroup ? selectedItems() : std::vector<SxPlacement*>();

    if (mode == moving)
    {
        item.center += step;
        for (auto* member : members)
        {
            const SxPlacement before = *member;
            member->center += step;
            changed(*member, before);
        }
    }
    else if (mode <= cornerBottomLeft)
    {
        const auto d = p - item.center;
        const float angle = std::atan2(d.x, d.y);
        const float distance = d.getDistanceFromOrigin();
        float f = lastDistance > 0.0f ? distance / lastDistance : 1.0f;
        lastDistance = distance;
        // The floor keeps three handle radii of the item on screen, so that its handles never
        // sit on top of each other.
        const float big = juce::jmax(item.imageSize.x * std::abs(item.scale.x), item.imageSize.y * std::abs(item.scale.y));
        if (big * f < std::trunc(handleRadius / zoom()) * 3.0f && f < 1.0f)
            f = 1.0f;
        if (e.mods.isShiftDown())
            f = 1.0f;
        // atan2(dx, dy) grows against the turn of our orientation (which turns clockwise on a
        // screen whose y points down), so the difference is added: the corner follows the pointer.
        const float newOrientation = rotationAtPress + (angleAtPress - angle);
        const float turn = newOrientation - item.orientation;
        item.scale *= f;
        item.orientation = newOrientation;
        for (auto* member : members)
        {
            const SxPlacement before = *member;
            const auto offset = (member->center - item.center) * f;
            member->center = item.center + offset.rotatedAboutOrigin(turn);
            member->scale *= f;
            member->orientation += turn;
            changed(*member, before);
        }
        lastAngle = angle;
    }
    else if (mode >= edgeTop && mode <= edgeLeft)
    {
        const auto minimum = callback != nullptr ? callback->smallestSize(this) : juce::Point<float>(50.0f, 50.0f);
        const auto boxBefore = boxOf(item);
        item.resizeSide(mode - edgeTop, p, e.mods.isShiftDown(), minimum);
        if (isGroup)
        {
            // Members follow the box's change along its axes.
            const auto boxAfter = boxOf(item);
            for (auto* member : members)
            {
                const SxPlacement before = *member;
                member->remap(boxBefore, boxAfter);
                changed(*member, before);
            }
        }
    }
    changed(item, itemBeforeStep);
}

void SxPlacementTool::documentMouseUp(const juce::MouseEvent& e)
{
    SxTool::documentMouseUp(e);
    if (suspended || mDocument == nullptr || mDocument->getTouches().size() > 1)
        return;
    if (mode == inert)
        return;
    auto all = items();
    if (mode == marquee)
    {
        for (auto* item : all)
            if (boxOf(*item).intersects(marqueeBox))
                item->isSelected = true;
            else if (!e.mods.isCtrlDown())
                item->isSelected = false;
        marqueeBox = {};
        repaintDocument();
        mode = none;
        return;
    }
    if (mode == none)
    {
        mDocument->grabKeyboardFocus();
        return;
    }
    if (pressedItem == &group)
    {
        mDocument->grabKeyboardFocus();
        if (callback != nullptr && !samePlace(group, groupAtPress))
            callback->placementChanged(this, &group, groupAtPress, true);
    }
    else if (pressedItem != nullptr)
    {
        for (size_t i = 0; i < all.size(); ++i)
            if (all[i] == pressedItem)
                lastSelectedIndex = (int) i;
        if (mode == extraHandle0 && callback != nullptr)
            callback->extraHandle100Released(this, pressedItem);
        else if (mode == extraHandle1 && callback != nullptr)
            callback->extraHandle101Released(this, pressedItem);
        else if (mode == extraHandle2 && callback != nullptr)
            callback->extraHandle102Released(this, pressedItem);
        else
        {
            mDocument->grabKeyboardFocus();
            if (callback != nullptr && !samePlace(*pressedItem, itemAtPress))
                callback->placementChanged(this, pressedItem, itemAtPress, true);
        }
        repaintImageRect(boxOf(*pressedItem));
    }
    mode = none;
    pressedItem = nullptr;
}

void SxPlacementTool::documentMouseMove(const juce::MouseEvent& e)
{
    if (suspended)
        return;
    const auto p = toImage(e.position);
    SxPlacement* under = nullptr;
    auto all = items();
    for (auto it = all.rbegin(); it != all.rend() && under == nullptr; ++it)
        if ((*it)->contains(p))
            under = *it;
    if (under == itemUnderPointer)
        return;
    const float grow = 5.0f / zoom();
    for (auto* item : { itemUnderPointer, under })
        if (item != nullptr && mDocument != nullptr)
        {
            const auto box = boxOf(*item).expanded(grow);
            mDocument->repaintImageRegion((int) std::floor(box.getX()), (int) std::floor(box.getY()), (int) std::ceil(box.getRight()),
                                          (int) std::ceil(box.getBottom()));
        }
    itemUnderPointer = under;
}

bool SxPlacementTool::handleKey(const juce::KeyPress& key)
{
    const auto mods = key.getModifiers();
    const int code = key.getKeyCode();
    if ((code == juce::KeyPress::deleteKey || code == juce::KeyPress::backspaceKey) && !mods.isAnyModifierKeyDown())
    {
        if (callback != nullptr)
            callback->removeSelectedPlacements(this);
        return true;
    }
    if (mods.isCommandDown() && (code == 'A' || code == 'a'))
    {
        if (!multiSelection)
            return false;
        for (auto* item : items())
            item->isSelected = true;
        repaintDocument();
        return true;
    }
    juce::Point<float> step;
    if (code == juce::KeyPress::leftKey) step = { -1.0f, 0.0f };
    else if (code == juce::KeyPress::rightKey) step = { 1.0f, 0.0f };
    else if (code == juce::KeyPress::upKey) step = { 0.0f, -1.0f };
    else if (code == juce::KeyPress::downKey) step = { 0.0f, 1.0f };
    else return false;
    auto selected = selectedItems();
    if (selected.size() != 1)
        return false;
    auto* item = selected.front();
    if (nudged != item)
    {
        nudged = item;
        nudgeRecord = *item;
    }
    const SxPlacement before = *item;
    item->center += step;
    changed(*item, before);
    return true;
}

void SxPlacementTool::timerCallback()
{
    stopTimer();
    if (nudged == nullptr)
        return;
    if (callback != nullptr && !samePlace(*nudged, nudgeRecord))
        callback->placementChanged(this, nudged, nudgeRecord, true);
    nudgeRecord = *nudged;
}

void SxPlacementTool::paintItem(juce::Graphics& g, const SxPlacement& item, bool handles, float opacity, bool edges)
{
    juce::Path outline;
    outline.startNewSubPath(toView(item.corners[0]));
    for (int k = 1; k < 4; ++k)
        outline.lineTo(toView(item.corners[k]));
    outline.closeSubPath();
    // A dark line under a light one: the outline reads on any picture.
    g.setColour(juce::Colour(0x64282828).withMultipliedAlpha(opacity));
    g.strokePath(outline, juce::PathStrokeType(3.0f));
    g.setColour(juce::Colour(0xE1FFFFFF).withMultipliedAlpha(opacity));
    g.strokePath(outline, juce::PathStrokeType(1.0f));
    if (!handles)
        return;
    auto dot = [&](juce::Point<float> at) {
        const auto v = toView(at);
        g.setColour(juce::Colour(0xff808080).withMultipliedAlpha(opacity));
        g.fillEllipse(juce::Rectangle<float>(12.0f, 12.0f).withCentre(v));
        g.setColour(juce::Colours::white.withMultipliedAlpha(opacity));
        g.fillEllipse(juce::Rectangle<float>(10.0f, 10.0f).withCentre(v));
    };
    for (const auto& corner : item.corners)
        dot(corner);
    if (edges)
        for (int k = 0; k < 4; ++k)
            dot(edgeMidpoint(item, k));
}

void SxPlacementTool::paintOverImage(juce::Graphics& g, juce::Rectangle<float>)
{
    auto selected = selectedItems();
    if (selected.size() <= 1)
    {
        for (auto* item : selected)
            paintItem(g, *item, true, 1.0f, itemEdgeHandles);
    }
    else
    {
        for (auto* item : selected)
            paintItem(g, *item, false, 0.65f, false);
        if (groupBox)
        {
            updateGroup();
            paintItem(g, group, true, (float) 0x72 / 255.0f, groupEdgeHandles);
        }
    }
    if (!marqueeBox.isEmpty())
    {
        const auto a = toView(marqueeBox.getTopLeft()), b = toView(marqueeBox.getBottomRight());
        g.setColour(juce::Colours::white.withAlpha(0.8f));
        g.drawRect(juce::Rectangle<float>(a, b), 1.0f);
    }
}
