#include "ui/SxComponent.h"

namespace
{
const juce::Identifier boundsProperty("sxBoundsString");

// True when every "name.edge" symbol of the expression names the parent or an existing sibling.
bool siblingsExist(const juce::Expression& e, const juce::Component& component)
{
    // "name.edge" parses as the operator "." with the owner's symbol on its left.
    if (e.getType() == juce::Expression::operatorType && e.getSymbolOrFunction() == "." && e.getNumInputs() == 2)
    {
        const auto owner = e.getInput(0).getSymbolOrFunction();
        auto* parent = component.getParentComponent();
        return owner == "parent" || (parent != nullptr && parent->findChildWithID(owner) != nullptr);
    }
    for (int i = 0; i < e.getNumInputs(); ++i)
        if (!siblingsExist(e.getInput(i), component))
            return false;
    return true;
}
} // namespace

void SxComponent::place(juce::Component& component, const juce::String& text)
{
    if (auto* sx = dynamic_cast<SxComponent*>(&component))
        sx->boundsString = text;
    component.getProperties().set(boundsProperty, text);
    // A string that names a missing sibling cannot be evaluated: the component goes to the
    // origin, without an error, rather than half-placed by the terms that could be evaluated.
    // The rule of an earlier string goes too, or it would move the component back at once.
    const juce::RelativeRectangle rectangle(text);
    for (const auto* coordinate : { &rectangle.left, &rectangle.top, &rectangle.right, &rectangle.bottom })
        if (!siblingsExist(coordinate->getExpression(), component))
        {
            component.setPositioner(nullptr);
            component.setTopLeftPosition(0, 0);
            return;
        }
    rectangle.applyToComponent(component);
}

juce::String SxComponent::boundsStringOf(const juce::Component& component)
{
    if (auto* sx = dynamic_cast<const SxComponent*>(&component))
        return sx->boundsString;
    return component.getProperties()[boundsProperty].toString();
}
