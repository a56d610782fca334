#pragma once
// A temporary home folder for the length of a test: the program reads and writes the user's
// configuration folder, and tests must never touch the real one.

#include <juce_core/juce_core.h>

#include <cstdlib>

struct ScopedTempHome
{
    ScopedTempHome()
    {
        if (const char* h = std::getenv("HOME"))
            previous = h;
        folder = juce::File::createTempFile("home");
        folder.createDirectory();
        ::setenv("HOME", folder.getFullPathName().toRawUTF8(), 1);
        ::unsetenv("XDG_CONFIG_HOME");
    }
    ~ScopedTempHome()
    {
        ::setenv("HOME", previous.toRawUTF8(), 1);
        folder.deleteRecursively();
    }
    ScopedTempHome(const ScopedTempHome&) = delete;
    ScopedTempHome& operator=(const ScopedTempHome&) = delete;

    juce::File folder;
    juce::String previous;
};
