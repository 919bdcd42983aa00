#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace Vellum
{

// An integer type that is none of the eight that documents know, though it has the width of one: `long long` where
// std::int64_t is `long`, and `long` where it isn't. The interfaces forward it by its width and sign.
template <class T>
concept OtherInteger = std::same_as<T, long> || std::same_as<T, unsigned long> || std::same_as<T, long long> ||
    std::same_as<T, unsigned long long>;

// The type of the eight that has the width and sign of an OtherInteger.
template <OtherInteger T>
using ExactInteger =
    std::conditional_t<sizeof(T) == 4, std::conditional_t<std::signed_integral<T>, std::int32_t, std::uint32_t>,
                       std::conditional_t<std::signed_integral<T>, std::int64_t, std::uint64_t>>;

// A pointer, to a member too, that isn't text and would silently become a bool.
template <class T>
concept OtherPointer = (std::is_pointer_v<T> || std::is_member_pointer_v<T>)&&!std::same_as<T, char*> &&
                       !std::same_as<T, const char*> && //
                       !std::same_as<T, wchar_t*> && !std::same_as<T, const wchar_t*>;

} // namespace Vellum
