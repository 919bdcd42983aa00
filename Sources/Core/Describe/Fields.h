#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

/// @file
/// How a class tells what it is made of. One list serves writing and reading, in all formats:
///
///     class COrder
///     {
///     public:
///         static constexpr auto Describe()
///         {
///             return Vellum::Fields("shop::Order",
///                                   Vellum::Field("id", &COrder::id).Required(),
///                                   Vellum::Field("buyer", &COrder::buyer).Formerly("customer"));
///         }
///     ...
///
/// A class that can't be changed is described beside it, by a function that is found through its namespace:
///
///     constexpr auto Describe(Vellum::Type<other::Point>) { return Vellum::Fields("Point", ...); }
///
/// Keys and names are kept as pointers: give literals.
namespace Vellum
{

/// SItems: some values of different types, in order. It is a std::tuple for less work of the compiler's, of which every
/// description has its share.
template <std::size_t Index, class T>
struct SItem
{
    T value; ///< One of them
};

template <class Indices, class... T>
struct SItemList;

template <std::size_t... Indices, class... T>
struct SItemList<std::index_sequence<Indices...>, T...> : SItem<Indices, T>...
{
};

/// As many as there are types.
template <class... T>
using SItems = SItemList<std::index_sequence_for<T...>, T...>;

/// Tells a function Describe which type is meant.
template <class T>
struct Type
{
};

/// CField: one field, made by Field. Each operation returns a copy that knows more.
template <class Pointer>
class CField
{
public:
    /// How many earlier keys a field may have.
    static constexpr std::size_t MostFormerKeys = 4;

    /// Of a class, as far as anybody will ever count.
    static constexpr std::uint32_t LastVersion = std::numeric_limits<std::uint32_t>::max();

    /// As Field makes it.
    constexpr CField(const char* fieldKey, Pointer member) : key(fieldKey), pointer(member) {}

    /// A document without the field is refused: CDocumentException, with or without Strict.
    constexpr CField Required() const
    {
        CField field = *this;
        field.isRequired = true;
        return field;
    }

    /// Also reads what was written under this key, where there is nothing under the present one. For a field that was
    /// renamed more than once say it again, up to four times, the latest name first.
    constexpr CField Formerly(const char* formerKey) const
    {
        CField field = *this;
        std::size_t place = 0;
        while (field.formerKeys[place] != nullptr)
            ++place; // past the end is an error of the compiler's
        field.formerKeys[place] = formerKey;
        return field;
    }

    /// The field belongs to these versions of the class, the last one included: it is written if the class's version is
    /// one of them and read from documents of them alone. See CFields::Version.
    constexpr CField Only(std::uint32_t fromVersion, std::uint32_t toVersion = LastVersion) const
    {
        CField field = *this;
        field.firstVersion = fromVersion;
        field.lastVersion = toVersion;
        return field;
    }

    /// Whether the field belongs to a version of the class.
    constexpr bool IsIn(std::uint32_t version) const { return version >= firstVersion && version <= lastVersion; }

    const char* key;                                      ///< In documents
    Pointer pointer;                                      ///< To the member
    std::array<const char*, MostFormerKeys> formerKeys{}; ///< The latest first, then null
    std::uint32_t firstVersion = 0;                       ///< Of the class, which has the field
    std::uint32_t lastVersion = LastVersion;              ///< Likewise
    bool isRequired = false;                              ///< See Required
};

/// A field of a class: its key in documents, and a pointer to the member, private ones too, or one of a base class.
template <class Member, class Class>
constexpr CField<Member Class::*> Field(const char* key, Member Class::*pointer)
{
    return {key, pointer};
}

/// CBase: the fields of a base class, made by Base.
template <class T>
struct CBase
{
};

/// All fields of a base class, at this place of the list and in the same object. The base is described as any class is,
/// or implements ISerializable itself.
template <class T>
constexpr CBase<T> Base()
{
    return {};
}

/// One name of CAlternatives, and the class that it stands for, which may be declared later.
template <class T>
struct CAlternative
{
    const char* name; ///< In documents
};

/// One name and class for OneOf.
template <class T>
constexpr CAlternative<T> Alternative(const char* name)
{
    return {name};
}

/// CAlternatives: what a std::variant, or a pointer to a base class, may hold; made by OneOf.
template <class... T>
struct CAlternatives
{
    SItems<CAlternative<T>...> list; ///< All of them
};

/// The description of a variant, or of a base class that has no fields of its own to tell:
///
///     constexpr auto Describe(Vellum::Type<CShape>)
///     {
///         return Vellum::OneOf(Vellum::Alternative<CCircle>("circle"), Vellum::Alternative<CSquare>("square"));
///     }
template <class... T>
constexpr CAlternatives<T...> OneOf(CAlternative<T>... alternatives)
{
    return {{{alternatives}...}};
}

/// A class that is no base of others, and has nothing to upgrade.
struct SNothing
{
};

/// CFields: the description of a class, made by Fields. Each operation returns a copy that knows more.
template <class Hook, class Alternatives, class... Items>
struct CFields
{
    /// Documents tell this version of the class, from 1, in a uint32 field in front of all others; one without it is of
    /// version 0. What is read from a document of a later version is read as far as this class knows it. A base class
    /// with a version of its own needs a key of its own.
    constexpr CFields Version(std::uint32_t number, const char* key = "version") const
    {
        CFields fields = *this;
        fields.version = number;
        fields.versionKey = key;
        return fields;
    }

    /// `hook` is called as hook(object, version), or as object.hook(version), when an object of an earlier version has
    /// been read: a member function that takes a std::uint32_t, or a function that takes the object and the number.
    template <class Function>
    constexpr CFields<Function, Alternatives, Items...> Upgrade(Function function) const
    {
        return {typeName, items, alternatives, function, version, versionKey};
    }

    /// The classes that a pointer to this one may point to, as in the function OneOf.
    template <class... T>
    constexpr CFields<Hook, CAlternatives<T...>, Items...> OneOf(CAlternative<T>... list) const
    {
        return {typeName, items, {{{list}...}}, hook, version, versionKey};
    }

    const char* typeName;             ///< The class's name in documents
    SItems<Items...> items;           ///< Fields and bases
    Alternatives alternatives{};      ///< See OneOf
    Hook hook{};                      ///< See Upgrade
    std::uint32_t version = 0;        ///< 0 is not written
    const char* versionKey = nullptr; ///< See Version
};

/// The description of a class: its name in documents, as ISerializable::GetTypeName gives it, and its fields in the
/// order in which they are written, by Field and Base.
template <class... Items>
constexpr CFields<SNothing, SNothing, Items...> Fields(const char* typeName, Items... items)
{
    return {typeName, {{items}...}};
}

/// An enumerator and its name.
template <class Enumeration>
struct SName
{
    Enumeration value; ///< The enumerator
    const char* name;  ///< In documents
};

/// CNames: the description of an enumeration that is stored as texts, made by Names.
template <class Enumeration, std::size_t Count>
struct CNames
{
    std::array<SName<Enumeration>, Count> list; ///< All of them
};

/// The description of an enumeration that is stored as texts. A value without a name can't be written.
///
///     constexpr auto Describe(Vellum::Type<EState>)
///     {
///         return Vellum::Names<EState>({{EState::Open, "open"}, {EState::Paid, "paid"}});
///     }
template <class Enumeration, std::size_t Count>
constexpr CNames<Enumeration, Count> Names(const SName<Enumeration> (&names)[Count])
{
    CNames<Enumeration, Count> result{};
    for (std::size_t index = 0; index < Count; ++index)
        result.list[index] = names[index];
    return result;
}

} // namespace Vellum
