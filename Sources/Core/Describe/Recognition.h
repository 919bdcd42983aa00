#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

#include "Groundwork/IDateTime.h"

#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Describe/Descriptions.h"

/// @file
/// What a type is. Types of the standard library are recognised by what they can do, so that none of its headers has to
/// be included here, and types of other libraries that are made alike are stored as well.
namespace Vellum::Describing
{

template <class T, class... Others>
inline constexpr bool IsOneOf = (std::same_as<T, Others> || ...);

/// The kinds of the contract that are plain values.
template <class T>
concept Kind = IsOneOf<T, bool, char, signed char, unsigned char, std::int16_t, std::uint16_t, std::int32_t,
                       std::uint32_t, std::int64_t, std::uint64_t, float, double, std::string, std::wstring>;

/// The integer kind of a size and sign.
template <std::size_t Size, bool IsSigned>
constexpr auto FindInteger()
{
    if constexpr (Size == 1)
        return std::conditional_t<IsSigned, signed char, unsigned char>();
    else if constexpr (Size == 2)
        return std::conditional_t<IsSigned, std::int16_t, std::uint16_t>();
    else if constexpr (Size == 4)
        return std::conditional_t<IsSigned, std::int32_t, std::uint32_t>();
    else if constexpr (Size == 8)
        return std::conditional_t<IsSigned, std::int64_t, std::uint64_t>();
}

template <class T>
using IntegerOf = decltype(FindInteger<sizeof(T), std::is_signed_v<T>>());

template <class T>
inline constexpr bool IsInteger = std::same_as<T, std::byte>;
template <std::integral T>
inline constexpr bool IsInteger<T> = !std::is_void_v<IntegerOf<T>>;

template <class T>
concept Integer = IsInteger<T>;

/// std::basic_string, std::basic_string_view and their like.
template <class T>
concept TextLike = requires(const T& text)
{
    typename T::traits_type;
    requires IsOneOf<typename T::value_type, char, char8_t, wchar_t, char16_t>;
    text.data();
    text.size();
};

template <class T>
concept PathLike = requires(const T& path)
{
    T::preferred_separator;
    path.generic_u8string();
};

/// Bytes in one piece: containers of the standard library, arrays and spans, and CbArray.
template <class Pointer>
inline constexpr bool PointsToBytes =
    IsOneOf<std::remove_cv_t<std::remove_pointer_t<Pointer>>, unsigned char, std::byte>;

template <class T>
concept StandardBytes = requires(const T& bytes)
{
    requires PointsToBytes<decltype(std::data(bytes))>;
    std::size(bytes);
};

template <class T>
concept FoundationBytes = requires(const T& bytes)
{
    requires PointsToBytes<decltype(bytes.GetData())>;
    requires std::same_as<decltype(bytes.GetSize()), std::uint32_t>;
};

template <class T>
concept OptionalLike = requires(T& optional)
{
    typename T::value_type;
    optional.has_value();
    optional.emplace();
    optional.reset();
    *optional;
};

template <class T>
concept PointerLike = requires(T& pointer)
{
    requires std::same_as<decltype(pointer.get()), typename T::element_type*>;
    requires !std::is_pointer_v<T>;
    pointer.reset();
    *pointer;
};

template <class T>
concept DurationLike = requires(const T& duration)
{
    typename T::period;
    requires std::same_as<decltype(duration.count()), typename T::rep>;
};

/// Of the system's clock: the only one that knows time_t.
template <class T>
concept TimePointLike = requires(const T& time)
{
    T::clock::to_time_t(T::clock::now());
    requires DurationLike<decltype(time.time_since_epoch())>;
};

template <class T>
concept VariantLike = requires(const T& variant)
{
    variant.index();
    variant.valueless_by_exception();
};

template <class T>
concept MapLike = requires(T& map)
{
    typename T::key_type;
    typename T::mapped_type;
    map.clear();
    map.begin();
    map.end();
};

template <class T>
inline constexpr bool IsNarrowText = false;
template <TextLike T>
inline constexpr bool IsNarrowText<T> = sizeof(typename T::value_type) == 1;

/// With keys that are narrow texts, each of them once.
template <class T>
concept TextKeyedMap = MapLike<T> && requires(T& map, typename T::key_type key)
{
    requires IsNarrowText<typename T::key_type>;
    map.try_emplace(key);
};

template <class T>
concept SequenceLike = requires(T& sequence)
{
    typename T::value_type;
    sequence.begin();
    sequence.end();
    sequence.clear();
};

template <class T>
concept SpanLike = requires(const T& span)
{
    typename T::element_type;
    span.subspan(0);
};

template <class T>
concept TupleLike = requires
{
    std::tuple_size<T>::value;
};

template <class T>
concept ArrayLike = std::is_array_v<T> || SpanLike<T> || requires(T& array)
{
    std::tuple_size<T>::value;
    array.fill(array[0]);
};

template <class T>
concept ComplexLike = requires(const T& number)
{
    typename T::value_type;
    T(number.real(), number.imag());
};

template <class T>
concept BitsetLike = requires(T& bits)
{
    bits.to_ulong();
    bits.flip(0);
    bits.to_string();
};

/// Whether a value can be changed in size or content, so that it can be read: spans and views can't.
template <class T>
inline constexpr bool IsOwner = !SpanLike<T> && !requires(T & view)
{
    view.remove_prefix(1);
};

} // namespace Vellum::Describing
