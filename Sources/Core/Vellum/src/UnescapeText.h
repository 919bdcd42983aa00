#pragma once

#include <string>
#include <string_view>

namespace Vellum
{

// The text that the raw text between the quotes of a JSON document stands for, in UTF-8.
//
// Beside the escapes of RFC 8259 there are \a and \v, \x with one or two hexadecimal digits and \U with one to eight;
// \u takes one to four. Any other byte behind a backslash stands for itself, the letter of \x, \u and \U too if no
// digit follows, and a backslash that ends the text for itself. Each escape is a code point of its own: two surrogates
// are not joined. Nothing comes out for a code point beyond U+10FFFF, nor for a backslash and a byte from 0x80 up.
std::string UnescapeText(std::string_view raw);

} // namespace Vellum
