#include "Platform/FilePath.h"

#include <windows.h>

#include "Platform/Windows/LongPath.h"

namespace Vellum::Platform
{

namespace
{

// What the name of a folder may have, so that there is room for a plain file name in it.
constexpr std::size_t LongestPlainName = MAX_PATH - 13;

// The prefix by which names pass to the file system as they are, and what stands for the two separators in front of a
// server behind it.
constexpr std::wstring_view Prefix = LR"(\\?\)";
constexpr std::wstring_view ServerPrefix = LR"(\\?\UNC\)";
constexpr std::wstring_view Device = LR"(\\.\)";
constexpr std::wstring_view Server = LR"(\\)";

// Absolute, with neither "." nor "/" in it; empty if the system doesn't tell.
std::wstring MakeAbsolute(const std::wstring& name)
{
    std::wstring absolute(name.size() + MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD size =
            ::GetFullPathNameW(name.c_str(), static_cast<DWORD>(absolute.size()), absolute.data(), nullptr);
        const bool isWhole = size < absolute.size();
        absolute.resize(size); // that of the text, or of the memory that it needs
        if (isWhole)
            return absolute;
    }
}

std::error_code Create(const std::filesystem::path& folder)
{
    std::error_code error;
    if (!folder.empty())
        std::filesystem::create_directories(folder, error);
    return error;
}

} // namespace

std::wstring ToSystemName(const std::wstring& name)
{
    if (name.size() < LongestPlainName || name.starts_with(Prefix))
        return name;
    const std::wstring absolute = MakeAbsolute(name);
    if (absolute.size() < LongestPlainName || absolute.starts_with(Prefix) || absolute.starts_with(Device))
        return name;
    if (absolute.starts_with(Server))
        return std::wstring(ServerPrefix) + absolute.substr(Server.size());
    return std::wstring(Prefix) + absolute;
}

std::filesystem::path ToFilePath(const std::wstring& name) { return ToSystemName(name); }

// Of a name with the prefix the standard library takes the drive for one more folder, which isn't there. So the upper
// folders are created by the beginning of the name, which needs none.
std::error_code CreateFolderOf(const std::wstring& name)
{
    if (name.size() >= LongestPlainName)
        if (const std::error_code error =
                Create(std::filesystem::path(name.substr(0, LongestPlainName)).remove_filename()))
            return error;
    return Create(ToFilePath(name).remove_filename());
}

} // namespace Vellum::Platform
