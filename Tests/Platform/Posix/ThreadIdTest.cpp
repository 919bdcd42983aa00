#include "Platform/ThreadId.h"

#include <sys/wait.h>
#include <unistd.h>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(ThreadId, AForkedProcessHasItsOwn)
{
    EXPECT_EQ(GetCurrentThreadId(), GetNumberOfThread());
    const ::pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        ::_exit(GetCurrentThreadId() == GetNumberOfThread() ? 0 : 1);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(GetCurrentThreadId(), GetNumberOfThread());
}

} // namespace
