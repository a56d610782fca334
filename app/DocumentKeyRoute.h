#pragma once
// Where a key goes that no command took: first the current tool, then the effect's controls
// (the brush keys), and last the space bar, which lends the view to the pan tool for as long as
// it is held and then gives it back to the tool that had it.

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

class SxTool;
class SxToolOwner;

class DocumentKeyRoute
{
public:
    using CurrentTool = std::function<SxTool*()>;
    using LayerKeys = std::function<bool(const juce::KeyPress&)>;

    DocumentKeyRoute(SxToolOwner& owner, CurrentTool currentTool, SxTool* panTool, LayerKeys layerKeys);

    bool keyPressed(const juce::KeyPress& key);
    /** Any key went up or down: a released space bar ends the borrowed pan. */
    void keyStateChanged();
    bool isPanBorrowed() const { return borrowing; }

private:
    SxToolOwner& owner;
    CurrentTool currentTool;
    SxTool* panTool;
    LayerKeys layerKeys;
    bool borrowing = false;
    juce::Component::SafePointer<SxTool> lender;
};
