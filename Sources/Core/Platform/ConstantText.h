#pragma once

namespace Vellum::Platform
{

// Whether what lies at an address stays there as it is until the process ends, as do the literals of the program
// itself: two texts at such an address are one. False for all else, and where it isn't known.
bool IsConstant(const char* text) noexcept;

} // namespace Vellum::Platform
