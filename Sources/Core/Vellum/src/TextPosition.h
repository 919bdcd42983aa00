#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Vellum
{

// A place in a text: lines end with LF, columns are bytes, both count from 1. 0 if it isn't known.
struct STextPosition
{
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

// Where a byte of the text stands.
STextPosition GetTextPosition(const char* text, std::size_t offset);

// What stands somewhere, to be told: the word or the sign in quotes, `the byte 0A`, or `the end of the text`.
std::string ShowFound(const char* at);

} // namespace Vellum
