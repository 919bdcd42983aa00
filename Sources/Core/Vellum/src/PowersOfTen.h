#pragma once

#include <array>
#include <cstddef>

#include "Vellum/src/WideInteger.h"

namespace Vellum
{

// A table of powers of ten: 10^n = (GetPowerOfTen(n) + e) * 2^(FloorLog2Pow10(n) - 127) with 0 <= e < 1. So the first
// of the 128 bits is always set, and what follows the last is cut off. e is 0 from 10^0 to 10^MostExactPower.
//
// It reaches from what the largest double is multiplied with for two digits to what the smallest is for seventeen.
constexpr int LeastPower = -306;
constexpr int MostPower = 340;
constexpr int MostExactPower = 55; // 5^55 is the last power of five below 2^128

// floor(log10(2^n)) and floor(log2(10^n)) for n from -1200 to 1200: multiples of the logarithms keep further away from
// integers there than the products do from them.
constexpr int FloorLog10Pow2(int n) { return (n * 315653) >> 20; }
constexpr int FloorLog2Pow10(int n) { return (n * 1741647) >> 19; }

extern const std::array<SWide, MostPower - LeastPower + 1> PowersOfTen;

inline const SWide& GetPowerOfTen(int n) { return PowersOfTen[static_cast<std::size_t>(n - LeastPower)]; }

} // namespace Vellum
