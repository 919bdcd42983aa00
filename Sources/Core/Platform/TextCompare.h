#pragma once

#include <cstddef>

namespace Vellum::Platform
{

// Comparison of ASCII text without regard to case. Only the letters A to Z are folded, whatever the locale; bytes from
// 0x80 up are compared as they are.

// The byte with A to Z made a to z.
constexpr char FoldCase(char byte) noexcept
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

// Below, above or equal to 0 as the first zero-terminated text stands before, behind or equal to the second. The order
// is that of the folded bytes, taken as unsigned.
int CompareWithoutCase(const char* left, const char* right) noexcept;

// The same for no more than the first `count` bytes. Nothing behind a terminator is read.
int CompareWithoutCase(const char* left, const char* right, std::size_t count) noexcept;

} // namespace Vellum::Platform
