#pragma once
// Process-wide store of linked programs, keyed by filter class. Chains are rebuilt for every tile
// and every operation; compiling is the expensive step, so each class compiles its program once
// (or once per fragment text, for filters whose text carries constants).

#include <juce_core/juce_core.h>

#include <vector>

class GLProgram;

class ProgramCache
{
public:
    static ProgramCache& getInstance();

    GLProgram* find(const juce::String& key) const;
    juce::String sourceOf(const juce::String& key) const;

    /** Replaces an entry of the same key without deleting its program: the caller has done that. */
    void add(const juce::String& key, GLProgram* program, const juce::String& source);
    void remove(const juce::String& key);

    /** Deletes every program; the caller holds the GL context. For tests and shutdown. */
    void clear();
    size_t size() const { return keys.size(); }

private:
    int indexOf(const juce::String& key) const;

    std::vector<juce::String> keys;
    std::vector<GLProgram*> programs;
    std::vector<juce::String> sources;
};
