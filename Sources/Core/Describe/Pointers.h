#pragma once

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

#include "Describe/Sequences.h"

/// @file
/// Values that may be absent: std::optional, and pointers that own.
///
/// As a field, what is empty is not written, and what is absent is read as empty. Where absence can't be told, in a
/// sequence, in a map, or inside another value that may be absent, an optional value is a sequence of none or one. A
/// pointer stands there as what it points to, and a null pointer can't be stored.
namespace Vellum::Describing
{

template <class T>
using ContentOf = std::remove_cvref_t<decltype(*std::declval<T&>())>;

template <class T>
concept MayBeAbsent = OptionalLike<T> || PointerLike<T>;

/// A sequence of none or one.
template <class T>
struct SPossibleShape
{
    static const char* GetTypeName() { return SequenceName; }

    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        if (value)
            SStored<T>::WriteContent(value, SElementOut{writer, 0, place});
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        const bool isThere = SStored<T>::ReadContent(value, SElementIn<IsStrict>{reader, 0, place});
        if constexpr (IsStrict)
            CheckEnd(reader, isThere ? 1 : 0, place);
    }
};

template <class T>
using SPossible = SStoredSequence<SPossibleShape<T>, T>;

/// What is inside, where it is known to be there.
template <class Content>
using SContent = std::conditional_t<MayBeAbsent<Content>, SPossible<Content>, SStored<Content>>;

template <class T>
struct SStored<T, EStorage::Optional>
{
    using Content = ContentOf<T>;

    static constexpr EElement Element = EElement::Sequence;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        if constexpr (!Out::KnowsAbsence)
            SPossible<T>::Write(value, out);
        else if (value)
            WriteContent(value, out);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        if constexpr (!In::KnowsAbsence)
            return SPossible<T>::Read(value, in);
        else
            return ReadContent(value, in);
    }

    static void WriteContent(const T& value, const auto& out) { SContent<Content>::Write(*value, out); }
    static bool ReadContent(T& value, const auto& in)
    {
        if (SContent<Content>::Read(value.emplace(), in))
            return true;
        value.reset();
        return false;
    }
};

/// Of a class that lists what a pointer to it may point to; see Variants.h.
template <class Pointer>
struct SStoredBase;

/// Of any other type.
template <class T>
struct SStoredPointer
{
    using Content = ContentOf<T>;

    static constexpr EElement Element = SContent<Content>::Element;

    static void Write(const T& value, const auto& out) { SContent<Content>::Write(*value, out); }
    static bool Read(T& value, const auto& in)
    {
        if constexpr (std::default_initializable<Content>)
        {
            auto object = std::make_unique<Content>();
            if (!SContent<Content>::Read(*object, in))
                return false;
            value = std::move(object);
            return true;
        }
        else
        {
            CheckDefault<Content>();
            return false;
        }
    }
};

template <class T>
struct SStored<T, EStorage::Pointer>
{
    static constexpr bool IsToBase = HasAlternatives<ContentOf<T>>;

    using Stored = typename std::conditional_t<IsToBase, std::type_identity<SStoredBase<T>>,
                                               std::type_identity<SStoredPointer<T>>>::type;

    static constexpr EElement Element = Stored::Element;

    /// @name Write, Read
    /// An object of a class with alternatives can do without one.
    /// @{
    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        if (value != nullptr || (IsToBase && !Out::KnowsAbsence))
            Stored::Write(value, out);
        else if constexpr (!Out::KnowsAbsence)
            RaiseAt(out.GetPlace(), "A null pointer can't be stored as an element or an entry.");
    }
    static bool Read(T& value, const auto& in)
    {
        if (Stored::Read(value, in))
            return true;
        value.reset();
        return false;
    }
    /// @}

    static void WriteContent(const T& value, const auto& out) { Stored::Write(value, out); }
    static bool ReadContent(T& value, const auto& in) { return Read(value, in); }
};

} // namespace Vellum::Describing
