#pragma once

#include <cstdint>

namespace Support
{

// Counts what the program obtains from malloc and its like, operator new included, between the two calls. At other
// times nothing is counted, so that the time that is measured isn't the counting's. For programs of one thread.
void StartPeakMemory();

// The most that was held at once of what was obtained since, in bytes of usable memory.
std::int64_t StopPeakMemory();

} // namespace Support
