#pragma once

#include <cstdint>

namespace Vellum
{

// A decimal number d1.d2d3... * 10^exponent, whose digits d1d2d3... are one integer. d1 is 0 for zero alone.
struct SDecimal
{
    std::uint64_t digits;
    int exponent;
};

// The number rounded to `precision` digits, 2 to 17; of two that are equally near, the one whose last digit is even. So
// the digits are those of printf's "%.*e". The value is finite and not negative.
SDecimal RoundToDigits(double value, int precision);

} // namespace Vellum
