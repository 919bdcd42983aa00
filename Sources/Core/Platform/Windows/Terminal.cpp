#include "Platform/Terminal.h"

#include <windows.h>

namespace Vellum::Platform
{

bool IsTerminal(EOutput output) noexcept
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(output == EOutput::Standard ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE),
                            &mode) != 0;
}

} // namespace Vellum::Platform
