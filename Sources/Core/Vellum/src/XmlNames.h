#pragma once

#include <string>
#include <string_view>

namespace Vellum
{

// The name that all values in a sequence have, objects and sequences excepted.
inline constexpr std::string_view SequenceElementName = "elt";

// The element name for a type name: "-" for each "::", found from the left, so that ":::" becomes "-:".
std::string ToElementName(std::string_view typeName);

} // namespace Vellum
