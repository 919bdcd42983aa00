#include "Support/Property.h"

#include <cstdlib>

namespace Support
{

std::clock_t GetEndOfTest(double seconds)
{
    if (const char* const asked = std::getenv("VELLUM_MODEL_SECONDS"))
        seconds = std::atof(asked);
    return std::clock() + static_cast<std::clock_t>(seconds * CLOCKS_PER_SEC);
}

} // namespace Support
