#include "Platform/ForcedUnwind.h"

#include <exception>
#include <pthread.h>

namespace Vellum::Platform
{

// The system unwinds with something that is no exception of C++ (abi::__forced_unwind, where it has a name at all), so
// no pointer to it can be had.
void PassForcedUnwind()
{
    if (std::current_exception() == nullptr)
        throw;
}

CNoCancellation::CNoCancellation() noexcept { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before); }
CNoCancellation::~CNoCancellation() { ::pthread_setcancelstate(before, nullptr); }

} // namespace Vellum::Platform
