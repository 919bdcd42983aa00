#pragma once

#include <cstdint>

namespace Support
{

// What operator new has handed out and not got back, in bytes of usable memory, for all threads together.
std::int64_t GetLiveMemory();

// The highest that was since the last ResetPeakMemory.
std::int64_t GetPeakMemory();
void ResetPeakMemory();

} // namespace Support
