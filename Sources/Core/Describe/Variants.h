#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "Describe/Objects.h"
#include "Describe/Pointers.h"

/// @file
/// One of several: std::variant, and pointers to a base class. An object with one field, whose key is the name of the
/// alternative.
namespace Vellum::Describing
{

/// Raises for a key that is no alternative's; the empty one is none at all.
[[noreturn]] VELLUM_API void RaiseNoAlternative(const char* key, const SPlace& place);

/// Raises for an object of a class that isn't listed, or a variant that has lost its value.
[[noreturn]] VELLUM_API void RaiseUnlisted(const SPlace& place);

inline constexpr const char* VariantName = "variant";

/// What stands under the name of an alternative. Of another kind it leaves a new object.
template <bool IsStrict, class T>
void ReadAlternative(T& value, IDataReader& reader, const char* key, const SPlace& place)
{
    if (ReadValue(value, SEntryIn<IsStrict>{{reader, key, place}}))
        return;
    if constexpr (IsStrict)
        CheckAbsence(reader, key, place);
}

/// Calls the function with one alternative after the other until it says true; false if it never does.
template <std::size_t... Indices, class... T, class Function>
constexpr bool FindAlternative(const SItemList<std::index_sequence<Indices...>, T...>& alternatives,
                               const Function& function)
{
    return (function(static_cast<const SItem<Indices, T>&>(alternatives).value) || ...);
}

// ---- Names. ----

constexpr const char* CutNamespace(const char* name)
{
    const std::size_t end = std::string_view(name).rfind("::");
    return end == std::string_view::npos ? name : name + end + 2;
}

/// The name of an alternative that isn't listed: of its kind, or of its class without the namespace.
template <class T>
constexpr const char* GetAlternativeName()
{
    constexpr const char* Kinds[] = {"bool",  "char",   "int8",  "uint8",  "int16",   "uint16",
                                     "int32", "uint32", "int64", "uint64", "float",   "double",
                                     "text",  "wide",   "date",  "object", "sequence"};
    constexpr EStorage Storage = FindStorage<T>();
    if constexpr (Storage == EStorage::Fields)
        return CutNamespace(GetNameOf<T>());
    else if constexpr (Storage == EStorage::Object || Storage == EStorage::Container ||
                       Storage == EStorage::Enumeration)
        return CutNamespace(STypeName<T>::Literal.text);
    else if constexpr (Storage == EStorage::Bytes)
        return "blob";
    else
        return Kinds[static_cast<std::size_t>(SStored<T>::Element)];
}

template <std::size_t Count>
constexpr bool AreDistinct(const std::array<const char*, Count>& names)
{
    for (std::size_t first = 0; first < Count; ++first)
        for (std::size_t second = first + 1; second < Count; ++second)
            if (std::string_view(names[first]) == names[second])
                return false;
    return true;
}

// ---- std::variant. ----

/// The name of one type of a variant: the one that its description lists, or its own.
template <class Variant, class Alternative>
constexpr const char* GetVariantName()
{
    if constexpr (HasAlternatives<Variant>)
    {
        const char* name = "";
        FindAlternative(AlternativesOf<Variant>.list,
                        [&]<class Listed>(const CAlternative<Listed>& listed)
                        {
                            if (std::same_as<Alternative, Listed>)
                                name = listed.name;
                            return false;
                        });
        return name;
    }
    else
    {
        return GetAlternativeName<Alternative>();
    }
}

template <const auto& Keys>
constexpr void CheckDistinct()
{
    static_assert(AreDistinct(Keys), "Two types of this variant have no name or the same one: list them in a function "
                                     "Describe with Vellum::OneOf");
}

template <class Variant, class Indices>
struct SVariantShape;

template <template <class...> class Variant, class... T, std::size_t... Indices>
struct SVariantShape<Variant<T...>, std::index_sequence<Indices...>>
{
    using Value = Variant<T...>;

    static const char* GetTypeName() { return VariantName; }

    static void WriteInside(const Value& value, IDataWriter& writer, const SPlace& place)
    {
        CheckDistinct<Keys>();
        if (!(write<Indices>(value, writer, place) || ...))
            RaiseUnlisted(place);
    }

    template <bool IsStrict>
    static void ReadInside(Value& value, IDataReader& reader, const SPlace& place)
    {
        CheckDistinct<Keys>();
        const std::uint32_t count = reader.GetKeyCount();
        const char* const key = count == 0 ? "" : reader.GetKey(0);
        if (!(read<Indices, IsStrict>(value, reader, key, place) || ...))
            RaiseNoAlternative(key, place);
        if constexpr (IsStrict)
            CheckKeys(reader, place, [&](const char* other) { return std::string_view(other) == key; });
    }

private:
    static constexpr std::array<const char*, sizeof...(T)> Keys{GetVariantName<Value, T>()...};

    template <std::size_t Index>
    static bool write(const Value& value, IDataWriter& writer, const SPlace& place)
    {
        if (value.index() != Index)
            return false;
        WriteValue(*get_if<Index>(&value), SEntryOut{{writer, Keys[Index], place}});
        return true;
    }

    template <std::size_t Index, bool IsStrict>
    static bool read(Value& value, IDataReader& reader, const char* key, const SPlace& place)
    {
        if (!AreEqualKeys(place, Keys[Index], key))
            return false;
        ReadAlternative<IsStrict>(value.template emplace<Index>(), reader, key, place);
        return true;
    }
};

template <template <class...> class Variant, class... T>
struct SStored<Variant<T...>, EStorage::Variant>
    : SStoredObject<SVariantShape<Variant<T...>, std::index_sequence_for<T...>>, Variant<T...>>
{
};

// ---- Pointers to a base class. ----

/// A class that has no description of its own would be stored as its base.
template <class Base, class Derived>
consteval bool HasDescriptionOfBase()
{
    if constexpr (HasOwnDescription<Base> && HasOwnDescription<Derived> && !std::same_as<Base, Derived>)
    {
        if constexpr (std::same_as<decltype(&Base::Describe), decltype(&Derived::Describe)>)
            return &Base::Describe == &Derived::Describe;
        else
            return false;
    }
    else
        return false;
}

/// A null pointer is an object without a field.
template <class Pointer>
struct SBaseShape
{
    using Base = ContentOf<Pointer>;

    static_assert(std::has_virtual_destructor_v<Base>, "Vellum stores alternatives of a base class only if its "
                                                       "destructor is virtual");

    static const char* GetTypeName() { return VariantName; }

    static void WriteInside(const Pointer& value, IDataWriter& writer, const SPlace& place)
    {
        const auto writeAs = [&]<class T>(const CAlternative<T>& alternative)
        {
            static_assert(!HasDescriptionOfBase<Base, T>(), "This alternative has no description but its base's");
            const T* const object = typeid(*value) == typeid(T) ? dynamic_cast<const T*>(value.get()) : nullptr;
            if (object != nullptr)
                WriteValue(*object, SEntryOut{{writer, alternative.name, place}});
            return object != nullptr;
        };
        if (value != nullptr && !FindAlternative(AlternativesOf<Base>.list, writeAs))
            RaiseUnlisted(place);
    }

    template <bool IsStrict>
    static void ReadInside(Pointer& value, IDataReader& reader, const SPlace& place)
    {
        value.reset();
        if (reader.GetKeyCount() == 0)
            return;
        const char* const key = reader.GetKey(0);
        const auto readAs = [&]<class T>(const CAlternative<T>& alternative)
        {
            if (!AreEqualKeys(place, alternative.name, key))
                return false;
            auto object = std::make_unique<T>();
            ReadAlternative<IsStrict>(*object, reader, key, place);
            value = std::move(object);
            return true;
        };
        if (!FindAlternative(AlternativesOf<Base>.list, readAs))
            RaiseNoAlternative(key, place);
        if constexpr (IsStrict)
            CheckKeys(reader, place, [&](const char* other) { return std::string_view(other) == key; });
    }
};

template <class Pointer>
struct SStoredBase : SStoredObject<SBaseShape<Pointer>, Pointer>
{
};

} // namespace Vellum::Describing
