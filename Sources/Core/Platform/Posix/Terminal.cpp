#include "Platform/Terminal.h"

#include <unistd.h>

namespace Vellum::Platform
{

bool IsTerminal(EOutput output) noexcept
{
    return isatty(output == EOutput::Standard ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

} // namespace Vellum::Platform
