#include "Platform/ThreadId.h"

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Vellum::Platform
{

namespace
{

// Asked once by each thread, since the call enters the kernel. 0 isn't anybody's.
thread_local std::uint32_t known = 0;

// In the forked process, where the one thread that there is has a number of its own.
void Forget() noexcept { known = 0; }

std::uint32_t Ask() noexcept
{
    static const bool isForgotten = ::pthread_atfork(nullptr, nullptr, &Forget) == 0;
    const auto id = static_cast<std::uint32_t>(::syscall(SYS_gettid));
    if (isForgotten)
        known = id;
    return id;
}

} // namespace

std::uint32_t GetCurrentThreadId() noexcept { return known != 0 ? known : Ask(); }

} // namespace Vellum::Platform
