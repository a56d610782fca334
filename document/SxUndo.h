#pragma once
// A short history of whole settings snapshots. A record is a property set whose pictures are
// shared by reference, which is what makes five records affordable; the history never holds
// pixels of its own. Brush strokes are not recorded.

#include "document/SxPropertySet.h"

#include <vector>

class SxUndo
{
public:
    static constexpr int capacity = 5;

    SxUndo();

    /** Forgets every record: an image or project was opened. */
    void reset();

    /** Records the present state. The oldest record goes when the history is full, and any
        redo tail is dropped, because a new change starts a new branch. */
    void push(const SxPropertySet& state);

    /** Steps one record back. False (and out untouched) at the oldest record or when empty. */
    bool undo(SxPropertySet& out);
    /** Steps one record forward. False at the newest record. */
    bool redo(SxPropertySet& out);

    bool canUndo() const { return current > 0; }
    bool canRedo() const { return current >= 0 && current < top; }
    int getCurrentIndex() const { return current; }
    int getTopIndex() const { return top; }

private:
    std::vector<SxPropertySet> records;
    int current = -1;
    int top = -1;
};
