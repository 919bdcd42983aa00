#pragma once

#include <cstdint>
#include <string>

#include "../Platform/Export.h"

#include "Groundwork/NaturalArguments.h"

class CbDateTime;

/// Conversion: the text of a value to the value itself, as the readers of the text formats do it.
///
/// - **Rules** Loose in one direction and strict in the other: an integer is the number that a text begins with, a
///   floating number is the whole text. There is no check of ranges, a value is stored in the width of its type.
/// - **Errors** A text that isn't a number raises CException, "Vellum::Conversion::StringToInt" or
///   "Vellum::Conversion::StringToDouble".
/// - **Threads** Any thread. StringToDouble takes the decimal separator of the calling thread's C locale.
namespace Vellum::Conversion
{

/// The integer at the start of the text, up to its first NUL: white space, a sign, digits. `0x` in front makes it
/// hexadecimal, another `0` octal. Whatever follows is ignored. Text without digits is refused, except for `0x`, which
/// is 0. Digits for more than 64 bits give the largest or the smallest value; what fits 64 bits unsigned keeps its
/// bits, so that 18446744073709551615 is -1 and comes back from a conversion to unsigned.
VELLUM_API std::int64_t StringToInt(const std::string& text);

/// The text as a floating number, in all forms of strtod: white space in front, a sign, decimals, an exponent,
/// hexadecimal form, infinity and not-a-number. Nothing may follow, no NUL either. The empty text is 0. Beyond the
/// range of a double it is what strtod gives: infinity, or 0 and its neighbours.
VELLUM_API double StringToDouble(const std::string& text);

/// @name FromString
/// Integers are the low bits of StringToInt, floating numbers are StringToDouble, a float by the ordinary narrowing. A
/// char is the first byte of the text, 0 if it is empty, and a text is copied; these two can't fail. `value` is written
/// only when the conversion has succeeded.
/// @{
VELLUM_API void FromString(const std::string& text, signed char& value);
VELLUM_API void FromString(const std::string& text, unsigned char& value);
VELLUM_API void FromString(const std::string& text, std::int16_t& value);
VELLUM_API void FromString(const std::string& text, std::uint16_t& value);
VELLUM_API void FromString(const std::string& text, std::int32_t& value);
VELLUM_API void FromString(const std::string& text, std::uint32_t& value);
VELLUM_API void FromString(const std::string& text, std::int64_t& value);
VELLUM_API void FromString(const std::string& text, std::uint64_t& value);
VELLUM_API void FromString(const std::string& text, float& value);
VELLUM_API void FromString(const std::string& text, double& value);
VELLUM_API void FromString(const std::string& text, char& value);
VELLUM_API void FromString(const std::string& text, std::string& value);
/// @}

/// Assigns the text up to its first NUL to the date. Text that isn't a date raises CbExceptionConversion,
/// "CbDateTime::operator =", and may have changed some of its fields.
VELLUM_API void FromString(const std::string& text, CbDateTime& value);

/// An integer type beside these, `long long` for instance, by its width and sign.
template <OtherInteger T>
void FromString(const std::string& text, T& value)
{
    ExactInteger<T> exact{};
    FromString(text, exact);
    value = static_cast<T>(exact);
}

} // namespace Vellum::Conversion
