#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <string_view>
#include <type_traits>
#include <utility>

#include "../Platform/Compiler.h"

#include "Describe/Fields.h"
#include "Describe/Members.h"

/// @file
/// Number and names of the fields of an aggregate, and the names of types, as the compiler knows them.
namespace Vellum::Describing
{

inline constexpr std::size_t MostMembers = 64;
inline constexpr std::size_t MostInitialisers = 256; ///< Each element of an array is one

/// Becomes whatever a member is initialised with, as far as the compiler is asked. Never called: it has a body for
/// clang++, which complains of one without for types in an unnamed namespace.
struct SAnything
{
    template <class T>
    operator T() const noexcept
    {
        std::terminate();
    }
};

template <std::size_t>
using AnythingAt = SAnything;

/// Whether T{anything, ...} can be had.
template <class T, std::size_t... Before>
consteval bool Takes(std::index_sequence<Before...>)
{
    return requires { T{AnythingAt<Before>()...}; };
}

/// Whether T{anything, ..., {}, anything, ...} can be had.
template <class T, std::size_t... Before, std::size_t... Behind>
consteval bool TakesBraces(std::index_sequence<Before...>, std::index_sequence<Behind...>)
{
    return requires { T{AnythingAt<Before>()..., {}, AnythingAt<Behind>()...}; };
}

/// How many initialisers T takes. Each element of an array takes one.
template <class T, std::size_t Count = 0>
consteval std::size_t CountInitialisers()
{
    if constexpr (Count <= MostInitialisers && Takes<T>(std::make_index_sequence<Count + 1>()))
        return CountInitialisers<T, Count + 1>();
    else
        return Count;
}

template <class T>
inline constexpr std::size_t Initialisers = CountInitialisers<T>();

/// How many of them the member takes that begins at one: `{}` initialises all of it, and there may be so many behind it
/// fewer. A member that can't be made from `{}` is no array.
template <class T, std::size_t At, std::size_t Behind>
consteval std::size_t CountSlots()
{
    if constexpr (TakesBraces<T>(std::make_index_sequence<At>(), std::make_index_sequence<Behind>()))
        return Initialisers<T> - At - Behind;
    else if constexpr (Behind == 0)
        return 1;
    else
        return CountSlots<T, At, Behind - 1>();
}

template <class T, std::size_t At = 0>
consteval std::size_t CountMembers()
{
    if constexpr (At >= Initialisers<T>)
        return 0;
    else
        return 1 + CountMembers<T, At + CountSlots<T, At, Initialisers<T> - At - 1>()>();
}

/// An aggregate's base classes come first.
template <class T>
struct SAnyBaseOf
{
    template <class Base>
    requires(std::is_base_of_v<Base, T> && !std::is_same_v<Base, T>) operator Base() const noexcept;
};

template <class T>
inline constexpr bool HasBase = requires
{
    T{SAnyBaseOf<T>()};
};

template <class T>
consteval std::size_t FindMemberCount()
{
    if constexpr (Initialisers < T >> MostInitialisers)
        return MostMembers + 1;
    else
        return CountMembers<T>();
}

template <class T>
inline constexpr std::size_t MemberCount = FindMemberCount<T>();

// The name of a member is part of the name of a function that is made for the member's address. The object that it
// belongs to is never defined, since nothing but its address is taken, in constant expressions.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wundefined-var-template"
#pragma clang diagnostic ignored "-Wundefined-internal"
#endif

template <class T>
struct SHolder
{
    T value;
};

template <class T>
extern const SHolder<T> UndefinedObject;

template <class Pointer>
struct SAddress
{
    Pointer pointer;
};

template <auto Address>
consteval std::string_view NameFunctionOfAddress()
{
    return VELLUM_SIGNATURE;
}

template <std::size_t Index, class Pointer>
constexpr SAddress<Pointer> PickAddress(const SItem<Index, Pointer>& item)
{
    return {item.value};
}

template <class T, std::size_t Index>
consteval auto GetMemberAddress()
{
    return VisitMembers<MemberCount<T>>(UndefinedObject<T>.value, []<class... Members>(const Members&... members)
                                        { return PickAddress<Index>(SItems<const Members*...>{{&members}...}); });
}

consteval std::size_t GetLess(std::size_t first, std::size_t second) { return first < second ? first : second; }

/// `"... = SAddress<const int*>{(& UndefinedObject<SLine>.SHolder<SLine>::value.SLine::count)}; ..."` or `"... =
/// {&UndefinedObject.value.count}]"`
consteval std::string_view CutMemberName(std::string_view function)
{
    std::string_view name = function.substr(0, GetLess(function.rfind(")}"), function.rfind("}]")));
    while (name.ends_with('}') || name.ends_with(')'))
        name.remove_suffix(1);
    return name.substr(name.find_last_of(".:") + 1);
}

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

/// "... [with T = shop::SLine; ...]" or "... [T = shop::SLine]"
template <class T>
consteval std::string_view NameFunctionOfType()
{
    return VELLUM_SIGNATURE;
}

/// A text of the compiler's, zero-terminated. What can't stand in an element name of XML is replaced.
template <std::size_t Size>
struct SLiteral
{
    explicit consteval SLiteral(std::string_view name)
    {
        name.copy(text, name.size());
        for (char& byte : text)
            if (byte == ' ' || byte == '<' || byte == '>' || byte == ',' || byte == '(' || byte == ')' || byte == '*' ||
                byte == '&' || byte == '[' || byte == ']' || byte == '{' || byte == '}')
                byte = '_';
    }
    char text[Size + 1] = {};
};

/// What stands around a type depends on where it is defined and on the compiler. Namespaces without a name and
/// functions are left out.
consteval std::string_view CutTypeName(std::string_view function)
{
    if (function.empty())
        return function;
    std::string_view name = function.substr(function.find("T = ") + 4);
    name = name.substr(0, GetLess(name.find(';'), name.rfind(']')));
    const std::size_t arguments = name.find('<');
    for (std::string_view unnamed : {"{anonymous}::", "(anonymous namespace)::", ")::"})
        if (const std::size_t at = name.rfind(unnamed); at != std::string_view::npos && at < arguments)
            return name.substr(at + unnamed.size());
    return name;
}

template <class T>
struct STypeName
{
    static constexpr std::string_view Name = CutTypeName(NameFunctionOfType<T>());
    static_assert(!Name.empty(), "This compiler doesn't tell the names of types: give this one a description");
    static constexpr SLiteral<Name.size()> Literal{Name};
};

template <class T, std::size_t Index>
struct SMemberName
{
    static constexpr std::string_view Name = CutMemberName(NameFunctionOfAddress<GetMemberAddress<T, Index>()>());
    static constexpr SLiteral<Name.size()> Literal{Name};
};

template <class T, std::size_t... Indices>
consteval auto GatherMemberNames(std::index_sequence<Indices...>)
{
    return std::array<const char*, sizeof...(Indices)>{SMemberName<T, Indices>::Literal.text...};
}

/// Whether this compiler tells names in a way that is known here.
struct SProbe
{
    int known;
};

template <class T>
inline constexpr bool IsCompilerKnown = SMemberName<SProbe, 0>::Name == "known";

/// Raises at compile time, if it can't be had: what has to be written instead.
template <class T>
consteval bool FindReflection()
{
    static_assert(IsCompilerKnown<T>, "This compiler doesn't tell the names of members: describe this type with "
                                      "Vellum::Fields");
    static_assert(!HasBase<T>, "This aggregate has a base class: describe it with Vellum::Fields and Vellum::Base");
    static_assert(HasBase<T> || MemberCount<T> <= MostMembers,
                  "This aggregate has more than 64 fields or 256 elements of arrays: describe it with Vellum::Fields");
    return IsCompilerKnown<T> && !HasBase<T> && MemberCount<T> <= MostMembers; // the rest would only say it again
}

template <class T>
inline constexpr bool IsReflected = FindReflection<T>();

/// The keys of an aggregate, in the order of its members.
template <class T>
inline constexpr auto MemberNames = GatherMemberNames<T>(std::make_index_sequence<MemberCount<T>>());

} // namespace Vellum::Describing
