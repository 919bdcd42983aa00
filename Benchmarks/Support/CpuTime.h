#pragma once

namespace Support
{

// The time that the calling thread has spent on a processor, in seconds. What other programs do meanwhile isn't in it.
double GetCpuTime();

// What the difference of two GetCpuTime in a row is at least; it lies in every time that is taken.
double GetCpuTimeCost();

} // namespace Support
