#pragma once

#include <cstdint>

namespace Vellum
{

// An integer of 128 bits.
struct SWide
{
    std::uint64_t high;
    std::uint64_t low;
};

// left * right + addend, which always fits, from the products of the halves of the factors.
constexpr SWide MultiplyAdd(std::uint64_t left, std::uint64_t right, std::uint64_t addend)
{
    constexpr std::uint64_t Half = 0xFFFFFFFF;
    const std::uint64_t lowest = (left & Half) * (right & Half) + (addend & Half);
    const std::uint64_t middle = (left >> 32) * (right & Half) + (addend >> 32) + (lowest >> 32);
    const std::uint64_t otherMiddle = (left & Half) * (right >> 32) + (middle & Half);
    return {(left >> 32) * (right >> 32) + (middle >> 32) + (otherMiddle >> 32), (otherMiddle << 32) | (lowest & Half)};
}

} // namespace Vellum
