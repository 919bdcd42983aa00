#include "Platform/ThreadId.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(ThreadId, EachThreadHasItsOwn)
{
    EXPECT_EQ(GetCurrentThreadId(), GetNumberOfThread());
    std::thread([] { EXPECT_EQ(GetCurrentThreadId(), GetNumberOfThread()); }).join();
}

} // namespace
