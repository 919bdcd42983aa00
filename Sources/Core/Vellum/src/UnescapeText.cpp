#include "Vellum/src/UnescapeText.h"

#include <cstddef>
#include <cstdint>

#include "Platform/Utf8.h"

namespace Vellum
{
namespace
{

constexpr char32_t MaxCodePoint = 0x10FFFF;

constexpr std::uint32_t NoDigit = 16;

std::uint32_t HexDigit(char character)
{
    if (character >= '0' && character <= '9')
        return static_cast<std::uint32_t>(character - '0');
    if (character >= 'A' && character <= 'F')
        return static_cast<std::uint32_t>(character - 'A' + 10);
    if (character >= 'a' && character <= 'f')
        return static_cast<std::uint32_t>(character - 'a' + 10);
    return NoDigit;
}

// How many hexadecimal digits may follow the letter behind a backslash.
std::size_t MostDigits(char letter)
{
    switch (letter)
    {
    case 'x':
        return 2;
    case 'u':
        return 4;
    case 'U':
        return 8;
    default:
        return 0;
    }
}

char32_t CodePointOf(char letter)
{
    switch (letter)
    {
    case 'a':
        return '\a';
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'v':
        return '\v';
    default:
        return static_cast<unsigned char>(letter) < 0x80 ? static_cast<char32_t>(letter) : MaxCodePoint + 1;
    }
}

// Takes what stands behind a backslash, one byte or more, from the front.
char32_t TakeEscape(std::string_view& raw)
{
    const char letter = raw.front();
    raw.remove_prefix(1);
    char32_t codePoint = 0;
    std::size_t digits = 0;
    for (; digits < MostDigits(letter) && digits < raw.size() && HexDigit(raw[digits]) != NoDigit; ++digits)
        codePoint = codePoint * 16 + HexDigit(raw[digits]);
    raw.remove_prefix(digits);
    return digits == 0 ? CodePointOf(letter) : codePoint;
}

} // namespace

std::string UnescapeText(std::string_view raw)
{
    std::string text;
    text.reserve(raw.size()); // no escape is shorter than what it stands for
    while (true)
    {
        const std::size_t plain = raw.find('\\');
        text.append(raw.substr(0, plain));
        if (plain == std::string_view::npos)
            return text;
        raw.remove_prefix(plain + 1);
        if (raw.empty())
            return text += '\\';
        const char32_t codePoint = TakeEscape(raw);
        if (codePoint <= MaxCodePoint)
            Platform::AppendUtf8(text, codePoint);
    }
}

} // namespace Vellum
