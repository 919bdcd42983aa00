#include "Platform/FilePath.h"

#include "Platform/Utf8.h"

namespace Vellum::Platform
{

std::filesystem::path ToFilePath(const std::wstring& name) { return Utf16ToUtf8(name); }

} // namespace Vellum::Platform
