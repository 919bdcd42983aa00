#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "Groundwork/IDateTime.h"

#include "Describe/Places.h"

/// @file
/// Strict: the texts of JSON and XML, read for exactly what they say.
namespace Vellum::Describing
{

/// @name ReadExactSigned, ReadExactUnsigned
/// A decimal integer and nothing else, of a type with these limits; raises otherwise.
/// @{
VELLUM_API std::int64_t ReadExactSigned(const std::string& text, std::int64_t lowest, std::int64_t highest,
                                        const SPlace& place);
VELLUM_API std::uint64_t ReadExactUnsigned(const std::string& text, std::uint64_t highest, const SPlace& place);
/// @}

/// The smallest number that is an infinity as T. What lies a little above the largest float, such as its nine digits,
/// is rounded to it.
template <std::floating_point T>
inline constexpr double TooLarge = std::same_as<T, float> ? 0x1.ffffffp127 : std::numeric_limits<double>::infinity();

/// A number as JSON or C print it, infinities and not-a-number among them; raises for anything else, and for numbers
/// from `tooLarge` on.
VELLUM_API double ReadExactReal(const std::string& text, double tooLarge, const SPlace& place);

/// Raises for anything but `true` and `false`.
VELLUM_API bool ReadExactBool(const std::string& text, const SPlace& place);

/// Raises for more than one byte.
VELLUM_API void CheckCharacter(const std::string& text, const SPlace& place);

/// Raises if the fields are no valid date of the years 1601 to 30827.
VELLUM_API void CheckDate(const IDateTime& date, const SPlace& place);

/// Raises for what is no Base64 all through.
VELLUM_API void CheckBase64(const std::string& text, const SPlace& place);

template <class T>
T ConvertExactly(const std::string& text, const SPlace& place)
{
    if constexpr (std::same_as<T, bool>)
        return ReadExactBool(text, place);
    else if constexpr (std::floating_point<T>)
        return static_cast<T>(ReadExactReal(text, TooLarge<T>, place));
    else if constexpr (std::is_signed_v<T>)
        return static_cast<T>(
            ReadExactSigned(text, std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), place));
    else
        return static_cast<T>(ReadExactUnsigned(text, std::numeric_limits<T>::max(), place));
}

/// A value of a text document. Texts are what they are, all others are taken from their text.
template <class T, class In>
bool ReadExactText(T& value, const In& in)
{
    if constexpr (std::same_as<T, std::string> || std::same_as<T, std::wstring>)
    {
        return in.Get(value);
    }
    else
    {
        std::string text;
        if (!in.Get(text))
            return false;
        if constexpr (std::same_as<T, char>)
        {
            CheckCharacter(text, in.GetPlace());
            return in.Get(value);
        }
        else
        {
            value = ConvertExactly<T>(text, in.GetPlace());
            return true;
        }
    }
}

} // namespace Vellum::Describing
