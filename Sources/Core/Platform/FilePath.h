#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace Vellum::Platform
{

// The system's form of a file name given as UTF-16, one code unit in each element, whatever the width of wchar_t.
// std::filesystem::path can't be made from such a name directly where wchar_t is wider. Only a failed allocation is
// raised; a lone surrogate is replaced where the system's names can't hold one.
std::filesystem::path ToFilePath(const std::wstring& name);

// Creates the folder of a file with all that it lies in, as far as they aren't there. The system's error, or none; only
// a failed allocation is raised.
std::error_code CreateFolderOf(const std::wstring& name);

} // namespace Vellum::Platform
