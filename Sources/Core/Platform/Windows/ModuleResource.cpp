#include "Platform/ModuleResource.h"

#include <string>
#include <windows.h>

namespace Vellum::Platform
{

std::optional<std::span<const unsigned char>> FindModuleResource(HINSTANCE module, int id, std::wstring_view type)
{
    const std::wstring typeName(type);
    if (typeName.find(L'\0') != std::wstring::npos)
        return std::nullopt;
    const HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(static_cast<WORD>(id)), typeName.c_str());
    const HGLOBAL loaded = found == nullptr ? nullptr : ::LoadResource(module, found);
    if (loaded == nullptr)
        return std::nullopt;
    const DWORD size = ::SizeofResource(module, found);
    const auto* const bytes = static_cast<const unsigned char*>(::LockResource(loaded));
    if (size != 0 && bytes == nullptr)
        return std::nullopt;
    return std::span(bytes, size);
}

} // namespace Vellum::Platform
