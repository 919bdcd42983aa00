#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "Describe/Adapters.h"
#include "Describe/Aggregates.h"
#include "Describe/StrictKeys.h"

/// @file
/// Described classes and aggregates: objects of the contract, field by field.
namespace Vellum::Describing
{

template <class T>
void WriteFields(const T& object, IDataWriter& writer, const SPlace& place);

template <bool IsStrict, class T>
void ReadFields(T& object, IDataReader& reader, const SPlace& place);

// ---- One item of a list: a field, or the fields of a base class. ----

template <class T, class Pointer>
void WriteItem(const T& object, const CField<Pointer>& field, std::uint32_t version, IDataWriter& writer,
               const SPlace& place)
{
    if (field.IsIn(version))
        SStored<std::remove_cvref_t<decltype(object.*field.pointer)>>::Write(object.*field.pointer,
                                                                             SFieldOut{writer, field.key, place});
}

template <class T, class BaseClass>
void WriteItem(const T& object, const CBase<BaseClass>&, std::uint32_t, IDataWriter& writer, const SPlace& place)
{
    WriteFields<BaseClass>(object, writer, place);
}

/// What is stored as nothing and read from nothing is reset by the last key that is tried.
template <bool IsStrict, class T>
bool ReadMember(T& member, const char* key, IDataReader& reader, const SPlace& place)
{
    if (SStored<T>::Read(member, SFieldIn<IsStrict>{reader, key, place}))
        return true;
    if constexpr (IsStrict)
        CheckAbsence(reader, key, place);
    return false;
}

template <bool IsStrict, class T, class Pointer>
void ReadItem(T& object, const CField<Pointer>& field, std::uint32_t version, IDataReader& reader, const SPlace& place)
{
    if (!field.IsIn(version) || ReadMember<IsStrict>(object.*field.pointer, field.key, reader, place))
        return;
    for (const char* const key : field.formerKeys)
        if (key != nullptr && ReadMember<IsStrict>(object.*field.pointer, key, reader, place))
            return;
    if (field.isRequired)
        RaiseAt(SPlace{place.document, &place, field.key}, "A required field is missing.");
}

template <bool IsStrict, class T, class BaseClass>
void ReadItem(T& object, const CBase<BaseClass>&, std::uint32_t, IDataReader& reader, const SPlace& place)
{
    ReadFields<IsStrict, BaseClass>(object, reader, place);
}

// ---- All items. ----

template <class T, std::size_t... Indices, class... Items>
void WriteItems(const T& object, const SItemList<std::index_sequence<Indices...>, Items...>& items,
                [[maybe_unused]] std::uint32_t version, IDataWriter& writer, const SPlace& place)
{
    (WriteItem(object, static_cast<const SItem<Indices, Items>&>(items).value, version, writer, place), ...);
}

template <bool IsStrict, class T, std::size_t... Indices, class... Items>
void ReadItems(T& object, const SItemList<std::index_sequence<Indices...>, Items...>& items,
               [[maybe_unused]] std::uint32_t version, IDataReader& reader, const SPlace& place)
{
    (ReadItem<IsStrict>(object, static_cast<const SItem<Indices, Items>&>(items).value, version, reader, place), ...);
}

template <class T>
void WriteDescribed(const T& object, IDataWriter& writer, const SPlace& place)
{
    constexpr const auto& Fields = DescriptionOf<T>;
    if constexpr (Fields.version != 0)
        writer.Write(Fields.versionKey, Fields.version);
    WriteItems(object, Fields.items, Fields.version, writer, place);
}

template <class Hook, class T>
void Upgrade(const Hook& hook, T& object, std::uint32_t version)
{
    if constexpr (std::is_member_function_pointer_v<Hook>)
        (object.*hook)(version);
    else
        hook(object, version);
}

template <bool IsStrict, class T>
void ReadDescribed(T& object, IDataReader& reader, const SPlace& place)
{
    constexpr const auto& Fields = DescriptionOf<T>;
    std::uint32_t stored = 0;
    if constexpr (Fields.version != 0)
        ReadMember<IsStrict>(stored, Fields.versionKey, reader, place);
    const std::uint32_t version = stored < Fields.version ? stored : Fields.version;
    ReadItems<IsStrict>(object, Fields.items, version, reader, place);
    if constexpr (!std::same_as<std::remove_cvref_t<decltype(Fields.hook)>, SNothing>)
        if (stored < Fields.version)
            Upgrade(Fields.hook, object, stored);
}

template <class T>
void WriteFields(const T& object, IDataWriter& writer, const SPlace& place)
{
    if constexpr (Described<T>)
        WriteDescribed(object, writer, place);
    else if constexpr (IsReflected<T>)
        VisitMembers<MemberCount<T>>(object,
                                     [&](const auto&... members)
                                     {
                                         [[maybe_unused]] std::size_t index = 0;
                                         (WriteValue(members, SFieldOut{writer, MemberNames<T>[index++], place}), ...);
                                     });
}

template <bool IsStrict, class T>
void ReadFields(T& object, IDataReader& reader, const SPlace& place)
{
    if constexpr (Described<T>)
        ReadDescribed<IsStrict>(object, reader, place);
    else if constexpr (IsReflected<T>)
        VisitMembers<MemberCount<T>>(object,
                                     [&](auto&... members)
                                     {
                                         [[maybe_unused]] std::size_t index = 0;
                                         (ReadMember<IsStrict>(members, MemberNames<T>[index++], reader, place), ...);
                                     });
}

// ---- Which keys there are, for Strict. ----

template <class T>
bool IsKnown(const char* key, const SPlace& place);

template <class Pointer>
bool IsKeyOf(const CField<Pointer>& field, const char* key, const SPlace& place)
{
    for (const char* const formerKey : field.formerKeys)
        if (formerKey != nullptr && AreEqualKeys(place, formerKey, key))
            return true;
    return AreEqualKeys(place, field.key, key);
}

template <class BaseClass>
bool IsKeyOf(const CBase<BaseClass>&, const char* key, const SPlace& place)
{
    return IsKnown<BaseClass>(key, place);
}

template <std::size_t... Indices, class... Items>
bool IsKeyOfAny(const SItemList<std::index_sequence<Indices...>, Items...>& items, const char* key, const SPlace& place)
{
    return (IsKeyOf(static_cast<const SItem<Indices, Items>&>(items).value, key, place) || ...);
}

template <class T>
bool IsKnown(const char* key, const SPlace& place)
{
    if constexpr (Described<T>)
    {
        constexpr const auto& Fields = DescriptionOf<T>;
        return (Fields.version != 0 && AreEqualKeys(place, Fields.versionKey, key)) ||
               IsKeyOfAny(Fields.items, key, place);
    }
    else if constexpr (IsReflected<T>)
    {
        for (const char* const name : MemberNames<T>)
            if (AreEqualKeys(place, name, key))
                return true;
        return false;
    }
    else
    {
        return true; // refused already
    }
}

/// The name of a type in documents.
template <class T>
constexpr const char* GetNameOf()
{
    if constexpr (Described<T>)
        return DescriptionOf<T>.typeName;
    else
        return STypeName<T>::Literal.text;
}

template <class T>
struct SObjectShape
{
    static const char* GetTypeName() { return GetNameOf<T>(); }
    static void WriteInside(const T& value, IDataWriter& writer, const SPlace& place)
    {
        WriteFields(value, writer, place);
    }
    template <bool IsStrict>
    static void ReadInside(T& value, IDataReader& reader, const SPlace& place)
    {
        ReadFields<IsStrict>(value, reader, place);
        if constexpr (IsStrict)
            CheckKeys(reader, place, [&](const char* key) { return IsKnown<T>(key, place); });
    }
};

template <class T>
struct SStored<T, EStorage::Fields> : SStoredObject<SObjectShape<T>, T>
{
};

} // namespace Vellum::Describing
