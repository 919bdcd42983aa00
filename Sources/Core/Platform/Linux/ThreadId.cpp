#include "Platform/ThreadId.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace Vellum::Platform
{

std::uint32_t GetCurrentThreadId() noexcept
{
    // Asked once per thread: the call enters the kernel.
    thread_local const auto id = static_cast<std::uint32_t>(::syscall(SYS_gettid));
    return id;
}

} // namespace Vellum::Platform
