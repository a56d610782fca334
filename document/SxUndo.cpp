#include "document/SxUndo.h"

SxUndo::SxUndo()
{
    reset();
}

void SxUndo::reset()
{
    records.clear();
    records.resize((size_t) capacity);
    current = -1;
    top = -1;
}

void SxUndo::push(const SxPropertySet& state)
{
    const int next = current + 1;
    if (next >= capacity)
    {
        current = capacity - 1;
        for (int i = 0; i < capacity - 1; ++i)
            records[(size_t) i] = records[(size_t) i + 1];
        records.pop_back();
        records.push_back(state);
    }
    else
    {
        current = next;
        records[(size_t) next] = state;
    }
    top = current;
}

bool SxUndo::undo(SxPropertySet& out)
{
    if (current < 0)
        return false;
    if (--current < 0)
    {
        // Stepping below the first record leaves nothing to restore; stay at the oldest one.
        current = 0;
        return false;
    }
    out = records[(size_t) current];
    return true;
}

bool SxUndo::redo(SxPropertySet& out)
{
    if (current < 0 || current + 1 > top)
        return false;
    ++current;
    out = records[(size_t) current];
    return true;
}
