#pragma once

#include <cstddef>

namespace Vellum
{

// Most characters that FormatReal writes for a precision: a sign, "0.0000" in front of the digits, or the digits with
// their point and an exponent such as "e-308".
constexpr std::size_t RealTextSize(int precision) { return static_cast<std::size_t>(precision) + 8; }

// The text of a number as printf gives it for "%.*g", or for "%#.*g" if `showPoint` is set, in the C locale. Precision
// is 2 to 17. Writes to `text`, which has room for RealTextSize(precision), and returns the end, which isn't
// terminated.
char* FormatReal(char* text, double value, int precision, bool showPoint);

} // namespace Vellum
