#include "imaging/SafeFileWrite.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace SafeFileWrite
{
namespace
{
juce::String describe(int error)
{
    switch (error)
    {
        case ENOSPC:
        case EDQUOT:
        case EFBIG: return "the disk is full or the file is too large";
        case EACCES:
        case EPERM:
        case EROFS: return "the folder is not writable";
        case ENOENT:
        case ENOTDIR: return "no such folder";
        default: return std::strerror(error);
    }
}

juce::Result failure(const juce::File& destination, int error)
{
    return juce::Result::fail("cannot write: " + destination.getFullPathName() + ": " + describe(error));
}

/** Writes every byte to a new hidden file beside destination; on success temporary names it. */
int writeTemporary(const juce::File& destination, const void* data, size_t size, juce::File& temporary)
{
    ignoreFileSizeSignal();
    const auto folder = destination.getParentDirectory();
    if (!folder.isDirectory())
        return ENOENT;

    int fd = -1;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt)
    {
        temporary = folder.getChildFile("." + destination.getFileName() + "." + juce::String((int) ::getpid()) + "-"
                                        + juce::String::toHexString(juce::Random::getSystemRandom().nextInt()) + ".tmp");
        fd = ::open(temporary.getFullPathName().toRawUTF8(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            return errno;
    }
    if (fd < 0)
        return EEXIST;

    int error = 0;
    const auto* bytes = static_cast<const char*>(data);
    for (size_t done = 0; done < size && error == 0;)
    {
        const auto n = ::write(fd, bytes + done, size - done);
        if (n > 0)
            done += (size_t) n;
        else if (n < 0 && errno != EINTR)
            error = errno;
        else if (n == 0)
            error = EIO;
    }
    // Some file systems report a full disk only when the data is flushed, or on close.
    if (error == 0 && ::fdatasync(fd) != 0 && errno != EINVAL && errno != EROFS)
        error = errno;
    struct stat info {};
    if (error == 0 && (::fstat(fd, &info) != 0 || info.st_size != (off_t) size))
        error = EIO;
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error != 0)
        ::unlink(temporary.getFullPathName().toRawUTF8());
    return error;
}
} // namespace

void ignoreFileSizeSignal()
{
    // Every time, not once: a child process or a library may have put the default action back.
    std::signal(SIGXFSZ, SIG_IGN);
}

juce::Result replace(const juce::File& destination, const void* data, size_t size)
{
    juce::File temporary;
    if (const int error = writeTemporary(destination, data, size, temporary))
        return failure(destination, error);
    if (::rename(temporary.getFullPathName().toRawUTF8(), destination.getFullPathName().toRawUTF8()) != 0)
    {
        const int error = errno;
        ::unlink(temporary.getFullPathName().toRawUTF8());
        return failure(destination, error);
    }
    return juce::Result::ok();
}

juce::Result createNew(const juce::File& destination, const void* data, size_t size, bool& nameTaken)
{
    nameTaken = false;
    juce::File temporary;
    if (const int error = writeTemporary(destination, data, size, temporary))
        return failure(destination, error);
    const auto from = temporary.getFullPathName().toStdString(), to = destination.getFullPathName().toStdString();
    // A rename that refuses an existing target; a hard link does the same where the file system
    // cannot rename that way.
    int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS || errno == ENOTSUP))
    {
        result = ::link(from.c_str(), to.c_str());
        const int error = errno;
        ::unlink(from.c_str());
        errno = error;
    }
    if (result != 0)
    {
        const int error = errno;
        ::unlink(from.c_str());
        nameTaken = error == EEXIST;
        return failure(destination, error);
    }
    return juce::Result::ok();
}
} // namespace SafeFileWrite
