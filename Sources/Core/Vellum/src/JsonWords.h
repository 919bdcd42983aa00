#pragma once

#include <string_view>

namespace Vellum
{

// Whether a word of a JSON document is a number: digits that don't begin with a zero, a point, an exponent; or what the
// library's own writers make of numbers that JSON doesn't have, `inf` and `nan`.
bool IsJsonNumber(std::string_view word);

} // namespace Vellum
