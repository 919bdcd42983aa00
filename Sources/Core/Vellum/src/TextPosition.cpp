#include "Vellum/src/TextPosition.h"

#include <algorithm>

#include "Vellum/src/ByteText.h"

namespace Vellum
{
namespace
{

constexpr bool IsShown(char byte) { return byte > ' ' && byte < '\x7F'; }

constexpr bool IsOfWord(char byte)
{
    return IsShown(byte) && std::string_view("{}[]<>,:;=&/\"'").find(byte) == std::string_view::npos;
}

} // namespace

STextPosition GetTextPosition(const char* text, std::size_t offset)
{
    const std::string_view before(text, offset);
    return {static_cast<std::uint32_t>(std::ranges::count(before, '\n')) + 1,
            static_cast<std::uint32_t>(before.size() - (before.rfind('\n') + 1)) + 1}; // npos + 1 is 0
}

std::string ShowFound(const char* at)
{
    constexpr std::size_t MaxWord = 20;
    const auto byte = static_cast<unsigned char>(*at);
    if (byte == 0)
        return "the end of the text";
    if (!IsShown(*at))
        return "the byte " + ShowByte(byte);
    std::string shown(1, *at);
    while (IsOfWord(*at) && IsOfWord(at[1]) && shown.size() < MaxWord)
        shown += *++at;
    return '"' + shown + '"';
}

} // namespace Vellum
