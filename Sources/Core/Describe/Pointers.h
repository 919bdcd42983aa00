#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include "Describe/Sequences.h"

// Values that may be absent: std::optional and smart pointers.
//
// As a field, what is empty is not written, and what is absent is read as empty. Where absence can't be told, in a
// sequence or in a map, they are a sequence of none or one.
namespace Vellum::Describing
{

template <class T>
using ContentOf = std::remove_cvref_t<decltype(*std::declval<T&>())>;

// A value that may be absent inside one that may be absent.
template <class T>
concept MayBeAbsent = FindStorage<T>()
== EStorage::Possible || FindStorage<T>() == EStorage::Pointer;

template <class T>
struct SPossibleShape;

template <class T, class Maker>
struct SStoredPossible
{
    using Content = ContentOf<T>;

    static constexpr EElement Element = EElement::Sequence;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        if constexpr (!Out::KnowsAbsence)
            SStoredSequence<SPossibleShape<T>, T>::Write(value, out);
        else if (value)
            WriteContent(*value, out);
    }

    template <class In>
    static bool Read(T& value, const In& in)
    {
        if constexpr (!In::KnowsAbsence)
            return SStoredSequence<SPossibleShape<T>, T>::Read(value, in);
        else
            return ReadContent(value, in);
    }

    // What is inside, where it is known to be there.
    template <class Out>
    static void WriteContent(const Content& content, const Out& out)
    {
        if constexpr (MayBeAbsent<Content>)
            SStoredSequence<SPossibleShape<Content>, Content>::Write(content, out);
        else
            Maker::Write(content, out);
    }

    template <class In>
    static bool ReadContent(T& value, const In& in)
    {
        if constexpr (MayBeAbsent<Content>)
        {
            if (SStoredSequence<SPossibleShape<Content>, Content>::Read(Maker::Make(value), in))
                return true;
            value.reset();
            return false;
        }
        else
        {
            return Maker::Read(value, in);
        }
    }
};

template <class T>
struct SPossibleShape
{
    static const char* GetTypeName() { return SequenceName; }

    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        if (value)
            SStored<T>::WriteContent(*value, SElementOut{writer, 0, place});
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        const bool isThere = SStored<T>::ReadContent(value, SElementIn<IsStrict>{reader, 0, place});
        if constexpr (IsStrict)
            CheckEnd(reader, isThere ? 1 : 0, place);
    }
};

// std::optional makes its value inside.
template <class T>
struct SOptionalMaker
{
    static ContentOf<T>& Make(T& value) { return value.emplace(); }

    static void Write(const ContentOf<T>& content, const auto& out) { WriteValue(content, out); }
    static bool Read(T& value, const auto& in)
    {
        if (ReadValue(value.emplace(), in))
            return true;
        value.reset();
        return false;
    }
};

template <class T>
struct SStored<T, EStorage::Possible> : SStoredPossible<T, SOptionalMaker<T>>
{
};

} // namespace Vellum::Describing
