#include "Platform/CFile.h"

#include <utility>
#include <windows.h>

#include "Platform/FilePath.h"
#include "Platform/Windows/FileHandle.h"

namespace Vellum::Platform
{

namespace
{

// The share mode is the lock: the system itself keeps everybody else from a file that isn't shared, and doesn't empty
// one that it doesn't give.
HANDLE Open(const std::filesystem::path& path, bool writes) noexcept
{
    return ::CreateFileW(path.c_str(), writes ? GENERIC_WRITE : GENERIC_READ, writes ? 0 : FILE_SHARE_READ, nullptr,
                         writes ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool IsPipe(HANDLE file) noexcept { return ::GetFileType(file) == FILE_TYPE_PIPE; }

} // namespace

std::optional<std::uint64_t> CFile::GetSize() const noexcept
{
    LARGE_INTEGER size;
    if (IsPipe(ToHandle(handle)) || !::GetFileSizeEx(ToHandle(handle), &size))
        return std::nullopt;
    return static_cast<std::uint64_t>(size.QuadPart);
}

bool CFile::MayHold(std::uint64_t count) const noexcept
{
    if (::GetFileType(ToHandle(handle)) != FILE_TYPE_DISK)
        return true;
    const std::optional<std::uint64_t> size = GetSize();
    return !size || *size >= count;
}

std::optional<std::size_t> CFile::Read(void* data, std::size_t count) noexcept
{
    return ReadFromHandle(ToHandle(handle), data, count);
}

bool CFile::Write(const void* data, std::size_t count) noexcept { return WriteToHandle(ToHandle(handle), data, count); }

bool CFile::Close() noexcept { return IsOpen() && ::CloseHandle(ToHandle(std::exchange(handle, NoHandle))) != 0; }

// A pipe's name is there as long as somebody serves it, which may be somebody else just now.
bool CFile::open(const std::wstring& name, bool writes, EPipes pipes)
{
    Close();
    const std::filesystem::path path = ToFilePath(name);
    HANDLE file = Open(path, writes);
    while (file == INVALID_HANDLE_VALUE && ::GetLastError() == ERROR_PIPE_BUSY && pipes == EPipes::Await &&
           ::WaitNamedPipeW(path.c_str(), NMPWAIT_WAIT_FOREVER))
        file = Open(path, writes);
    handle = ToNumber(file);
    if (IsOpen() && (pipes == EPipes::Await || !IsPipe(file)))
        return true;
    Close();
    return false;
}

} // namespace Vellum::Platform
