#include "gpu/ProgramCache.h"
#include "gpu/GLProgram.h"

ProgramCache& ProgramCache::getInstance()
{
    static ProgramCache cache;
    return cache;
}

int ProgramCache::indexOf(const juce::String& key) const
{
    for (size_t i = 0; i < keys.size(); ++i)
        if (keys[i] == key)
            return (int) i;
    return -1;
}

GLProgram* ProgramCache::find(const juce::String& key) const
{
    const int i = indexOf(key);
    return i < 0 ? nullptr : programs[(size_t) i];
}

juce::String ProgramCache::sourceOf(const juce::String& key) const
{
    const int i = indexOf(key);
    return i < 0 ? juce::String() : sources[(size_t) i];
}

void ProgramCache::add(const juce::String& key, GLProgram* program, const juce::String& source)
{
    remove(key);
    keys.push_back(key);
    programs.push_back(program);
    sources.push_back(source);
}

void ProgramCache::remove(const juce::String& key)
{
    const int i = indexOf(key);
    if (i < 0)
        return;
    keys.erase(keys.begin() + i);
    programs.erase(programs.begin() + i);
    sources.erase(sources.begin() + i);
}

void ProgramCache::clear()
{
    for (auto* p : programs)
        delete p;
    keys.clear();
    programs.clear();
    sources.clear();
}
