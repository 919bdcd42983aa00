#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

class IDateTime;

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

// A blob as one argument.
struct SBlob
{
    std::size_t size; // bytes
    const void* data;
};

// One kind of value: its type at the interfaces and the tag that stands for it in binary documents.
template <class T, std::uint8_t TagOfKind>
struct SKind
{
    using Type = T;
    static constexpr std::uint8_t Tag = TagOfKind;
};

template <class... Kind>
struct SKindList
{
    static constexpr std::size_t Count = sizeof...(Kind);
};

// The eighteen kinds, in one place, in the order in which the sections of a binary record are emitted: char stands
// between double and narrow text. Whatever the library does for each kind is made from this list.
using ValueKinds = SKindList<SKind<bool, 0>, SKind<unsigned char, 2>, SKind<signed char, 3>, SKind<std::uint16_t, 4>,
                             SKind<std::int16_t, 5>, SKind<std::uint32_t, 6>, SKind<std::int32_t, 7>,
                             SKind<std::uint64_t, 8>, SKind<std::int64_t, 9>, SKind<float, 10>, SKind<double, 11>,
                             SKind<char, 1>, SKind<std::string, 12>, SKind<std::wstring, 13>, SKind<IDateTime, 14>,
                             SKind<SBlob, 15>, SKind<ISerializable, 16>, SKind<ISerializableContainer, 17>>;

template <class T, class Kinds>
struct STagOf;

template <class T, std::uint8_t Tag, class... Rest>
struct STagOf<T, SKindList<SKind<T, Tag>, Rest...>>
{
    static constexpr std::uint8_t Value = Tag;
};
template <class T, class Other, class... Rest>
struct STagOf<T, SKindList<Other, Rest...>> : STagOf<T, SKindList<Rest...>>
{
};

// The tag of the kind with the type T.
template <class T>
inline constexpr std::uint8_t TagOf = STagOf<T, ValueKinds>::Value;

template <class... Kind>
constexpr auto MakeNumberWidths(SKindList<Kind...>)
{
    std::array<std::uint8_t, sizeof...(Kind)> widths{};
    const auto add = [&]<class T>(std::uint8_t tag, const T*)
    {
        if constexpr (std::is_arithmetic_v<T>)
            widths[tag] = sizeof(T);
    };
    (add(Kind::Tag, static_cast<const typename Kind::Type*>(nullptr)), ...);
    return widths;
}

// By tag: the bytes that a number is stored in, and 0 for all that isn't one.
inline constexpr auto NumberWidths = MakeNumberWidths(ValueKinds());

// Tags that code has to name.
inline constexpr std::uint8_t TagDate = TagOf<IDateTime>;
inline constexpr std::uint8_t TagBlob = TagOf<SBlob>;
inline constexpr std::uint8_t TagObject = TagOf<ISerializable>;
inline constexpr std::uint8_t TagSequence = TagOf<ISerializableContainer>;

// How a value of a kind is passed to a writer: numbers by value, everything else by reference.
template <class T>
using KindArgument = std::conditional_t<std::is_arithmetic_v<T>, T, const T&>;

} // namespace Vellum
