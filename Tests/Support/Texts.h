#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Support
{

// Lines("{→\"a\":1", "}") is the document of these lines: → stands for a TAB, and each line ends with a line feed.
template <class... Line>
std::string Lines(const Line&... lines)
{
    std::string text;
    ((text += lines, text += '\n'), ...);
    for (std::size_t at = 0; (at = text.find("→", at)) != std::string::npos;)
        text.replace(at, std::string_view("→").size(), "\t");
    return text;
}

// Bytes("00 0A FF"): pairs of hexadecimal digits, blanks anywhere between them.
inline std::string Bytes(std::string_view hex)
{
    std::string digits;
    for (const char c : hex)
        if (c != ' ' && c != '\n')
            digits += c;
    std::string bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    return bytes;
}

// The reverse, for messages and expectations that people read.
inline std::string Hex(std::string_view bytes)
{
    std::string hex;
    for (const char byte : bytes)
    {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        hex += hex.empty() ? "" : " ";
        hex += digits;
    }
    return hex;
}

// A zero-terminated copy of a text in a block of exactly its size, so that a sanitizer sees one byte too far.
inline std::unique_ptr<char[]> ExactText(std::string_view text)
{
    auto block = std::make_unique<char[]>(text.size() + 1);
    text.copy(block.get(), text.size());
    return block;
}

} // namespace Support
