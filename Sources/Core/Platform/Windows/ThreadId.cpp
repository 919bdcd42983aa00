#include "Platform/ThreadId.h"

#include <windows.h>

namespace Vellum::Platform
{

std::uint32_t GetCurrentThreadId() noexcept { return ::GetCurrentThreadId(); }

} // namespace Vellum::Platform
