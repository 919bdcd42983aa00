#pragma once

#include <cerrno>
#include <cstddef>

namespace Vellum::Platform
{

// What all that works with the system's file descriptors has in common.

// More than systems move in one call is never asked for at once.
inline constexpr std::size_t MostAtOnce = std::size_t{1} << 30;

// Calls until no signal comes between. The result is that of the call.
template <class Call>
auto Resume(const Call& call) noexcept
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

// Writes all of the `count` bytes. False if that fails; any part of them may then have been written. The signals by
// which a failed write would end the process are held back.
bool WriteToDescriptor(int descriptor, const void* data, std::size_t count) noexcept;

} // namespace Vellum::Platform
