#include <algorithm>
#include <string>
#include <vector>

#include "Vellum/src/KeyRules.h"

#include "Describe/Maps.h"

namespace Vellum::Describing
{

void CheckEntryKey(const SPlace& place, const std::string& key)
{
    const EFormat format = place.document->format;
    if (key.find('\0') != std::string::npos)
        RaiseAt(place, "A key of the map has a zero byte.");
    if (format == EFormat::Json && !FitsJson(key))
        RaiseAt(SPlace{place.document, &place, key.c_str()}, "The key of the map can't be written in JSON.");
    if (format == EFormat::Xml && !FitsXml(key))
        RaiseAt(SPlace{place.document, &place, key.c_str()}, "The key of the map is no element name of XML.");
}

void CheckDistinctKeys(const SPlace& place, std::vector<std::string> keys)
{
    std::ranges::transform(keys, keys.begin(), FoldKey);
    std::ranges::sort(keys);
    if (const auto twin = std::ranges::adjacent_find(keys); twin != keys.end())
        RaiseAt(SPlace{place.document, &place, twin->c_str()}, "XML can't tell keys that differ in case alone.");
}

} // namespace Vellum::Describing
