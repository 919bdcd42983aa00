#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Describe/Adapters.h"
#include "Describe/StrictKeys.h"

/// @file
/// Maps whose keys are texts: objects of the contract, the keys of the map being the keys of the object.
namespace Vellum::Describing
{

/// Raises for a key that a document of this format can't hold.
VELLUM_API void CheckEntryKey(const SPlace& place, const std::string& key);

/// Raises if two keys would be one in an XML document, which knows no difference of case.
VELLUM_API void CheckDistinctKeys(const SPlace& place, std::vector<std::string> keys);

template <class T>
struct SMapShape
{
    using Key = typename T::key_type;
    using Value = typename T::mapped_type;

    static const char* GetTypeName() { return "map"; }

    static void WriteInside(const T& value, IDataWriter& writer, const SPlace& place)
    {
        const bool isXml = place.document->format == EFormat::Xml;
        std::vector<std::string> keys;
        std::string key; // zero-terminated, whatever the map has
        for (const auto& [text, entry] : value)
        {
            key.assign(reinterpret_cast<const char*>(text.data()), text.size());
            CheckEntryKey(place, key);
            if (isXml)
                keys.push_back(key);
            WriteValue(entry, SEntryOut{{writer, key.c_str(), place}});
        }
        if (isXml)
            CheckDistinctKeys(place, std::move(keys));
    }

    template <bool IsStrict>
    static void ReadInside(T& value, IDataReader& reader, const SPlace& place)
    {
        value.clear();
        const std::uint32_t count = reader.GetKeyCount();
        for (std::uint32_t index = 0; index < count; ++index)
            readEntry(value, SEntryIn<IsStrict>{{reader, reader.GetKey(index), place}});
    }

private:
    template <class In>
    static void readEntry(T& value, const In& in)
    {
        const auto [entry, isNew] = value.try_emplace(Key(reinterpret_cast<const typename Key::value_type*>(in.key)));
        if (ReadValue(entry->second, in))
            return;
        if (isNew)
            value.erase(entry);
        if constexpr (In::IsStrict)
            CheckAbsence(in.reader, in.key, in.outer);
    }
};

template <class T>
struct SStored<T, EStorage::Map> : SStoredObject<SMapShape<T>, T>
{
};

} // namespace Vellum::Describing
