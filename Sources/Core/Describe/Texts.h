#pragma once

#include <string>
#include <type_traits>

#include "Describe/Values.h"

/// @file
/// Texts that are neither std::string nor std::wstring: narrow or wide text by the size of their units. Names of files
/// are UTF-8 with slashes, on every system.
namespace Vellum::Describing
{

template <class T>
struct SStored<T, EStorage::Text>
{
    using Unit = typename T::value_type;
    using As = std::conditional_t<sizeof(Unit) == 1, std::string, std::wstring>;

    static constexpr EElement Element = SStored<As>::Element;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        WriteValue(As(value.begin(), value.end()), out);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        if constexpr (IsOwner<T>)
        {
            As as;
            if (!ReadValue(as, in))
                return false;
            value.clear();
            for (const auto unit : as)
                value.push_back(static_cast<Unit>(unit));
            return true;
        }
        else
        {
            CheckOwner<T>();
            return false;
        }
    }
};

template <class T>
struct SStored<T, EStorage::Path>
{
    static constexpr EElement Element = EElement::Text;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        WriteValue(value.generic_u8string(), out);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        decltype(value.generic_u8string()) text;
        if (!ReadValue(text, in))
            return false;
        value = T(text);
        return true;
    }
};

/// std::bitset: a digit for each bit, the highest first.
template <class T>
struct SStored<T, EStorage::Bitset>
{
    static constexpr EElement Element = EElement::Text;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        WriteValue(value.to_string(), out);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        std::string digits;
        if (!ReadValue(digits, in))
            return false;
        if (digits.size() == value.size() && digits.find_first_not_of("01") == std::string::npos)
            value = T(digits);
        else if constexpr (In::IsStrict)
            RaiseAt(in.GetPlace(),
                    "The text isn't a digit, 0 or 1, for each of " + std::to_string(value.size()) + " bits.");
        return true;
    }
};

} // namespace Vellum::Describing
