#include "Platform/CodePageDetector.h"

namespace Vellum::Platform
{

unsigned int DetectCodePage(std::span<const unsigned char>) { return 0; }

} // namespace Vellum::Platform
