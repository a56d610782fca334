#include "tools/SxTouchList.h"

void SxTouchList::pressed(const juce::MouseEvent& e, int sourceIndex)
{
    entries.push_back({ sourceIndex, e });
}

void SxTouchList::dragged(const juce::MouseEvent& e, int sourceIndex)
{
    for (auto it = entries.begin(); it != entries.end(); ++it)
        if (it->sourceIndex == sourceIndex)
        {
            entries.insert(it, { sourceIndex, e });
            entries.erase(it);
            return;
        }
}

void SxTouchList::released(int sourceIndex)
{
    // With one entry there is nothing to match: a lone release always empties the list, even
    // when the platform reported the press under another source.
    if (entries.size() <= 1)
    {
        entries.clear();
        return;
    }
    entries.remove_if([sourceIndex](const Entry& entry) { return entry.sourceIndex == sourceIndex; });
}

std::vector<juce::MouseEvent> SxTouchList::events() const
{
    std::vector<juce::MouseEvent> list;
    list.reserve(entries.size());
    for (const auto& entry : entries)
        list.push_back(entry.event);
    return list;
}

std::vector<int> SxTouchList::sourceIndices() const
{
    std::vector<int> list;
    for (const auto& entry : entries)
        list.push_back(entry.sourceIndex);
    return list;
}
