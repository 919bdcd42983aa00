#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/TextCompare.h"

#include "Vellum/Encodings.h"

#include "Describe/Maps.h"

namespace Vellum::Describing
{
namespace
{

// A key of JSON is written as it is: nothing may close its quotes too early, or keep them open.
bool FitsJson(std::string_view key)
{
    const std::size_t backslashes = key.size() - (key.find_last_not_of('\\') + 1); // npos + 1 is 0
    return key.find('"') == std::string_view::npos && backslashes % 2 == 0;
}

constexpr bool IsNameByte(char byte)
{
    const char lower = Platform::FoldCase(byte);
    return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("_-.:").find(byte) != std::string_view::npos || static_cast<unsigned char>(byte) >= 0x80;
}

std::string Lower(std::string text)
{
    std::ranges::transform(text, text.begin(), Platform::FoldCase);
    return text;
}

// The parser takes some names for sections, and bytes that are no UTF-8 for parts of others.
bool FitsXml(const std::string& key)
{
    const std::string lower = Lower(key);
    return !key.empty() && std::ranges::all_of(key, IsNameByte) && lower != "pre" && lower != "script" &&
           Encodings::ToUTF8(Encodings::FromUTF8(key)) == key;
}

} // namespace

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
    std::ranges::transform(keys, keys.begin(), Lower);
    std::ranges::sort(keys);
    if (const auto twin = std::ranges::adjacent_find(keys); twin != keys.end())
        RaiseAt(SPlace{place.document, &place, twin->c_str()}, "XML can't tell keys that differ in case alone.");
}

} // namespace Vellum::Describing
