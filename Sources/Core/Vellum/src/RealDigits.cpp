#include "Vellum/src/RealDigits.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <limits>

#include "Vellum/src/PowersOfTen.h"
#include "Vellum/src/WideInteger.h"

// How the digits are found. A number is M * 2^E with 64 bits of M, the first of them set. With the power of ten that
// brings as many digits in front of the point as are asked for, or one more,
//
//     M * 2^E * 10^n  =  M * (G + e) * 2^s,    G an integer of 128 bits from a table, 0 <= e < 1.
//
// M * G is exact in 192 bits, and M * (G + e) less than 2^64 units of its last place above it. What decides about the
// last digit, the half of its place, is more than 2^130 of these units: it is certain what to do unless the product
// happens to lie within the few units below a half. For powers that the table has exactly nothing is uncertain, a tie
// included. What remains open goes the general way, through the standard library, which computes with as many bits as
// the number needs.
//
// That the product with a power that was cut off decides nearly always, and tells when it doesn't, is the idea of
// F. Loitsch, "Printing Floating-Point Numbers Quickly and Accurately with Integers" (PLDI 2010). Its powers have 64
// bits; with 128, as in R. Giulietti, "The Schubfach way to render doubles" (2020), "nearly" is all but one in 2^60.
namespace Vellum
{
namespace
{

using std::uint64_t;

constexpr int MostDigits = 17;
constexpr int StoredBits = std::numeric_limits<double>::digits - 1;
constexpr int LeastExponent = std::numeric_limits<double>::min_exponent - 1 - StoredBits; // of the last stored bit

static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<double>::digits == 53);
static_assert(1 - FloorLog10Pow2(std::numeric_limits<double>::max_exponent - 1) == LeastPower);
static_assert(MostDigits - 1 - FloorLog10Pow2(LeastExponent) == MostPower);

// A positive number: mantissa * 2^exponent, where the mantissa has its first bit set.
struct SBinary
{
    explicit SBinary(uint64_t bits)
    {
        const int stored = static_cast<int>(bits >> StoredBits);
        mantissa = bits & ((uint64_t{1} << StoredBits) - 1);
        if (stored != 0)
            mantissa |= uint64_t{1} << StoredBits;
        const int shift = std::countl_zero(mantissa);
        mantissa <<= shift;
        exponent = LeastExponent + (stored == 0 ? 0 : stored - 1) - shift;
    }

    uint64_t mantissa;
    int exponent;
};

struct SProduct // of 192 bits
{
    uint64_t high;
    uint64_t middle;
    uint64_t low;
};

constexpr SProduct Multiply(uint64_t left, const SWide& right)
{
    const SWide low = MultiplyAdd(left, right.low, 0);
    const SWide high = MultiplyAdd(left, right.high, low.high);
    return {high.high, high.low, low.low};
}

enum class ERounding
{
    Down,
    Up,
    Tie,
    Unknown
};

// What to do with a rest. The half is that of the high word, with zeros in the others.
constexpr ERounding CompareWithHalf(const SProduct& rest, uint64_t half, bool isExact)
{
    if (rest.high == half && (rest.middle | rest.low) == 0)
        return isExact ? ERounding::Tie : ERounding::Unknown;
    if (rest.high + 1 == half && rest.middle == std::numeric_limits<uint64_t>::max() && !isExact)
        return ERounding::Unknown;
    return rest.high < half ? ERounding::Down : ERounding::Up;
}

constexpr auto Limits = [] // the first integer of one digit more
{
    std::array<uint64_t, MostDigits + 1> limits{1};
    for (std::size_t digits = 1; digits < limits.size(); ++digits)
        limits[digits] = limits[digits - 1] * 10;
    return limits;
}();

SDecimal RoundGenerally(double value, int precision)
{
    char text[MostDigits + 8];
    const char* const end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, precision - 1).ptr;
    text[1] = text[0]; // where the point was
    SDecimal decimal{};
    const char* exponent = std::from_chars(text + 1, end, decimal.digits).ptr + 1; // behind the e
    std::from_chars(exponent + (*exponent == '+' ? 1 : 0), end, decimal.exponent);
    return decimal;
}

} // namespace

SDecimal RoundToDigits(double value, int precision)
{
    if (value == 0)
        return {0, 0};
    const SBinary binary(std::bit_cast<uint64_t>(value));
    int exponent = FloorLog10Pow2(binary.exponent + 63); // or one more
    const int power = precision - 1 - exponent;
    const SProduct product = Multiply(binary.mantissa, GetPowerOfTen(power));
    const int fractionBits = -1 - FloorLog2Pow10(power) - binary.exponent; // of the high word

    const uint64_t limit = Limits[static_cast<std::size_t>(precision)];
    uint64_t digits = product.high >> fractionBits;
    uint64_t unit = 1; // of the last digit
    if (digits >= limit)
    {
        digits /= 10;
        unit = 10;
        ++exponent;
    }
    const SProduct rest{product.high - ((digits * unit) << fractionBits), product.middle, product.low};
    const ERounding rounding = CompareWithHalf(rest, unit << (fractionBits - 1), power >= 0 && power <= MostExactPower);
    if (rounding == ERounding::Unknown)
        return RoundGenerally(value, precision);
    digits += rounding == ERounding::Up || (rounding == ERounding::Tie && digits % 2 != 0) ? 1 : 0;
    if (digits == limit)
        return {limit / 10, exponent + 1};
    return {digits, exponent};
}

} // namespace Vellum
