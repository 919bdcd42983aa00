#pragma once

#include <concepts>
#include <type_traits>

#include "Describe/Places.h"
#include "Describe/Recognition.h"

/// @file
/// Which way of storing a type takes.
namespace Vellum::Describing
{

enum class EStorage
{
    None,
    Kind,          ///< A kind of the contract, as it is
    Integer,       ///< Another integer type, as the kind of its size and sign
    Date,          ///< A client's own IDateTime
    Object,        ///< A client's own ISerializable
    Container,     ///< A client's own ISerializableContainer
    Enumeration,   ///< A number, or a text if the names are listed
    Fields,        ///< A described class or an aggregate: an object
    Path,          ///< The name of a file: a text
    Text,          ///< A text of another make
    Bytes,         ///< A blob
    Optional,      ///< A value or none
    Pointer,       ///< One that owns: a value or none
    Duration,      ///< A number of units
    TimePoint,     ///< A date
    Variant,       ///< One of several types: an object with one field
    Map,           ///< Entries whose keys are texts: an object
    Sequence,      ///< Any number of elements: a sequence
    FixedSequence, ///< An array or a span: a sequence
    Tuple,         ///< A sequence
    Complex,       ///< A sequence of two numbers
    Bitset         ///< A text
};

/// A class that is written by hand.
template <class T>
consteval EStorage FindStorageOfClient()
{
    static_assert(!ListsFieldsOf<T, std::remove_const_t<decltype(DescriptionOf<T>)>>,
                  "This class writes itself, so its description would never be used: leave out that or its interface");
    return std::derived_from<T, ISerializable> ? EStorage::Object : EStorage::Container;
}

/// The first that fits counts.
template <class T>
consteval EStorage FindStorage()
{
    // clang-format off
    if constexpr (Kind<T>) return EStorage::Kind;
    else if constexpr (Integer<T>) return EStorage::Integer;
    else if constexpr (std::derived_from<T, IDateTime>) return EStorage::Date;
    else if constexpr (std::derived_from<T, ISerializable>) return FindStorageOfClient<T>();
    else if constexpr (std::derived_from<T, ISerializableContainer>) return FindStorageOfClient<T>();
    else if constexpr (std::is_enum_v<T>) return EStorage::Enumeration;
    else if constexpr (Described<T>) return EStorage::Fields;
    else if constexpr (PathLike<T>) return EStorage::Path;
    else if constexpr (TextLike<T>) return EStorage::Text;
    else if constexpr (StandardBytes<T> || FoundationBytes<T>) return EStorage::Bytes;
    else if constexpr (OptionalLike<T>) return EStorage::Optional;
    else if constexpr (PointerLike<T>) return EStorage::Pointer;
    else if constexpr (DurationLike<T>) return EStorage::Duration;
    else if constexpr (TimePointLike<T>) return EStorage::TimePoint;
    else if constexpr (VariantLike<T>) return EStorage::Variant;
    else if constexpr (TextKeyedMap<T>) return EStorage::Map;
    else if constexpr (SequenceLike<T>) return EStorage::Sequence;
    else if constexpr (ArrayLike<T>) return EStorage::FixedSequence;
    else if constexpr (TupleLike<T>) return EStorage::Tuple;
    else if constexpr (ComplexLike<T>) return EStorage::Complex;
    else if constexpr (BitsetLike<T>) return EStorage::Bitset;
    else if constexpr (std::is_class_v<T> && std::is_aggregate_v<T>) return EStorage::Fields;
    else return EStorage::None;
    // clang-format on
}

/// What a value is as an element of a sequence. The elements of one sequence are all the same, since binary documents
/// have it so.
enum class EElement
{
    Bool,
    Char,
    Int8,
    Uint8,
    Int16,
    Uint16,
    Int32,
    Uint32,
    Int64,
    Uint64,
    Float,
    Double,
    Text,
    WideText,
    Date,
    Object,
    Sequence
};

/// How a type is stored, one specialisation for each EStorage:
///
///     static constexpr EElement Element                   what its values are as elements of a sequence
///     static void Write(const T& value, const Out& out)
///     static bool Read(T& value, const In& in)            false if nothing was found
template <class T, EStorage Storage = FindStorage<T>()>
struct SStored;

template <class T>
inline constexpr bool IsStorable = false;

/// The one message about a type that can't be stored; its name stands in the line of the instantiation.
template <class T>
struct SStored<T, EStorage::None>
{
    static_assert(IsStorable<T>, "Vellum can't store this type: describe it with Vellum::Fields, see Docs/Describe.md");

    static constexpr EElement Element = EElement::Object;
    static void Write(const T&, const auto&) {}
    static bool Read(T&, const auto&) { return false; }
};

/// A type whose objects are made before they are filled.
template <class T>
constexpr void CheckDefault()
{
    static_assert(std::default_initializable<T>,
                  "Vellum fills new objects of this type: give it a default constructor");
}

/// What owns no content can't take any.
template <class T>
constexpr void CheckOwner()
{
    static_assert(IsOwner<T>, "Vellum can write this type, but not read it: what it shows belongs to somebody else");
}

template <class T, class Out>
void WriteValue(const T& value, const Out& out)
{
    SStored<T>::Write(value, out);
}

template <class T, class In>
bool ReadValue(T& value, const In& in)
{
    return SStored<T>::Read(value, in);
}

} // namespace Vellum::Describing
