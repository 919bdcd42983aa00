#include "Platform/ForcedUnwind.h"

namespace Vellum::Platform
{

// A thread of this system ends at once or returns from its functions: nothing unwinds its stack but exceptions.
void PassForcedUnwind() {}

CNoCancellation::CNoCancellation() noexcept : before(0) {}
CNoCancellation::~CNoCancellation() { static_cast<void>(before); }

} // namespace Vellum::Platform
