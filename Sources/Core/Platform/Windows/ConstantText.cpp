#include "Platform/ConstantText.h"

#include <cstdint>
#include <windows.h>

namespace Vellum::Platform
{

namespace
{

const char* GetProgram() noexcept { return reinterpret_cast<const char*>(::GetModuleHandleW(nullptr)); }

const ::IMAGE_NT_HEADERS* GetHeaders(const char* module) noexcept
{
    const auto* const start = reinterpret_cast<const ::IMAGE_DOS_HEADER*>(module);
    return reinterpret_cast<const ::IMAGE_NT_HEADERS*>(module + start->e_lfanew);
}

} // namespace

// Sections of libraries don't count: those may be unloaded, and others loaded in their place.
bool IsConstant(const char* text) noexcept
{
    static const char* const program = GetProgram();
    static const ::IMAGE_NT_HEADERS* const headers = GetHeaders(program);
    const auto offset = reinterpret_cast<std::uintptr_t>(text) - reinterpret_cast<std::uintptr_t>(program);
    const ::IMAGE_SECTION_HEADER* const sections = IMAGE_FIRST_SECTION(headers);
    for (unsigned int index = 0; index < headers->FileHeader.NumberOfSections; ++index)
        if (offset - sections[index].VirtualAddress < sections[index].Misc.VirtualSize)
            return (sections[index].Characteristics & IMAGE_SCN_MEM_WRITE) == 0;
    return false;
}

} // namespace Vellum::Platform
