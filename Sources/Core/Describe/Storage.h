#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <tuple>
#include <type_traits>

#include "Groundwork/IDateTime.h"

#include "Describe/Descriptions.h"
#include "Describe/Places.h"

// Which way of storing a type takes. Types of the standard library are recognised by what they can do, so that none of
// its headers has to be included here, and other libraries' types of the same make are stored as well.
namespace Vellum::Describing
{

enum class EStorage
{
    None,
    Kind,          // one of the kinds of the contract, as it is
    Integer,       // another integer type, as the kind of its size and sign
    Date,          // a client's own IDateTime
    Object,        // a client's own ISerializable
    Container,     // ... and ISerializableContainer
    Enumeration,   //
    Fields,        // a described class or an aggregate
    Path,          // std::filesystem::path
    Text,          // texts of other makes
    Bytes,         // a blob
    Possible,      // std::optional and pointers: a value or none
    Pointer,       //
    Duration,      // std::chrono
    TimePoint,     //
    Variant,       // one of several
    Map,           // entries whose keys are texts
    Sequence,      // any number of elements
    FixedSequence, // arrays and spans
    Tuple,         //
    Complex,       //
    Bitset         //
};

template <class T, class... Others>
concept OneOfTypes = (std::same_as<T, Others> || ...);

template <class T>
concept Kind = OneOfTypes<T, bool, char, signed char, unsigned char, std::int16_t, std::uint16_t, std::int32_t,
                          std::uint32_t, std::int64_t, std::uint64_t, float, double, std::string, std::wstring>;

// The integer kind of a size and sign.
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
concept Integer = std::same_as<T, std::byte> ||(std::integral<T> && !std::is_void_v<IntegerOf<T>>);

template <class T>
concept ByteLike = OneOfTypes < std::remove_cv_t<T>,
unsigned char, std::byte > ;

template <class T>
concept TextUnit = OneOfTypes<T, char, char8_t, wchar_t, char16_t>;

// std::basic_string, std::basic_string_view and their like.
template <class T>
concept TextLike = requires(const T& text)
{
    typename T::traits_type;
    requires TextUnit<typename T::value_type>;
    {
        text.data()
        } -> std::convertible_to<const typename T::value_type*>;
    {
        text.size()
        } -> std::convertible_to<std::size_t>;
};

template <class T>
concept PathLike = requires(const T& path)
{
    T::preferred_separator;
    path.generic_u8string();
};

// Bytes in one piece: of the standard library, arrays and spans included, and CbArray.
template <class T>
concept StandardBytes = requires(const T& bytes)
{
    requires ByteLike<std::remove_pointer_t<decltype(std::data(bytes))>>;
    std::size(bytes);
};

template <class T>
concept FoundationBytes = requires(const T& bytes)
{
    requires ByteLike<std::remove_pointer_t<decltype(bytes.GetData())>>;
    {
        bytes.GetSize()
        } -> std::same_as<std::uint32_t>;
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
    typename T::element_type;
    {
        pointer.get()
        } -> std::same_as<typename T::element_type*>;
    pointer.reset();
    *pointer;
};

template <class T>
concept DurationLike = requires(const T& duration)
{
    typename T::period;
    {
        duration.count()
        } -> std::same_as<typename T::rep>;
};

template <class T>
concept TimePointLike = requires(const T& time)
{
    typename T::clock;
    {
        time.time_since_epoch()
        } -> std::same_as<typename T::duration>;
};

template <class T>
concept VariantLike = requires(const T& variant)
{
    variant.index();
    {
        variant.valueless_by_exception()
        } -> std::same_as<bool>;
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
concept TextKeyedMap = MapLike<T> && TextLike<typename T::key_type> && sizeof(typename T::key_type::value_type) == 1 &&
                       requires(T& map, typename T::key_type key)
{
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
concept ArrayLike = std::is_array_v<T> || SpanLike<T> ||(TupleLike<T>&& requires(T& array) { array.fill(array[0]); });

template <class T>
concept ComplexLike = requires(const T& number)
{
    {
        number.real()
        } -> std::same_as<typename T::value_type>;
    {
        number.imag()
        } -> std::same_as<typename T::value_type>;
};

template <class T>
concept BitsetLike = requires(T& bits)
{
    bits.to_ulong();
    bits.flip(0);
    {
        bits.to_string()
        } -> std::same_as<std::string>;
};

// The first that fits counts.
template <class T>
consteval EStorage FindStorage()
{
    // clang-format off
    if constexpr (Kind<T>) return EStorage::Kind;
    else if constexpr (Integer<T>) return EStorage::Integer;
    else if constexpr (std::derived_from<T, IDateTime>) return EStorage::Date;
    else if constexpr (std::derived_from<T, ISerializable>) return EStorage::Object;
    else if constexpr (std::derived_from<T, ISerializableContainer>) return EStorage::Container;
    else if constexpr (std::is_enum_v<T>) return EStorage::Enumeration;
    else if constexpr (Described<T>) return EStorage::Fields;
    else if constexpr (PathLike<T>) return EStorage::Path;
    else if constexpr (TextLike<T>) return EStorage::Text;
    else if constexpr (StandardBytes<T> || FoundationBytes<T>) return EStorage::Bytes;
    else if constexpr (OptionalLike<T>) return EStorage::Possible;
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

// What a value is as an element of a sequence. The elements of one sequence are all the same, since binary documents
// have it so.
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

// How a type is stored, one specialisation for each EStorage:
//
//   static constexpr EElement Element                   what its values are as elements of a sequence
//   static void Write(const T& value, const Out& out)
//   static bool Read(T& value, const In& in)            false if nothing was found
template <class T, EStorage Storage = FindStorage<T>()>
struct SStored;

template <class T>
inline constexpr bool IsStorable = false;

// The one message about a type that can't be stored; its name stands in the line of the instantiation.
template <class T>
struct SStored<T, EStorage::None>
{
    static_assert(IsStorable<T>, "Vellum can't store this type: describe it with Vellum::Fields, see Docs/Describe.md");

    static constexpr EElement Element = EElement::Object;
    static void Write(const T&, const auto&) {}
    static bool Read(T&, const auto&) { return false; }
};

// A type whose objects are made before they are filled.
template <class T>
constexpr void CheckDefault()
{
    static_assert(std::default_initializable<T>,
                  "Vellum fills new objects of this type: give it a default constructor");
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
