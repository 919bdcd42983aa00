#include "Platform/StandardError.h"

#include <windows.h>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(StandardError, EndsNoProcessWhereItIsFullOrClosed)
{
    const HANDLE before = ::GetStdHandle(STD_ERROR_HANDLE);
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    ASSERT_TRUE(::CreatePipe(&reading, &writing, nullptr, 0));
    ::SetStdHandle(STD_ERROR_HANDLE, writing);
    WriteToStandardError("read");
    char bytes[5] = {};
    DWORD got = 0;
    EXPECT_TRUE(::ReadFile(reading, bytes, 4, &got, nullptr));
    EXPECT_STREQ(bytes, "read");
    ::CloseHandle(reading);
    WriteToStandardError("nobody reads");
    ::CloseHandle(writing);
    WriteToStandardError("nobody is there");
    ::SetStdHandle(STD_ERROR_HANDLE, nullptr);
    WriteToStandardError("and never was");
    ::SetStdHandle(STD_ERROR_HANDLE, before);
}

} // namespace
