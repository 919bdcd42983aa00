#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "../Platform/CStringT.h"

/// @file
/// Names of types, spelled at compile time in one fixed way, whatever compiler builds the library: the exceptions of
/// the container templates carry them, and clients and logs compare those texts. A class has "class" or "struct" in
/// front, arguments stand without blanks between them, and two closing brackets have one between them: `"class
/// CbArray<class std::allocator<char> >"`.
///
/// A class that wants its own name in there specializes CbTypeName.

/// CbFixedText: a text of fixed length that is made while compiling.
template <std::size_t Length>
struct CbFixedText
{
    std::array<char, Length + 1> characters{}; ///< With a terminating NUL

    /// Zero-terminated; lives as long as the object.
    constexpr const char* GetString() const { return characters.data(); }

    /// Whether the last character is `">"`.
    constexpr bool EndsWithBracket() const { return Length != 0 && characters[Length - 1] == '>'; }
};

/// The text of a literal.
template <std::size_t Size>
constexpr CbFixedText<Size - 1> CbText(const char (&literal)[Size])
{
    CbFixedText<Size - 1> text;
    std::copy_n(literal, Size - 1, text.characters.begin());
    return text;
}

/// @name operator+
/// One text behind another.
/// @{
template <std::size_t Left, std::size_t Right>
constexpr CbFixedText<Left + Right> operator+(const CbFixedText<Left>& left, const CbFixedText<Right>& right)
{
    CbFixedText<Left + Right> text;
    std::copy_n(left.characters.begin(), Left, text.characters.begin());
    std::copy_n(right.characters.begin(), Right, text.characters.begin() + Left);
    return text;
}
template <std::size_t Left, std::size_t Size>
constexpr auto operator+(const CbFixedText<Left>& left, const char (&right)[Size])
{
    return left + CbText(right);
}
/// @}

/// CbTypeName: the name of a type, "class" where no specialization tells it.
template <class T>
struct CbTypeName
{
    /// The name, a CbFixedText.
    static constexpr auto Value = CbText("class");
};

/// CbZeroName: the argument 0 of the container templates.
struct CbZeroName
{
    /// The name, a CbFixedText.
    static constexpr auto Value = CbText("0");
};

/// `"name<A,B>"` from things that have a Value, such as `CbTypeName<A>`.
template <class First, class... Rest, std::size_t Length>
constexpr auto CbSpellTemplate(const CbFixedText<Length>& name)
{
    constexpr auto Arguments = (First::Value + ... + (CbText(",") + Rest::Value));
    if constexpr (Arguments.EndsWithBracket())
        return name + "<" + Arguments + " >";
    else
        return name + "<" + Arguments + ">";
}

template <>
struct CbTypeName<bool>
{
    static constexpr auto Value = CbText("bool");
};
template <>
struct CbTypeName<char>
{
    static constexpr auto Value = CbText("char");
};
template <>
struct CbTypeName<wchar_t>
{
    static constexpr auto Value = CbText("wchar_t");
};
template <>
struct CbTypeName<unsigned char>
{
    static constexpr auto Value = CbText("unsigned char");
};
template <>
struct CbTypeName<signed char>
{
    static constexpr auto Value = CbText("signed char");
};
template <>
struct CbTypeName<unsigned short>
{
    static constexpr auto Value = CbText("unsigned short");
};
template <>
struct CbTypeName<short>
{
    static constexpr auto Value = CbText("short");
};
template <>
struct CbTypeName<unsigned int>
{
    static constexpr auto Value = CbText("unsigned int");
};
template <>
struct CbTypeName<int>
{
    static constexpr auto Value = CbText("int");
};
template <>
struct CbTypeName<std::uint64_t>
{
    static constexpr auto Value = CbText("unsigned __int64");
};
template <>
struct CbTypeName<std::int64_t>
{
    static constexpr auto Value = CbText("__int64");
};
template <>
struct CbTypeName<float>
{
    static constexpr auto Value = CbText("float");
};
template <>
struct CbTypeName<double>
{
    static constexpr auto Value = CbText("double");
};

template <class T>
struct CbTypeName<std::char_traits<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("struct std::char_traits"));
};
template <class T>
struct CbTypeName<std::allocator<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("class std::allocator"));
};
template <class T, class Traits, class Allocator>
struct CbTypeName<std::basic_string<T, Traits, Allocator>>
{
    static constexpr auto Value =
        CbSpellTemplate<CbTypeName<T>, CbTypeName<Traits>, CbTypeName<Allocator>>(CbText("class std::basic_string"));
};
template <class T>
struct CbTypeName<std::default_delete<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("struct std::default_delete"));
};
template <class T, class Delete>
struct CbTypeName<std::unique_ptr<T, Delete>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>, CbTypeName<Delete>>(CbText("class std::unique_ptr"));
};
template <class First, class Second>
struct CbTypeName<std::pair<First, Second>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<First>, CbTypeName<Second>>(CbText("struct std::pair"));
};
template <class T>
struct CbTypeName<std::hash<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("struct std::hash"));
};
template <class T>
struct CbTypeName<std::equal_to<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("struct std::equal_to"));
};
template <class T>
struct CbTypeName<ATL::CStringT<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("class ATL::CStringT"));
};

class CbDateTime;
template <>
struct CbTypeName<CbDateTime>
{
    static constexpr auto Value = CbText("class CbDateTime");
};

template <class T>
class CbArray;
template <class T>
struct CbTypeName<CbArray<T>>
{
    static constexpr auto Value = CbSpellTemplate<CbTypeName<T>>(CbText("class CbArray"));
};
