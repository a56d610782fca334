#pragma once
// A host's scripted run: the host hands a picture over with recorded settings (or where no window
// can open) and wants the result back without any interaction. main() runs it before the
// application starts, so no window is made, as for a command-line render on a server.

namespace HostScriptedRun
{
/** True when a host that hands over files started us and either left settings in the action file
    or there is no display to show a window on. */
bool wanted(int argc, const char* const* argv);

/** Reads the picture, renders it at full size with the recorded settings, lays the result over
    the host's picture through its selection and writes it back. Returns the exit status: 0 when
    written, 1 when the picture is damaged or the render or the write failed (the host's picture
    then stays as it was), and the missing-file code when a hand-over file is absent. */
int run();
} // namespace HostScriptedRun
