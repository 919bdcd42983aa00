#include "Platform/CNewFile.h"

#include <aclapi.h>
#include <algorithm>
#include <utility>
#include <windows.h>

#include "Platform/Windows/FileHandle.h"
#include "Platform/Windows/LongPath.h"

namespace Vellum::Platform
{
namespace
{

constexpr int MostNames = 1000;
constexpr DWORD Everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Those that a new file takes from the one it replaces. Others tell how a file is stored, and some have the bits of
// what CreateFileW does by the way.
constexpr DWORD HandedOn =
    FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_ENCRYPTED | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

std::error_code ToError(DWORD error) noexcept { return {static_cast<int>(error), std::system_category()}; }
std::error_code LastError() noexcept { return ToError(::GetLastError()); }

// What a link leads to. One that leads nowhere tells that too, as soon as there is a file: it is gone with its handle.
HANDLE OpenBehindLink(const std::wstring& link) noexcept
{
    const HANDLE file = ::CreateFileW(link.c_str(), FILE_READ_ATTRIBUTES, Everybody, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file != INVALID_HANDLE_VALUE)
        return file;
    return ::CreateFileW(link.c_str(), DELETE, Everybody, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

// Where a file is to be: behind all links, also where there is no file yet. Most files that have something instead of
// plain content are no links; they are found where they are.
std::wstring FollowLinks(const std::wstring& target)
{
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return target;
    const SFileHandle file(OpenBehindLink(target));
    const DWORD room = file.IsOpen() ? ::GetFinalPathNameByHandleW(file.file, nullptr, 0, VOLUME_NAME_DOS) : 0;
    std::wstring place(room, L'\0');
    const DWORD size = ::GetFinalPathNameByHandleW(file.file, place.data(), room, VOLUME_NAME_DOS);
    place.resize(size < room ? size : 0);
    return place.empty() ? target : place;
}

// The same in another process, or again in this one, is tried under the next number.
std::wstring MakeName(const std::wstring& place, int number)
{
    return ToSystemName(place + L".new" + std::to_wstring(::GetCurrentProcessId()) + L'-' + std::to_wstring(number));
}

// Whether the process may write a file that is there already. A directory is none.
std::error_code Test(const std::wstring& place, DWORD attributes) noexcept
{
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return std::make_error_code(std::errc::is_a_directory);
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) // the file system may let the system's administrator pass
        return ToError(ERROR_ACCESS_DENIED);
    const SFileHandle file(::CreateFileW(place.c_str(), FILE_WRITE_DATA, Everybody, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen())
        return LastError();
    return ::GetFileType(file.file) == FILE_TYPE_DISK ? std::error_code()
                                                      : std::make_error_code(std::errc::invalid_argument);
}

// Who may do what with a file. A file system that knows none of that has nothing to hand on.
std::error_code CopyPermissions(const std::wstring& from, const std::wstring& to) noexcept
{
    PACL permissions = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetNamedSecurityInfoW(from.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &permissions,
                                nullptr, &descriptor) != ERROR_SUCCESS)
        return {};
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    ::GetSecurityDescriptorControl(descriptor, &control, &revision);
    const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                                                : UNPROTECTED_DACL_SECURITY_INFORMATION;
    std::wstring name = to; // which is only read
    const DWORD error = ::SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance,
                                                nullptr, nullptr, permissions, nullptr);
    ::LocalFree(descriptor);
    return error == ERROR_SUCCESS || error == ERROR_NOT_SUPPORTED ? std::error_code() : ToError(error);
}

// A folder is no file that may not be read, as the system has it.
std::error_code OpeningError(const std::wstring& name) noexcept
{
    const std::error_code error = LastError();
    const DWORD attributes = ::GetFileAttributesW(name.c_str());
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? std::make_error_code(std::errc::is_a_directory) : error;
}

} // namespace

CNewFile::~CNewFile()
{
    if (handle != NoHandle)
        ::CloseHandle(ToHandle(handle));
    if (!name.empty())
        ::DeleteFileW(name.c_str());
}

std::error_code CNewFile::Create(const std::filesystem::path& target)
{
    const std::wstring to = FollowLinks(ToSystemName(target.wstring()));
    place = to;
    const DWORD attributes = ::GetFileAttributesW(to.c_str());
    const bool isReplacement = attributes != INVALID_FILE_ATTRIBUTES;
    if (isReplacement)
        if (const std::error_code error = Test(to, attributes))
            return error;
    std::wstring beside;
    for (int number = 0; handle == NoHandle && number < MostNames; ++number)
    {
        beside = MakeName(to, number);
        handle = ToNumber(::CreateFileW(beside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        isReplacement ? attributes & HandedOn : FILE_ATTRIBUTE_NORMAL, nullptr));
        if (handle == NoHandle && ::GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    if (handle == NoHandle)
        return LastError();
    name = beside;
    return isReplacement ? CopyPermissions(to, beside) : std::error_code();
}

std::error_code CNewFile::Write(const void* data, std::size_t count) noexcept
{
    return WriteToHandle(ToHandle(handle), data, count) ? std::error_code() : LastError();
}

// A file that is open keeps its name.
std::error_code CNewFile::PutInPlace() noexcept
{
    if (!::FlushFileBuffers(ToHandle(handle)) || !::CloseHandle(ToHandle(std::exchange(handle, NoHandle))))
        return LastError();
    if (!::MoveFileExW(name.c_str(), place.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return LastError();
    name.clear();
    return {};
}

std::error_code ReadWholeFile(const std::filesystem::path& name, std::string& bytes)
{
    constexpr std::size_t LeastPiece = 4096;
    const std::wstring path = ToSystemName(name.wstring());
    const SFileHandle file(
        ::CreateFileW(path.c_str(), GENERIC_READ, Everybody, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen())
        return OpeningError(path);
    LARGE_INTEGER size = {};
    if (::GetFileType(file.file) != FILE_TYPE_DISK || !::GetFileSizeEx(file.file, &size))
        size.QuadPart = 0;
    bytes.clear();
    std::size_t piece = std::max(static_cast<std::size_t>(size.QuadPart) + 1, LeastPiece); // one more meets the end
    while (true)
    {
        const std::size_t used = bytes.size();
        bytes.resize(used + piece);
        const std::optional<std::size_t> got = ReadFromHandle(file.file, bytes.data() + used, piece);
        if (!got)
            return LastError();
        bytes.resize(used + *got);
        if (*got < piece)
            return {};
        piece = bytes.size();
    }
}

} // namespace Vellum::Platform
