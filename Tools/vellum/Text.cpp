#include "Text.h"

#include <array>
#include <utility>

#include "Vellum/src/ByteText.h"

namespace
{

// How many bytes the code point has that begins a text which isn't empty; 0 if they are no UTF-8 that may be shown: C1
// controls, marks that turn the direction of writing, and surrogates are none.
std::size_t GetLength(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u; };
    const unsigned int first = byte(0);
    if (first < 0x80)
        return first >= 0x20 && first != 0x7F ? 1 : 0;
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
    char32_t code = length == 0 ? 0 : first & (0xFFu >> (length + 1));
    for (std::size_t at = 1; at < length; ++at)
    {
        if ((byte(at) & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (byte(at) & 0x3F);
    }
    static constexpr std::array<char32_t, 5> Least{0, 0, 0x80, 0x800, 0x10000};
    const bool isControl = code < 0xA0 || (code >= 0x200E && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
                           (code >= 0x2066 && code <= 0x2069);
    const bool isCode = code >= Least.at(length) && code < 0x110000 && (code < 0xD800 || code > 0xDFFF);
    return isCode && !isControl ? length : 0;
}

std::string Escape(char byte)
{
    if (byte == '\n')
        return "\\n";
    if (byte == '\t')
        return "\\t";
    return "\\x" + Vellum::ShowByte(static_cast<unsigned char>(byte));
}

std::string Show(std::string_view text, std::size_t most, bool isQuoted)
{
    std::string shown;
    for (; !text.empty(); --most)
    {
        if (most == 0)
            return shown + (isQuoted ? "\"..." : "...");
        const std::size_t length = GetLength(text);
        if (length == 0)
            shown += Escape(text.front());
        else if (isQuoted && (text.front() == '"' || text.front() == '\\'))
            shown += std::string("\\") + text.front();
        else
            shown += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return isQuoted ? shown + '"' : shown;
}

} // namespace

std::string ShowText(std::string_view text, std::size_t most) { return Show(text, most, false); }
std::string Quote(std::string_view text, std::size_t most) { return '"' + Show(text, most, true); }

std::string Count(std::uint64_t count, std::string noun)
{
    return std::to_string(count) + ' ' + std::move(noun) + (count == 1 ? "" : "s");
}
