#pragma once

#include <cstdint>

namespace Vellum::Platform
{

// The system's number of the calling thread, the one that debuggers and the system's own tools show.
std::uint32_t GetCurrentThreadId() noexcept;

} // namespace Vellum::Platform
