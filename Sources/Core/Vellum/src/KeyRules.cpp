#include "Vellum/src/KeyRules.h"

#include <algorithm>

#include "Platform/TextCompare.h"

#include "Vellum/Encodings.h"

namespace Vellum
{
namespace
{

constexpr bool IsNameByte(char byte)
{
    const char lower = Platform::FoldCase(byte);
    return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("_-.:").find(byte) != std::string_view::npos || static_cast<unsigned char>(byte) >= 0x80;
}

} // namespace

bool FitsJson(std::string_view key)
{
    const std::size_t backslashes = key.size() - (key.find_last_not_of('\\') + 1); // npos + 1 is 0
    return key.find('"') == std::string_view::npos && backslashes % 2 == 0;
}

bool FitsXml(const std::string& key)
{
    const std::string folded = FoldKey(key);
    return !key.empty() && std::ranges::all_of(key, IsNameByte) && folded != "pre" && folded != "script" &&
           Encodings::ToUTF8(Encodings::FromUTF8(key)) == key;
}

std::string FoldKey(std::string key)
{
    std::ranges::transform(key, key.begin(), Platform::FoldCase);
    return key;
}

} // namespace Vellum
