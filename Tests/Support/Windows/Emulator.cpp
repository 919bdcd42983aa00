#include "Support/Windows/Emulator.h"

#include <algorithm>
#include <iterator>
#include <windows.h>

#include "Support/System.h"

namespace Support::Emulator
{

bool IsThere() { return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

bool ReplacesOpenFiles() { return IsThere(); }

} // namespace Support::Emulator

namespace Support
{

bool LacksCodePage(unsigned int codePage)
{
    constexpr unsigned int Lacking[] = {50220, 50225, 51932, 51936, 51949, 54936};
    return Emulator::IsThere() && std::ranges::find(Lacking, codePage) != std::end(Lacking);
}

} // namespace Support
