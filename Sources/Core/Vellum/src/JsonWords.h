#pragma once

#include <string_view>

namespace Vellum
{

// Whether a text is a number with digits, a point and an exponent, zeros in front or not.
bool IsDecimal(std::string_view text);

// Whether it is what the library's own writers make of numbers that have no digits: `inf` and `nan`, with a sign or
// not.
bool IsSpecialReal(std::string_view text);

// Whether a word of a JSON document is a number: digits that don't begin with a zero, a point, an exponent; or what the
// library's own writers make of numbers that JSON doesn't have, `inf` and `nan`.
bool IsJsonNumber(std::string_view word);

} // namespace Vellum
