#include "Support/Check.h"

#include <cstdio>
#include <cstdlib>

namespace Fuzzing
{

void Fail(const char* what, const char* file, int line)
{
    std::fprintf(stderr, "%s:%d: failed: %s\n", file, line, what);
    std::abort();
}

} // namespace Fuzzing
