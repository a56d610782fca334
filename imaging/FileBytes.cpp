#include "imaging/FileBytes.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileBytes
{
namespace
{
juce::String openError(int error)
{
    if (error == ENOENT || error == ENOTDIR)
        return "cannot read: no such file";
    if (error == EACCES || error == EPERM)
        return "cannot read: permission denied";
    return "cannot read: " + juce::String(std::strerror(error));
}

/** Opens without blocking (a FIFO with no writer would otherwise hang the open itself) and
    checks what was opened, not what the name pointed to a moment before. */
int openRegular(const juce::File& file, struct stat& info, juce::String& error)
{
    const int fd = ::open(file.getFullPathName().toRawUTF8(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
    {
        error = openError(errno);
        return -1;
    }
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))
    {
        error = S_ISDIR(info.st_mode) ? "cannot read: it is a folder" : "cannot read: not a regular file";
        ::close(fd);
        return -1;
    }
    return fd;
}
} // namespace

juce::String checkRegular(const juce::File& file)
{
    struct stat info {};
    juce::String error;
    const int fd = openRegular(file, info, error);
    if (fd >= 0)
        ::close(fd);
    return error;
}

juce::String read(const juce::File& file, juce::MemoryBlock& out)
{
    struct stat info {};
    juce::String error;
    const int fd = openRegular(file, info, error);
    if (fd < 0)
        return error;
    try
    {
        out.setSize((size_t) info.st_size, false);
    }
    catch (const std::bad_alloc&)
    {
        ::close(fd);
        return "cannot read: not enough memory for the file";
    }
    size_t done = 0;
    while (done < out.getSize())
    {
        const auto n = ::read(fd, static_cast<char*>(out.getData()) + done, out.getSize() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
        {
            error = "cannot read: I/O error";
            break;
        }
        if (n == 0)
            break; // the file shrank while we read it: what is there is all there is
        done += (size_t) n;
    }
    ::close(fd);
    out.setSize(done);
    return error;
}
} // namespace FileBytes
