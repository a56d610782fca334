#pragma once
// The fingers and buttons held on the document, one mouse event each, kept so that a tool can
// tell a plain press (one entry) from a two-finger gesture (two). Entries are matched by the
// index of their input source, which the caller passes so that the bookkeeping does not depend
// on which sources the platform can create.

#include <juce_gui_basics/juce_gui_basics.h>

#include <list>
#include <vector>

class SxTouchList
{
public:
    /** A press adds its event. */
    void pressed(const juce::MouseEvent& e, int sourceIndex);
    /** A drag replaces the entry of its source, in place; a source that is not held is ignored. */
    void dragged(const juce::MouseEvent& e, int sourceIndex);
    /** A release drops the one entry there is; with several, every entry of its source goes,
        so that a finger lifted out of order leaves the others held. */
    void released(int sourceIndex);
    void clear() { entries.clear(); }

    size_t size() const { return entries.size(); }
    /** Copies of the held events, oldest press first. */
    std::vector<juce::MouseEvent> events() const;
    std::vector<int> sourceIndices() const;

private:
    struct Entry
    {
        int sourceIndex;
        juce::MouseEvent event;
    };
    // A list, because mouse events cannot be assigned and a drag replaces its entry in place.
    std::list<Entry> entries;
};
