#include "Support/Check.h"

#include <cstdio>
#include <cstdlib>

namespace Fuzzing
{

void Fail(const char* condition, const char* file, int line)
{
    std::fprintf(stderr, "%s:%d: this does not hold: %s\n", file, line, condition);
    std::abort();
}

} // namespace Fuzzing
