#include "Platform/StandardError.h"

#include <unistd.h>

#include "Platform/Posix/Descriptor.h"

void WriteToStandardError(std::string_view text) noexcept
{
    WriteToDescriptor(STDERR_FILENO, text.data(), text.size());
}
