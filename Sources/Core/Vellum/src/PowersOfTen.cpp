#include "Vellum/src/PowersOfTen.h"

#include <bit>
#include <cstdint>

namespace Vellum
{
namespace
{

// A long integer in digits to the base of 2^32, the last first, from which powers of five are made by the compiler.
class CLongInteger
{
public:
    static constexpr std::size_t MostBits = 28 * 32; // 5^340 has 790, and 2^895 / 5^306 185

    explicit constexpr CLongInteger(std::size_t bit) { digits[bit / 32] = std::uint32_t{1} << (bit % 32); }

    constexpr void MultiplyByFive()
    {
        std::uint64_t carry = 0;
        for (std::uint32_t& digit : digits)
        {
            carry += std::uint64_t{digit} * 5;
            digit = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }

    // Rounds down. Done several times, that gives what one division by the power would.
    constexpr void DivideByFive()
    {
        std::uint64_t rest = 0;
        for (std::size_t index = digits.size(); index-- > 0;)
        {
            rest = (rest << 32) | digits[index];
            digits[index] = static_cast<std::uint32_t>(rest / 5);
            rest %= 5;
        }
    }

    // The 128 bits from the first that is set, with zeros behind the last.
    constexpr SWide GetFront() const
    {
        std::size_t top = digits.size() - 1;
        while (digits[top] == 0)
            --top;
        std::uint64_t words[3]{};
        for (std::size_t index = 0; index < 5 && index <= top; ++index)
            words[index / 2] |= std::uint64_t{digits[top - index]} << (index % 2 == 0 ? 32 : 0);
        const int shift = std::countl_zero(words[0]);
        if (shift == 0)
            return {words[0], words[1]};
        return {(words[0] << shift) | (words[1] >> (64 - shift)), (words[1] << shift) | (words[2] >> (64 - shift))};
    }

private:
    std::array<std::uint32_t, MostBits / 32> digits{};
};

} // namespace

// Powers of five and of ten differ by a power of two, so their front bits are the same.
constexpr std::array<SWide, MostPower - LeastPower + 1> PowersOfTen = []
{
    std::array<SWide, MostPower - LeastPower + 1> powers{};
    CLongInteger number(0);
    for (int power = 0; power <= MostPower; ++power, number.MultiplyByFive())
        powers[static_cast<std::size_t>(power - LeastPower)] = number.GetFront();
    CLongInteger quotient(CLongInteger::MostBits - 1);
    for (int power = -1; power >= LeastPower; --power)
    {
        quotient.DivideByFive();
        powers[static_cast<std::size_t>(power - LeastPower)] = quotient.GetFront();
    }
    return powers;
}();

} // namespace Vellum
