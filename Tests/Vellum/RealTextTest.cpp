#include "Vellum/src/RealText.h"

#include <bit>

#include "Support/Testing.h"

namespace
{

std::string Format(double value, int precision, bool showPoint)
{
    std::string text(Vellum::RealTextSize(precision), '?'); // of exactly the promised size
    text.resize(static_cast<std::size_t>(Vellum::FormatReal(text.data(), value, precision, showPoint) - text.data()));
    return text;
}

void ExpectWhatPrintfGives(double value)
{
    for (const int precision : {9, 17})
        for (const bool showPoint : {false, true})
        {
            char expected[64];
            std::snprintf(expected, sizeof expected, showPoint ? "%#.*g" : "%.*g", precision, value);
            ASSERT_EQ(Format(value, precision, showPoint), expected);
        }
}

TEST(RealText, IsWhatPrintfGives)
{
    const CCThread point;
    using Limits = std::numeric_limits<double>;
    for (const double value :
         {0.0, -0.0, 100.0, 0.1, 1e-4, 1e-5, 123456789.0, 1234567890.0, 1e16, 1e17, 9.9999e-5, 5e-324, Limits::min(),
          Limits::max(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), -Limits::quiet_NaN()})
        ExpectWhatPrintfGives(value);

    std::mt19937_64 random(20240307);
    for (int count = 0; count < 5000; ++count)
    {
        const std::uint64_t bits = random();
        ExpectWhatPrintfGives(std::bit_cast<double>(bits));
        ExpectWhatPrintfGives(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))));
        ExpectWhatPrintfGives(static_cast<double>(bits % 1000000) / std::pow(10, count % 10));
    }
}

TEST(RealText, DigitsThatRoundUpToTheNextPowerOfTenKeepTheirZeros)
{
    EXPECT_EQ(Format(999999999.5, 9, true), "1.00000000e+09"); // the C library itself says 1.e+09 here
    EXPECT_EQ(Format(99999999.96, 9, true), "100000000.");
}

} // namespace
