#pragma once
// Counts the mouse presses that reach the program and names the last one, for the component map:
// a window test that sees no reaction to a click can then tell a press the program never
// received from one it received and ignored (a disabled control, a modal component in front).

#include <juce_gui_basics/juce_gui_basics.h>

class InputTrace final : private juce::MouseListener
{
public:
    InputTrace() { juce::Desktop::getInstance().addGlobalMouseListener(this); }
    ~InputTrace() override { juce::Desktop::getInstance().removeGlobalMouseListener(this); }
    InputTrace(const InputTrace&) = delete;
    InputTrace& operator=(const InputTrace&) = delete;

    /** " presses=N pressed=NAME", where NAME carries ":disabled" or ":blocked" when the press
        could not reach the control. */
    juce::String describe() const { return " presses=" + juce::String(presses) + " pressed=" + lastPressed; }

private:
    void mouseDown(const juce::MouseEvent& e) override
    {
        ++presses;
        // The innermost component with a name: buttons carry their id, their drawn parts none.
        auto* c = e.originalComponent;
        while (c != nullptr && c->getComponentID().isEmpty() && c->getName().isEmpty())
            c = c->getParentComponent();
        if (c == nullptr)
        {
            lastPressed = "unnamed";
            return;
        }
        lastPressed = (c->getComponentID().isNotEmpty() ? c->getComponentID() : c->getName()).replaceCharacter(' ', '_');
        if (!c->isEnabled())
            lastPressed << ":disabled";
        if (c->isCurrentlyBlockedByAnotherModalComponent())
            lastPressed << ":blocked";
    }

    int presses = 0;
    juce::String lastPressed = "none";
};
