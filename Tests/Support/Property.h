#pragma once

#include <ctime>
#include <functional>

#include "Support/CTape.h"

namespace Support
{

// When a test stops generating: after so many seconds of processor time, or as many as VELLUM_MODEL_SECONDS says.
std::clock_t GetEndOfTest(double seconds);

// Plays a property on that many generated tapes. It tells what it expects as any test does. The shortest tape that
// fails is looked for and reported, with what repeats it: RC_PARAMS="seed=N" in the environment.
void CheckProperty(const std::function<void(CTape&)>& property, int cases = 200);

} // namespace Support
