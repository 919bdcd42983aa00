#include "Platform/FilePath.h"

#include "Platform/Utf8.h"

namespace Vellum::Platform
{

std::filesystem::path ToFilePath(const std::wstring& name) { return Utf16ToUtf8(name); }

std::error_code CreateFolderOf(const std::wstring& name)
{
    const std::filesystem::path folder = ToFilePath(name).remove_filename();
    std::error_code error;
    if (!folder.empty())
        std::filesystem::create_directories(folder, error);
    return error;
}

} // namespace Vellum::Platform
