#pragma once
// The base of the program's own components. It remembers the bounds string it was placed with,
// because the layout column re-stacks rows by rewriting only the top of that string, and gives
// every component one call that places it by text.

#include <juce_gui_basics/juce_gui_basics.h>

class SxComponent : public juce::Component
{
public:
    explicit SxComponent(const juce::String& name = {}) : juce::Component(name) {}

    /** Places the component by a bounds string ("left, top, right, bottom" expressions over
        "parent.width", "left", "top", "width" and "sibling.edge"); the expressions are
        re-evaluated whenever a component they refer to moves or resizes. */
    void setBoundsString(const juce::String& text) { place(*this, text); }
    const juce::String& getBoundsString() const { return boundsString; }

    /** The same for any component: SxComponents remember the string. */
    static void place(juce::Component& component, const juce::String& text);
    /** The string a component was placed with, or empty. */
    static juce::String boundsStringOf(const juce::Component& component);

private:
    juce::String boundsString;
};

/** Something that shows a value held elsewhere and re-reads it on request, as an applied preset
    needs of every control in a panel. */
class SxUpdateComponent
{
public:
    virtual ~SxUpdateComponent() = default;
    virtual void update() = 0;
};

/** A control that writes a value through a field pointer is told to tell this when it did. */
class SxControlChangedCallback
{
public:
    virtual ~SxControlChangedCallback() = default;
    virtual void controlChanged(juce::Component* control) = 0;
};
