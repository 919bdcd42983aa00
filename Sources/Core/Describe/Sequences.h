#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "Describe/Adapters.h"
#include "Describe/StrictElements.h"

/// @file
/// Containers, arrays, pairs and tuples: sequences of the contract.
namespace Vellum::Describing
{

inline constexpr const char* SequenceName = "sequence";

/// The elements of a pair in a map are const.
template <class T>
struct SElementOf
{
    using Type = T;
};
template <template <class...> class Pair, class Key, class Value>
struct SElementOf<Pair<const Key, Value>>
{
    using Type = Pair<Key, Value>;
};

/// A container that grows. What it had before is gone.
template <class T>
struct SSequenceShape
{
    using Element = typename SElementOf<typename T::value_type>::Type;

    static const char* GetTypeName() { return SequenceName; }

    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        std::uint32_t index = 0;
        for (auto&& element : value)
            WriteValue(static_cast<const Element&>(element), SElementOut{writer, index++, place});
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        CheckDefault<Element>();
        value.clear();
        std::uint32_t index = 0;
        if constexpr (std::default_initializable<Element>)
            while (readElement(value, SElementIn<IsStrict>{reader, index, place}))
                ++index;
        if constexpr (IsStrict)
            CheckEnd(reader, index, place);
    }

private:
    // Elements are made where they stay, if they can be.
    static constexpr bool IsFilledInPlace = requires(T & value)
    {
        {
            value.emplace_back()
            } -> std::same_as<Element&>;
        value.pop_back();
    };

    template <class In>
    static bool readElement(T& value, const In& in)
    {
        if constexpr (IsFilledInPlace)
        {
            if (ReadValue(value.emplace_back(), in))
                return true;
            value.pop_back();
            return false;
        }
        else
        {
            Element element{};
            if (!ReadValue(element, in))
                return false;
            value.insert(value.end(), std::move(element));
            return true;
        }
    }
};

template <class T>
struct SStored<T, EStorage::Sequence> : SStoredSequence<SSequenceShape<T>, T>
{
};

/// A number of elements that the type decides. A shorter sequence leaves the others as they were.
template <class T>
struct SFixedShape
{
    static const char* GetTypeName() { return SequenceName; }

    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        std::uint32_t index = 0;
        for (const auto& element : value)
            WriteValue(element, SElementOut{writer, index++, place});
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        CheckOwner<T>();
        if constexpr (IsOwner<T>)
        {
            std::uint32_t index = 0;
            for (auto& element : value)
            {
                if (!ReadValue(element, SElementIn<IsStrict>{reader, index, place}))
                    break;
                ++index;
            }
            if constexpr (IsStrict)
                CheckCount(reader, index, static_cast<std::uint32_t>(std::size(value)), place);
        }
    }
};

template <class T>
struct SStored<T, EStorage::FixedSequence> : SStoredSequence<SFixedShape<T>, T>
{
};

/// The only element of a sequence.
template <class T>
struct SWrappedShape
{
    static const char* GetTypeName() { return SequenceName; }
    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        WriteValue(value, SElementOut{writer, 0, place});
    }
    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        const bool isThere = ReadValue(value, SElementIn<IsStrict>{reader, 0, place});
        if constexpr (IsStrict)
            CheckCount(reader, isThere ? 1 : 0, 1, place);
    }
};

template <class T>
using SWrapped = SStoredSequence<SWrappedShape<T>, T>;

/// Pairs and tuples. Elements of different kinds are wrapped, since a sequence of a binary document has one kind.
template <class T, class Indices = std::make_index_sequence<std::tuple_size<T>::value>>
struct STupleShape;

template <class T, std::size_t... Indices>
struct STupleShape<T, std::index_sequence<Indices...>>
{
    template <std::size_t Index>
    using ElementAt = std::remove_const_t<typename std::tuple_element<Index, T>::type>;

    static constexpr bool IsUniform = []
    {
        const EElement elements[] = {SStored<ElementAt<Indices>>::Element..., EElement::Bool};
        for (std::size_t index = 1; index < sizeof...(Indices); ++index)
            if (elements[index] != elements[0])
                return false;
        return true;
    }();

    static const char* GetTypeName() { return SequenceName; }

    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        (writeElement(get<Indices>(value), SElementOut{writer, Indices, place}), ...);
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        [[maybe_unused]] std::uint32_t count = 0;
        [[maybe_unused]] const bool isComplete =
            (readElement(get<Indices>(value), SElementIn<IsStrict>{reader, Indices, place}, count) && ...);
        if constexpr (IsStrict)
            CheckCount(reader, count, sizeof...(Indices), place);
    }

private:
    template <class Element>
    using Stored = std::conditional_t<IsUniform, SStored<Element>, SWrapped<Element>>;

    template <class Element>
    static void writeElement(const Element& element, const SElementOut& out)
    {
        Stored<Element>::Write(element, out);
    }
    template <class Element, class In>
    static bool readElement(Element& element, const In& in, std::uint32_t& count)
    {
        const bool isThere = Stored<Element>::Read(element, in);
        count += isThere ? 1 : 0;
        return isThere;
    }
};

template <class T>
struct SStored<T, EStorage::Tuple> : SStoredSequence<STupleShape<T>, T>
{
};

/// Complex numbers: the real part, then the imaginary one.
template <class T>
struct SComplexShape
{
    using Part = typename T::value_type;

    static const char* GetTypeName() { return SequenceName; }
    static void WriteInside(const T& value, IContainerWriter& writer, const SPlace& place)
    {
        WriteValue(value.real(), SElementOut{writer, 0, place});
        WriteValue(value.imag(), SElementOut{writer, 1, place});
    }
    template <bool IsStrict>
    static void ReadInside(T& value, IContainerReader& reader, const SPlace& place)
    {
        Part parts[] = {value.real(), value.imag()};
        SFixedShape<Part[2]>::template ReadInside<IsStrict>(parts, reader, place);
        value = T(parts[0], parts[1]);
    }
};

template <class T>
struct SStored<T, EStorage::Complex> : SStoredSequence<SComplexShape<T>, T>
{
};

} // namespace Vellum::Describing
