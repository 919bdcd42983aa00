#pragma once

#include <cstdint>

namespace Vellum
{

// How many levels of objects and sequences, the root among them, a reader follows before it refuses a document: deep
// enough for any data that people make, and shallow enough for a stack of half a megabyte. Writers have no limit of
// their own.
inline constexpr std::uint32_t MaxDepth = 1024;

} // namespace Vellum
