#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Vellum
{

// A byte as it is told: two upper-case hexadecimal digits.
inline std::string ShowByte(std::uint8_t byte)
{
    constexpr std::string_view Digits = "0123456789ABCDEF";
    return {Digits[byte / 16], Digits[byte % 16]};
}

} // namespace Vellum
