#include "app/SingleInstance.h"
#include "imaging/FileBytes.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
const char* const lockName = "instance.lock";
const char* const socketName = "instance.sock";
constexpr int ioTimeoutMs = 2000;

// A socket path longer than sun_path (a deep home folder) would be cut; such folders get a name in
// the abstract namespace instead, derived from the folder so two users or two test homes differ.
socklen_t addressFor(const juce::File& folder, sockaddr_un& address)
{
    std::memset(&address, 0, sizeof(address));
    address.sun_family = AF_UNIX;
    const auto path = folder.getChildFile(socketName).getFullPathName();
    const size_t length = std::strlen(path.toRawUTF8());
    if (length < sizeof(address.sun_path))
    {
        std::memcpy(address.sun_path, path.toRawUTF8(), length);
        return (socklen_t) (offsetof(sockaddr_un, sun_path) + length + 1);
    }

    const auto name = "tornvale-" + juce::String::toHexString(path.hashCode64());
    std::memcpy(address.sun_path + 1, name.toRawUTF8(), (size_t) name.getNumBytesAsUTF8());
    return (socklen_t) (offsetof(sockaddr_un, sun_path) + 1 + (size_t) name.getNumBytesAsUTF8());
}

bool waitFor(int handle, short events, int timeoutMs)
{
    pollfd p { handle, events, 0 };
    int r;
    do
        r = ::poll(&p, 1, timeoutMs);
    while (r < 0 && errno == EINTR);
    return r > 0 && (p.revents & events) != 0;
}

bool readAll(int handle, void* buffer, size_t size)
{
    auto* bytes = static_cast<char*>(buffer);
    while (size > 0)
    {
        if (!waitFor(handle, POLLIN, ioTimeoutMs))
            return false;
        const auto n = ::read(handle, bytes, size);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        bytes += n;
        size -= (size_t) n;
    }
    return true;
}

bool writeAll(int handle, const void* buffer, size_t size)
{
    const auto* bytes = static_cast<const char*>(buffer);
    while (size > 0)
    {
        const auto n = ::send(handle, bytes, size, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        bytes += n;
        size -= (size_t) n;
    }
    return true;
}

// A message is a 32-bit little-endian byte count and that many bytes of UTF-8; the receiver
// answers one byte once it has taken the text, so the sender can end knowing it arrived.
void serve(int connection, const SingleInstance::Receiver& receiver)
{
    uint8_t header[4];
    if (!readAll(connection, header, 4))
        return;
    const uint32_t size = (uint32_t) header[0] | (uint32_t) header[1] << 8 | (uint32_t) header[2] << 16
                          | (uint32_t) header[3] << 24;
    if (size > (uint32_t) SingleInstance::maximumTextBytes)
        return;

    juce::HeapBlock<char> text((size_t) size + 1, true);
    if (!readAll(connection, text.get(), size))
        return;
    const char ack = 'k';
    writeAll(connection, &ack, 1);
    receiver(FileBytes::toTextReplacingBadBytes(text.get(), size));
}
} // namespace

class SingleInstance::Listener : public juce::Thread
{
public:
    Listener(int handle, Receiver r) : juce::Thread("Instance listener"), socketHandle(handle), receiver(std::move(r)) {}

    void run() override
    {
        while (!threadShouldExit())
        {
            if (!waitFor(socketHandle, POLLIN, 100))
                continue;
            const int connection = ::accept4(socketHandle, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection < 0)
                continue;
            serve(connection, receiver);
            ::close(connection);
        }
    }

private:
    int socketHandle;
    Receiver receiver;
};

SingleInstance::SingleInstance(const juce::File& f) : folder(f) {}

SingleInstance::~SingleInstance()
{
    stopListening();
    if (lockHandle >= 0)
        ::close(lockHandle); // releases the lock
}

bool SingleInstance::becomeFirst()
{
    if (lockHandle >= 0)
        return true;
    folder.createDirectory();
    const int handle = ::open(folder.getChildFile(lockName).getFullPathName().toRawUTF8(),
                              O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (handle < 0)
        return false;
    if (::flock(handle, LOCK_EX | LOCK_NB) != 0)
    {
        ::close(handle);
        return false;
    }
    lockHandle = handle;
    return true;
}

bool SingleInstance::startListening(Receiver receiver)
{
    if (lockHandle < 0 || listener != nullptr)
        return false;

    sockaddr_un address;
    const auto length = addressFor(folder, address);
    // Holding the lock means any socket file here belongs to a process that has died.
    if (address.sun_path[0] != 0)
        ::unlink(address.sun_path);

    socketHandle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socketHandle < 0)
        return false;
    if (::bind(socketHandle, reinterpret_cast<sockaddr*>(&address), length) != 0 || ::listen(socketHandle, 8) != 0)
    {
        ::close(socketHandle);
        socketHandle = -1;
        return false;
    }

    listener = std::make_unique<Listener>(socketHandle, std::move(receiver));
    listener->startThread();
    return true;
}

void SingleInstance::stopListening()
{
    if (listener != nullptr)
    {
        listener->stopThread(-1);
        listener.reset();
    }
    if (socketHandle >= 0)
    {
        ::close(socketHandle);
        socketHandle = -1;
        sockaddr_un address;
        addressFor(folder, address);
        if (address.sun_path[0] != 0)
            ::unlink(address.sun_path);
    }
}

bool SingleInstance::send(const juce::File& folder, const juce::String& text, int timeoutMs)
{
    const auto bytes = (size_t) text.getNumBytesAsUTF8();
    if (bytes > (size_t) maximumTextBytes)
        return false;

    sockaddr_un address;
    const auto length = addressFor(folder, address);
    const auto deadline = juce::Time::getMillisecondCounter() + (juce::uint32) juce::jmax(0, timeoutMs);

    for (;;)
    {
        const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (handle < 0)
            return false;
        if (::connect(handle, reinterpret_cast<sockaddr*>(&address), length) == 0)
        {
            const uint8_t header[4] = { (uint8_t) bytes, (uint8_t) (bytes >> 8), (uint8_t) (bytes >> 16),
                                        (uint8_t) (bytes >> 24) };
            char ack = 0;
            const bool ok = writeAll(handle, header, 4) && writeAll(handle, text.toRawUTF8(), bytes)
                            && readAll(handle, &ack, 1) && ack == 'k';
            ::close(handle);
            return ok;
        }
        ::close(handle);
        if (juce::Time::getMillisecondCounter() >= deadline)
            return false;
        juce::Thread::sleep(50);
    }
}
