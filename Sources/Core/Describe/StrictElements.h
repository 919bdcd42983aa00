#pragma once

#include "Describe/Places.h"

/// @file
/// Strict: where a sequence ends.
namespace Vellum::Describing
{

/// Raises if there is an element at the index, which then is of another kind than what was asked for.
VELLUM_API void CheckEnd(IContainerReader& reader, std::uint32_t index, const SPlace& place);

/// ... or if there aren't as many elements as there are to be.
VELLUM_API void CheckCount(IContainerReader& reader, std::uint32_t found, std::uint32_t wanted, const SPlace& place);

} // namespace Vellum::Describing
