#pragma once

#include <concepts>
#include <type_traits>

#include "Describe/Fields.h"

/// @file
/// Which description a type has.
namespace Vellum::Describing
{

template <class T>
concept HasOwnDescription = requires
{
    T::Describe();
};

template <class T>
concept HasOuterDescription = requires
{
    Describe(Type<T>());
};

/// The description of T, its own before one that stands beside it; SNothing without one.
template <class T>
constexpr auto FindDescription()
{
    if constexpr (HasOwnDescription<T>)
        return T::Describe();
    else if constexpr (HasOuterDescription<T>)
        return Describe(Type<T>());
    else
        return SNothing();
}

template <class T>
inline constexpr auto DescriptionOf = FindDescription<T>();

template <class T>
inline constexpr bool IsFields = false;
template <class Hook, class Alternatives, class... Items>
inline constexpr bool IsFields<CFields<Hook, Alternatives, Items...>> = true;

template <class T>
inline constexpr bool IsNames = false;
template <class Enumeration, std::size_t Count>
inline constexpr bool IsNames<CNames<Enumeration, Count>> = true;

template <class T>
inline constexpr bool IsAlternatives = false;
template <class... T>
inline constexpr bool IsAlternatives<CAlternatives<T...>> = true;

template <class T>
inline constexpr bool IsBase = false;
template <class T>
inline constexpr bool IsBase<CBase<T>> = true;

/// A class with a list of fields, and an enumeration with a list of names.
template <class T>
concept Described = IsFields<std::remove_const_t<decltype(DescriptionOf<T>)>>;

template <class T>
concept Named = IsNames<std::remove_const_t<decltype(DescriptionOf<T>)>>;

/// Whether a description lists fields of T itself, and not of its bases alone.
template <class T, class Item>
inline constexpr bool IsFieldOf = false;
template <class T, class Value>
inline constexpr bool IsFieldOf<T, CField<Value T::*>> = true;

template <class T, class Description>
inline constexpr bool ListsFieldsOf = false;
template <class T, class Hook, class Alternatives, class... Items>
inline constexpr bool ListsFieldsOf<T, CFields<Hook, Alternatives, Items...>> = (IsFieldOf<T, Items> || ...);

/// The alternatives of a variant or a base class; SNothing without any.
template <class T>
constexpr auto FindAlternatives()
{
    if constexpr (Described<T>)
    {
        if constexpr (IsAlternatives<decltype(DescriptionOf<T>.alternatives)>)
            return DescriptionOf<T>.alternatives;
        else if constexpr (HasOwnDescription<T> && HasOuterDescription<T>)
            return Describe(Type<T>());
        else
            return SNothing();
    }
    else
    {
        return DescriptionOf<T>;
    }
}

template <class T>
inline constexpr auto AlternativesOf = FindAlternatives<T>();

template <class T>
concept HasAlternatives = IsAlternatives<std::remove_const_t<decltype(AlternativesOf<T>)>>;

} // namespace Vellum::Describing
