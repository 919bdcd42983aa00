#include "Platform/ThreadId.h"

#include <sys/wait.h>
#include <unistd.h>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

std::uint32_t GetNumber() { return static_cast<std::uint32_t>(::gettid()); }

TEST(ThreadId, EachThreadHasItsOwnAndSoHasAForkedProcess)
{
    EXPECT_EQ(GetCurrentThreadId(), GetNumber());
    std::thread([] { EXPECT_EQ(GetCurrentThreadId(), GetNumber()); }).join();
    const ::pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        ::_exit(GetCurrentThreadId() == GetNumber() ? 0 : 1);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(GetCurrentThreadId(), GetNumber());
}

} // namespace
