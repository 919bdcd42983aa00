#include "Platform/StandardError.h"

#include <unistd.h>

#include "Platform/Posix/Descriptor.h"

namespace Vellum::Platform
{

void WriteToStandardError(std::string_view text) noexcept
{
    WriteToDescriptor(STDERR_FILENO, text.data(), text.size());
}

} // namespace Vellum::Platform
