#include "app/ParentProcess.h"
#include "imaging/FileBytes.h"

#include <climits>
#include <unistd.h>

namespace ParentProcess
{
juce::String baseName(const juce::String& path)
{
    const int separator = juce::jmax(path.lastIndexOfChar('/'), path.lastIndexOfChar('\\'));
    const auto tail = path.substring(separator + 1);
    const int dot = tail.lastIndexOfChar('.');
    return dot >= 0 ? tail.substring(0, dot) : tail;
}

int hostKindForName(const juce::String& name)
{
    if (name.isEmpty())
        return standAlone;
    if (name.containsIgnoreCase("lightroom"))
        return hostEditorLr;
    if (name.containsIgnoreCase("photoshop"))
        return hostEditorPs;
    if (name.containsIgnoreCase("paintShop"))
        return hostEditorPsp;
    // The system photo viewer is called just "Photo"; a substring test would catch every path
    // with "photo" in a folder name.
    if (baseName(name) == "Photo" || name.containsIgnoreCase("Affinity"))
        return hostEditorPhotos;
    // Our own plug-ins (the one for the free editor, the test host) hand over through the files;
    // they are known by their executable's name, whatever folder the editor keeps them in.
    if (baseName(name).startsWith("tornvale-plugin"))
        return hostOwnPlugin;
    return standAlone;
}

juce::String executableOfProcess(int pid)
{
    if (pid <= 0)
        return {};
    const juce::String proc = "/proc/" + juce::String(pid);

    char target[PATH_MAX];
    const auto length = ::readlink((proc + "/exe").toRawUTF8(), target, sizeof(target) - 1);
    if (length > 0)
        return FileBytes::toTextReplacingBadBytes(target, (size_t) length);

    juce::MemoryBlock comm;
    juce::File(proc + "/comm").loadFileAsData(comm);
    return FileBytes::toTextReplacingBadBytes(comm.getData(), comm.getSize()).trim();
}

juce::String parentExecutable()
{
    return executableOfProcess((int) ::getppid());
}

juce::String hostNameFor(const juce::String& commandLine)
{
    // A host that passes its own name on the command line needs no look at the process table.
    if (commandLine == "photoshop ")
        return commandLine;
    const auto parent = parentExecutable();
    return parent.isNotEmpty() ? parent : commandLine;
}
} // namespace ParentProcess
