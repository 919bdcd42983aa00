#pragma once

#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>

#include "Support/CTape.h"

namespace Support
{

// Ends a property that doesn't hold.
struct SBroken : std::runtime_error
{
    using std::runtime_error::runtime_error;
};
#define HOLDS(condition)                                                                                               \
    ((condition) ? void()                                                                                              \
                 : throw Support::SBroken(std::string(__FILE__) + ":" + std::to_string(__LINE__) + ": " #condition))

// When a test stops generating: after so many seconds of processor time, or as many as VELLUM_MODEL_SECONDS says.
std::clock_t GetEndOfTest(double seconds);

// Plays a property on that many generated tapes. It tells what it expects as any test does, or by HOLDS. A tape that
// fails is reported, with what repeats it: RC_PARAMS="seed=N" in the environment. With RapidCheck the shortest one is
// looked for first; without, the tapes are those of a plain generator. Every round has other ones. False if it failed.
bool CheckProperty(const std::function<void(CTape&)>& property, int cases = 200, unsigned int round = 0);

} // namespace Support
