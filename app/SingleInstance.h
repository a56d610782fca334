#pragma once
// One running program per user. The first process holds an advisory lock in the application data
// folder for its whole life and listens on a Unix socket beside it; a later launch finds the lock
// taken, hands its command line to the socket and ends without a window.
//
// The lock is a flock on an open file, so the kernel drops it when a process dies: a crashed run
// leaves only files, and the next first process removes the dead socket before it binds. JUCE's
// own mechanism is not used because on Linux it locks machine-wide in /var/tmp and its broadcast
// never reaches the other process.

#include <juce_core/juce_core.h>

#include <functional>
#include <memory>

class SingleInstance
{
public:
    /** Called on the listening thread with each forwarded command line. */
    using Receiver = std::function<void(const juce::String&)>;

    explicit SingleInstance(const juce::File& folder);
    ~SingleInstance();

    /** Takes the lock. True for the first process; false when another holds it (or the folder
        cannot hold a lock file, in which case sending fails too). */
    bool becomeFirst();

    /** Opens the socket (first process only) and starts the thread that accepts connections. */
    bool startListening(Receiver receiver);
    void stopListening();

    /** Sends text to the first process and waits for its receipt. Connecting is retried until
        timeoutMs has passed, because the first process may still be starting. */
    static bool send(const juce::File& folder, const juce::String& text, int timeoutMs);

    /** Longest text accepted; anything announcing more is dropped unread. */
    static constexpr int maximumTextBytes = 1 << 16;

private:
    class Listener;
    juce::File folder;
    int lockHandle = -1;
    int socketHandle = -1;
    std::unique_ptr<Listener> listener;
};
