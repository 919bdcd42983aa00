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
#include "Platform/ForcedUnwind.h"
#include "Platform/Posix/Descriptor.h"

namespace Vellum::Platform
{

namespace
{

int Descriptor(std::intptr_t handle) noexcept { return static_cast<int>(handle); }

int Open(const std::wstring& name, int flags, CFile::EPipes pipes)
{
    const std::filesystem::path path = ToFilePath(name);
    const auto open = [&](int waiting)
    { return Resume([&] { return ::open(path.c_str(), flags | waiting | O_CLOEXEC | O_NOCTTY, 0666); }); };
    const int descriptor = open(pipes == CFile::EPipes::Await ? 0 : O_NONBLOCK);
    // Somebody who has a lease of the file returns it to whoever waits. Only a regular file can be leased.
    return descriptor == -1 && errno == EWOULDBLOCK ? open(0) : descriptor;
}

// From here on, reading and writing wait.
bool Wait(int descriptor) noexcept { return ::fcntl(descriptor, F_SETFL, 0) == 0; }

// False if someone else's lock forbids this one. A file system without locks forbids nothing.
bool Lock(int descriptor, int kind) noexcept
{
    return Resume([&] { return ::flock(descriptor, kind | LOCK_NB); }) == 0 || errno != EWOULDBLOCK;
}

bool Empty(int descriptor) noexcept
{
    return Resume([&] { return ::ftruncate(descriptor, 0); }) == 0;
}

// Devices and pipes are there to be shared, and have nothing to empty either.
bool MakeReady(int descriptor, bool writes, CFile::EPipes pipes) noexcept
{
    struct stat status;
    if (::fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode) ||
        (S_ISFIFO(status.st_mode) && pipes == CFile::EPipes::Refuse) || !Wait(descriptor))
        return false;
    return !S_ISREG(status.st_mode) || (Lock(descriptor, writes ? LOCK_EX : LOCK_SH) && (!writes || Empty(descriptor)));
}

} // namespace

std::optional<std::uint64_t> CFile::GetSize() const noexcept
{
    struct stat status;
    if (::fstat(Descriptor(handle), &status) != 0 || S_ISFIFO(status.st_mode))
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

// Files that the kernel makes up (/proc) tell a size of 0 and have more: the last byte is looked for.
bool CFile::MayHold(std::uint64_t count) const noexcept
{
    const CNoCancellation scope;
    struct stat status;
    if (::fstat(Descriptor(handle), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::uint64_t>(status.st_size) >= count)
        return true;
    char last;
    return Resume([&] { return ::pread(Descriptor(handle), &last, 1, static_cast<::off_t>(count - 1)); }) != 0;
}

std::optional<std::size_t> CFile::Read(void* data, std::size_t count) noexcept
{
    const CNoCancellation scope;
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
    if (!IsOpen())
        return false;
    const CNoCancellation scope;
    ::flock(Descriptor(handle), LOCK_UN); // a process that was forked meanwhile has the file open still
    // Never called again after an interruption: the descriptor is free by then, and may be somebody else's.
    return ::close(Descriptor(std::exchange(handle, NoHandle))) == 0 || errno == EINTR;
}

bool CFile::open(const std::wstring& name, bool writes, EPipes pipes)
{
    const CNoCancellation scope;
    Close();
    handle = Open(name, writes ? O_WRONLY | O_CREAT : O_RDONLY, pipes); // not O_TRUNC: first the lock, then the rest
    if (IsOpen() && MakeReady(Descriptor(handle), writes, pipes))
        return true;
    Close();
    return false;
}

} // namespace Vellum::Platform
