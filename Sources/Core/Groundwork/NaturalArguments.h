#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace Vellum
{

/// An integer type that is none of the eight that documents know, though it has the width of one: `long long` where
/// std::int64_t is `long`, and `long` where it isn't. The interfaces forward it by its width and sign.
template <class T>
concept OtherInteger = std::same_as<T, long> || std::same_as<T, unsigned long> || std::same_as<T, long long> ||
    std::same_as<T, unsigned long long>;

/// The type of the eight that has the width and sign of an OtherInteger.
template <OtherInteger T>
using ExactInteger =
    std::conditional_t<sizeof(T) == 4, std::conditional_t<std::signed_integral<T>, std::int32_t, std::uint32_t>,
                       std::conditional_t<std::signed_integral<T>, std::int64_t, std::uint64_t>>;

/// A pointer, to a member too, that isn't text and would silently become a bool.
template <class T>
concept OtherPointer = (std::is_pointer_v<T> || std::is_member_pointer_v<T>)&&!std::same_as<T, char*> &&
                       !std::same_as<T, const char*> && //
                       !std::same_as<T, wchar_t*> && !std::same_as<T, const wchar_t*>;

/// An object that turns into such a pointer by itself, as a lambda without captures does.
template <class T>
concept PointerInDisguise = std::is_class_v<T> && requires(const T& object)
{
    requires OtherPointer<decltype(+object)>;
};

/// A character of another type than char, which would silently become a number.
template <class T>
concept OtherCharacter =
    std::same_as<T, wchar_t> || std::same_as<T, char8_t> || std::same_as<T, char16_t> || std::same_as<T, char32_t>;

/// What an overload would take though it isn't meant. Of an enumeration, the compiler would choose the kind by its
/// largest enumerator, and nothing reads it back: whoever stores one says as which integer.
template <class T>
concept Misfit = OtherPointer<T> || PointerInDisguise<T> || OtherCharacter<T> || std::is_enum_v<T>;

} // namespace Vellum
