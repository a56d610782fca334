#include "app/CommandLineRender.h"
#include "app/HostScriptedRun.h"
#include "app/Tornvale.h"
#include "imaging/FileBytes.h"

#include <cstring>
#include <string>
#include <vector>

JUCE_CREATE_APPLICATION_DEFINE(Tornvale)

int main(int argc, char* argv[])
{
    // A render asked for where no window can open runs on its own, as on a server.
    if (CommandLineRender::wantsHeadlessRun(argc, argv))
        return CommandLineRender::runHeadless(argc, argv);
    if (HostScriptedRun::wanted(argc, argv))
        return HostScriptedRun::run();

    // JUCE makes its strings of the arguments as they are, and overflows its copies of a name
    // that is not UTF-8 in its shortest form (a file name on Linux may hold any bytes): such an
    // argument reaches it with the bad bytes shown as U+FFFD, and is then reported as not found.
    std::vector<std::string> cleaned;
    std::vector<const char*> arguments;
    cleaned.reserve((size_t) argc);
    for (int i = 0; i < argc; ++i)
    {
        cleaned.push_back(FileBytes::toTextReplacingBadBytes(argv[i], std::strlen(argv[i])).toStdString());
        arguments.push_back(cleaned.back().c_str());
    }
    arguments.push_back(nullptr);

    juce::JUCEApplicationBase::createInstance = &juce_CreateApplication;
    return juce::JUCEApplicationBase::main(argc, arguments.data());
}
