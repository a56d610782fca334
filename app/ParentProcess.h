#pragma once
// Which program started us. A host photo editor launches the program as a plug-in and waits for
// the result; its executable's name is the only sign of which host it is, so start-up reads the
// parent process's executable and matches it against the known hosts.

#include <juce_core/juce_core.h>

namespace ParentProcess
{
/** Host kinds: 0 stand-alone, 2, 4, 9 and 10 for the editors that start the program, 11 for a
    plug-in of our own (an executable whose name begins with "tornvale-plugin"). */
enum HostKind
{
    standAlone = 0,
    hostEditorPs = 2,
    hostEditorLr = 4,
    hostEditorPsp = 9,
    hostEditorPhotos = 10,
    hostOwnPlugin = 11
};

/** The part of a path between the last separator ('/' or '\') and the last '.', or everything
    after the last separator when no '.' follows it. */
juce::String baseName(const juce::String& path);

/** The host kind for a name or path. The substring tests ignore case and run in a fixed order, so
    a path that names two hosts gets the first of them. */
int hostKindForName(const juce::String& name);

/** The parent's executable: the target of /proc/<ppid>/exe, or, when that cannot be read (another
    user's process, a kernel without it), the short name in /proc/<ppid>/comm. Empty if neither. */
juce::String executableOfProcess(int pid);
juce::String parentExecutable();

/** What the host detection looks at, given the program's own command line. */
juce::String hostNameFor(const juce::String& commandLine);
} // namespace ParentProcess
