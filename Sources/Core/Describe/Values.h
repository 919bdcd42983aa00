#pragma once

#include <cstdint>
#include <string>

#include "Groundwork/CbDateTime.h"

#include "Vellum/Encodings.h"

#include "Describe/Storage.h"
#include "Describe/StrictValues.h"

/// @file
/// The kinds of the contract, and the integers that are none of them.
///
/// - **Widening** Binary documents know kinds, so that a field which has become wider since looks for the narrower
///   kinds too, once it has found nothing under its own.
namespace Vellum::Describing
{

/// Whether a value may stand in the document in another kind than its own. Texts of JSON and XML fit them all.
inline bool HasKinds(const SPlace& place) { return !IsText(place.document->format); }

template <class Narrow, class T, class In>
bool ReadNarrow(T& value, const In& in)
{
    Narrow narrow{};
    if (!in.Get(narrow))
        return false;
    value = static_cast<T>(narrow);
    return true;
}

template <class... Narrow>
struct SNarrower
{
    template <class T, class In>
    static bool Read(T& value, const In& in)
    {
        return (ReadNarrow<Narrow>(value, in) || ...);
    }
};

/// The kinds that a kind takes in beside itself, the widest first. One between narrow and wide text comes below.
template <class T>
struct SNarrowerKinds : SNarrower<>
{
};
template <>
struct SNarrowerKinds<std::int16_t> : SNarrower<signed char, unsigned char>
{
};
template <>
struct SNarrowerKinds<std::uint16_t> : SNarrower<unsigned char>
{
};
template <>
struct SNarrowerKinds<std::int32_t> : SNarrower<std::int16_t, std::uint16_t, signed char, unsigned char>
{
};
template <>
struct SNarrowerKinds<std::uint32_t> : SNarrower<std::uint16_t, unsigned char>
{
};
template <>
struct SNarrowerKinds<std::int64_t>
    : SNarrower<std::int32_t, std::uint32_t, std::int16_t, std::uint16_t, signed char, unsigned char>
{
};
template <>
struct SNarrowerKinds<std::uint64_t> : SNarrower<std::uint32_t, std::uint16_t, unsigned char>
{
};
template <>
struct SNarrowerKinds<double> : SNarrower<float>
{
};

/// Between narrow text, which is taken as UTF-8, and wide text, if it comes back the same.
template <>
struct SNarrowerKinds<std::wstring>
{
    template <class In>
    static bool Read(std::wstring& value, const In& in)
    {
        std::string narrow;
        return in.Get(narrow) && Widen(narrow, value);
    }
    static bool Widen(const std::string& narrow, std::wstring& value)
    {
        std::wstring wide = Encodings::FromUTF8(narrow);
        if (Encodings::ToUTF8(wide) != narrow)
            return false;
        value = std::move(wide);
        return true;
    }
};
template <>
struct SNarrowerKinds<std::string>
{
    template <class In>
    static bool Read(std::string& value, const In& in)
    {
        std::wstring wide;
        return in.Get(wide) && Narrow(wide, value);
    }
    static bool Narrow(const std::wstring& wide, std::string& value)
    {
        std::string narrow = Encodings::ToUTF8(wide);
        if (Encodings::FromUTF8(narrow) != wide)
            return false;
        value = std::move(narrow);
        return true;
    }
};

template <class T>
consteval EElement FindElement()
{
    constexpr bool Matches[] = {
        std::same_as<T, bool>,          std::same_as<T, char>,          std::same_as<T, signed char>,
        std::same_as<T, unsigned char>, std::same_as<T, std::int16_t>,  std::same_as<T, std::uint16_t>,
        std::same_as<T, std::int32_t>,  std::same_as<T, std::uint32_t>, std::same_as<T, std::int64_t>,
        std::same_as<T, std::uint64_t>, std::same_as<T, float>,         std::same_as<T, double>,
        std::same_as<T, std::string>,   std::same_as<T, std::wstring>};
    int index = 0;
    while (!Matches[index])
        ++index;
    return static_cast<EElement>(index);
}

template <class T>
struct SStored<T, EStorage::Kind>
{
    static constexpr EElement Element = FindElement<T>();

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        out.Put(value);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        if constexpr (In::IsStrict)
            if (IsText(in.outer.document->format))
                return ReadExactText(value, in);
        return in.Get(value) || (HasKinds(in.outer) && SNarrowerKinds<T>::Read(value, in));
    }
};

/// A value that is stored as another type, to and from which it is cast.
template <class T, class As>
struct SStoredAs
{
    static constexpr EElement Element = SStored<As>::Element;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        WriteValue(static_cast<As>(value), out);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        As as{};
        if (!ReadValue(as, in))
            return false;
        value = static_cast<T>(as);
        return true;
    }
};

template <class T>
struct SStored<T, EStorage::Integer> : SStoredAs<T, IntegerOf<T>>
{
};

/// Handed over through the contract as they are.
template <class T, class Interface, EElement Kind>
struct SStoredClient
{
    static constexpr EElement Element = Kind;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        out.Put(static_cast<const Interface&>(value));
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        return in.Get(static_cast<Interface&>(value));
    }
};

template <class T>
struct SStored<T, EStorage::Object> : SStoredClient<T, ISerializable, EElement::Object>
{
};

template <class T>
struct SStored<T, EStorage::Container> : SStoredClient<T, ISerializableContainer, EElement::Sequence>
{
};

template <class T>
struct SStored<T, EStorage::Date> : SStoredClient<T, IDateTime, EElement::Date>
{
    template <class In>
    static bool Read(T& value, const In& in)
    {
        if constexpr (In::IsStrict)
        {
            CbDateTime date(std::uint64_t{0});
            if (!in.Get(static_cast<IDateTime&>(date)))
                return false;
            CheckDate(date, in.GetPlace());
            static_cast<IDateTime&>(value) = date;
            return true;
        }
        else
        {
            return in.Get(static_cast<IDateTime&>(value));
        }
    }
};

} // namespace Vellum::Describing
