#include "app/DocumentKeyRoute.h"

#include "tools/SxTool.h"

DocumentKeyRoute::DocumentKeyRoute(SxToolOwner& o, CurrentTool current, SxTool* pan, LayerKeys layer)
    : owner(o), currentTool(std::move(current)), panTool(pan), layerKeys(std::move(layer))
{
}

bool DocumentKeyRoute::keyPressed(const juce::KeyPress& key)
{
    auto* tool = currentTool ? currentTool() : nullptr;
    if (tool != nullptr && tool->handleToolKey(key))
        return true;
    if (layerKeys && layerKeys(key))
        return true;
    if (key.getKeyCode() != juce::KeyPress::spaceKey || key.getModifiers().isAnyModifierKeyDown())
        return false;
    // Held: the key repeats, and the pan tool stays.
    if (!borrowing && panTool != nullptr && tool != panTool)
    {
        borrowing = true;
        lender = tool;
        owner.setCurrentTool(panTool);
    }
    return true;
}

void DocumentKeyRoute::keyStateChanged()
{
    if (!borrowing || juce::KeyPress::isKeyCurrentlyDown(juce::KeyPress::spaceKey))
        return;
    borrowing = false;
    // The pan tool goes back only if it is still the one lent: a click on another tool's button
    // meanwhile chose for the user.
    if (currentTool && currentTool() == panTool)
        owner.setCurrentTool(lender.getComponent());
    lender = nullptr;
}
