#define _FILE_OFFSET_BITS 64 // sizes beyond 2 GiB, on 32-bit systems too

#include "Platform/CFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "Platform/FilePath.h"
#include "Platform/Posix/Descriptor.h"

namespace Vellum::Platform
{

namespace
{

int Descriptor(std::intptr_t handle) noexcept { return static_cast<int>(handle); }

int Open(const std::wstring& name, int flags)
{
    const std::filesystem::path path = ToFilePath(name);
    return Resume([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0666); });
}

bool IsFolder(const struct stat& status) noexcept { return S_ISDIR(status.st_mode); }

// False if someone else's lock forbids this one. A file system without locks forbids nothing. Devices and pipes are
// there to be shared.
bool Lock(int descriptor, const struct stat& status, int kind) noexcept
{
    return !S_ISREG(status.st_mode) || Resume([&] { return ::flock(descriptor, kind | LOCK_NB); }) == 0 ||
           errno != EWOULDBLOCK;
}

// They have nothing to empty either.
bool Empty(int descriptor, const struct stat& status) noexcept
{
    return !S_ISREG(status.st_mode) || Resume([&] { return ::ftruncate(descriptor, 0); }) == 0;
}

} // namespace

CFile::CFile(CFile&& other) noexcept : handle(std::exchange(other.handle, NoHandle)) {}

CFile& CFile::operator=(CFile&& other) noexcept
{
    take(std::exchange(other.handle, NoHandle));
    return *this;
}

CFile::~CFile() { Close(); }

bool CFile::OpenForReading(const std::wstring& name)
{
    struct stat status;
    if (!take(Open(name, O_RDONLY)))
        return false;
    if (::fstat(Descriptor(handle), &status) == 0 && !IsFolder(status) && Lock(Descriptor(handle), status, LOCK_SH))
        return true;
    Close();
    return false;
}

bool CFile::OpenForWriting(const std::wstring& name)
{
    struct stat status;
    if (!take(Open(name, O_WRONLY | O_CREAT))) // not O_TRUNC: first the lock, then the rest
        return false;
    if (::fstat(Descriptor(handle), &status) == 0 && Lock(Descriptor(handle), status, LOCK_EX) &&
        Empty(Descriptor(handle), status))
        return true;
    Close();
    return false;
}

std::optional<std::uint64_t> CFile::GetSize() const noexcept
{
    struct stat status;
    if (::fstat(Descriptor(handle), &status) != 0 || S_ISFIFO(status.st_mode))
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::size_t> CFile::Read(void* data, std::size_t count) noexcept
{
    auto* const to = static_cast<unsigned char*>(data);
    std::size_t moved = 0;
    while (moved < count)
    {
        const std::size_t wanted = std::min(count - moved, MostAtOnce);
        const ::ssize_t got = Resume([&] { return ::read(Descriptor(handle), to + moved, wanted); });
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        moved += static_cast<std::size_t>(got);
    }
    return moved;
}

bool CFile::Write(const void* data, std::size_t count) noexcept
{
    return WriteToDescriptor(Descriptor(handle), data, count);
}

bool CFile::Close() noexcept
{
    if (handle == NoHandle)
        return false;
    ::flock(Descriptor(handle), LOCK_UN); // a process that was forked meanwhile has the file open still
    // Never called again after an interruption: the descriptor is free by then, and may be somebody else's.
    return ::close(Descriptor(std::exchange(handle, NoHandle))) == 0 || errno == EINTR;
}

// Makes `opened` the file of this object. False if there is none.
bool CFile::take(std::intptr_t opened) noexcept
{
    Close();
    handle = opened;
    return IsOpen();
}

} // namespace Vellum::Platform
