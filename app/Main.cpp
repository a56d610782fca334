#include "app/CommandLineRender.h"
#include "app/HostScriptedRun.h"
#include "app/Tornvale.h"

JUCE_CREATE_APPLICATION_DEFINE(Tornvale)

int main(int argc, char* argv[])
{
    // A render asked for where no window can open runs on its own, as on a server.
    if (CommandLineRender::wantsHeadlessRun(argc, argv))
        return CommandLineRender::runHeadless(argc, argv);
    if (HostScriptedRun::wanted(argc, argv))
        return HostScriptedRun::run();

    juce::JUCEApplicationBase::createInstance = &juce_CreateApplication;
    return juce::JUCEApplicationBase::main(argc, (const char**) argv);
}
