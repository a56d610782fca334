#include "imaging/FileBytes.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <limits>
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

namespace
{
/** The length of the strict UTF-8 sequence at p (at most left bytes), or 0 when there is none. */
size_t sequenceLength(const uint8_t* p, size_t left)
{
    const uint8_t lead = p[0];
    if (lead == 0)
        return 0;
    if (lead < 0x80)
        return 1;
    size_t length = 0;
    uint8_t low = 0x80, high = 0xBF; // the range of the second byte (RFC 3629, table 3-7)
    if (lead >= 0xC2 && lead <= 0xDF)
        length = 2;
    else if (lead >= 0xE0 && lead <= 0xEF)
    {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0; // shorter forms of U+0000 to U+07FF
        else if (lead == 0xED)
            high = 0x9F; // surrogates
    }
    else if (lead >= 0xF0 && lead <= 0xF4)
    {
        length = 4;
        if (lead == 0xF0)
            low = 0x90; // shorter forms of U+0000 to U+FFFF
        else if (lead == 0xF4)
            high = 0x8F; // past U+10FFFF
    }
    if (length == 0 || length > left || p[1] < low || p[1] > high)
        return 0;
    for (size_t i = 2; i < length; ++i)
        if ((p[i] & 0xC0) != 0x80)
            return 0;
    return length;
}
} // namespace

bool isStrictUtf8(const void* data, size_t size)
{
    const auto* p = static_cast<const uint8_t*>(data);
    for (size_t i = 0; i < size;)
    {
        const size_t n = sequenceLength(p + i, size - i);
        if (n == 0)
            return false;
        i += n;
    }
    return true;
}

bool toText(const void* data, size_t size, juce::String& text)
{
    if (size > (size_t) std::numeric_limits<int>::max() || ! isStrictUtf8(data, size))
        return false;
    text = size == 0 ? juce::String() : juce::String::fromUTF8(static_cast<const char*>(data), (int) size);
    return true;
}

juce::String toTextReplacingBadBytes(const void* data, size_t size)
{
    juce::String text;
    if (toText(data, size, text))
        return text;
    const auto* p = static_cast<const uint8_t*>(data);
    juce::MemoryOutputStream clean;
    for (size_t i = 0; i < size;)
    {
        const size_t n = sequenceLength(p + i, size - i);
        if (n == 0)
        {
            clean.write("\xEF\xBF\xBD", 3); // U+FFFD in place of the one byte that starts no sequence
            ++i;
        }
        else
        {
            clean.write(p + i, n);
            i += n;
        }
    }
    return juce::String::fromUTF8(static_cast<const char*>(clean.getData()), (int) clean.getDataSize());
}
} // namespace FileBytes
