#include "Platform/StandardError.h"

#include <unistd.h>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(StandardError, EndsNoProcessWhereItIsFullOrClosed)
{
    const int before = ::dup(STDERR_FILENO);
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    ::dup2(pipe[1], STDERR_FILENO);
    ::close(pipe[0]);
    WriteToStandardError("nobody reads");
    ::close(STDERR_FILENO);
    WriteToStandardError("nobody is there");
    ::dup2(before, STDERR_FILENO);
    ::close(before);
    ::close(pipe[1]);
}

} // namespace
