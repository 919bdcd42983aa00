#include "Platform/Windows/FileHandle.h"

#include <algorithm>
#include <windows.h>

namespace Vellum::Platform
{

namespace
{

// A transfer counts in 32 bits, and systems and file servers have their own limits below that.
constexpr std::size_t MostAtOnce = std::size_t{1} << 30;

DWORD Piece(std::size_t count) noexcept { return static_cast<DWORD>(std::min(count, MostAtOnce)); }

// The other end of a pipe is closed when everything from there has been read.
bool IsEnd(DWORD error) noexcept { return error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF; }

} // namespace

SFileHandle::SFileHandle(void* file) noexcept : file(file) {}
SFileHandle::~SFileHandle()
{
    if (IsOpen())
        ::CloseHandle(file);
}

bool SFileHandle::IsOpen() const noexcept { return file != INVALID_HANDLE_VALUE; }

std::optional<std::size_t> ReadFromHandle(void* file, void* data, std::size_t count) noexcept
{
    auto* const to = static_cast<unsigned char*>(data);
    const bool isPipe = ::GetFileType(file) == FILE_TYPE_PIPE;
    std::size_t moved = 0;
    while (moved < count)
    {
        DWORD got = 0;
        if (!::ReadFile(file, to + moved, Piece(count - moved), &got, nullptr))
        {
            const DWORD error = ::GetLastError();
            if (IsEnd(error))
                break;
            if (error != ERROR_MORE_DATA) // the rest of a pipe's message comes next
                return std::nullopt;
        }
        else if (got == 0 && !isPipe) // somebody may send nothing through a pipe, which isn't its end
            break;
        moved += got;
    }
    return moved;
}

bool WriteToHandle(void* file, const void* data, std::size_t count) noexcept
{
    const auto* from = static_cast<const unsigned char*>(data);
    while (count > 0)
    {
        DWORD moved = 0;
        if (!::WriteFile(file, from, Piece(count), &moved, nullptr))
            return false;
        if (moved == 0) // a full pipe that doesn't wait
        {
            ::SetLastError(ERROR_WRITE_FAULT);
            return false;
        }
        from += moved;
        count -= moved;
    }
    return true;
}

} // namespace Vellum::Platform
