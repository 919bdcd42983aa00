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

std::string Print(const char* format, int precision, double value)
{
    if (std::isnan(value)) // whose sign not all C libraries print
        return std::signbit(value) ? "-nan" : "nan";
    char text[512];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, precision, value))};
}

// "%#.*g" by its definition: the C library itself loses zeros where digits round up to the next power of ten.
std::string PrintWithPoint(int precision, double value)
{
    const std::string scientific = Print("%#.*e", precision - 1, value);
    const int exponent = std::isfinite(value) ? std::atoi(scientific.c_str() + scientific.find('e') + 1) : precision;
    return exponent < -4 || exponent >= precision ? scientific : Print("%#.*f", precision - 1 - exponent, value);
}

void ExpectWhatPrintfGives(double value)
{
    for (const int precision : {9, 17})
    {
        ASSERT_EQ(Format(value, precision, false), Print("%.*g", precision, value));
        ASSERT_EQ(Format(value, precision, true), PrintWithPoint(precision, value));
    }
}

// Numbers of all kinds and sizes, and those where rounding is hard: few units from powers, halves of the last digit.
TEST(RealText, IsWhatPrintfGives)
{
    const CCThread point;
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.0, -0.0, 1e-4, 1e-5, 9.9999e-5, 999999999.5, Limits::max(), Limits::infinity(),
                               -Limits::infinity(), Limits::quiet_NaN(), -Limits::quiet_NaN()})
        ExpectWhatPrintfGives(value);

    std::mt19937_64 random(20240307);
    const auto expectNear = [&](double value)
    { ExpectWhatPrintfGives(std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) + random() % 7 - 3)); };
    const std::clock_t end = GetEndOfTest(0.3);
    do
    {
        const std::uint64_t bits = random();
        const int few = static_cast<int>(bits % 11);
        ExpectWhatPrintfGives(std::bit_cast<double>(bits));
        ExpectWhatPrintfGives(std::bit_cast<double>(bits >> (12 + bits % 52))); // subnormal
        ExpectWhatPrintfGives(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))));
        ExpectWhatPrintfGives(static_cast<double>(bits >> 44) / std::pow(10, few));
        ExpectWhatPrintfGives(std::ldexp(static_cast<double>(bits >> 11), -few));
        ExpectWhatPrintfGives(static_cast<double>((bits >> 34) * 10 + 5));
        expectNear(std::ldexp(1, static_cast<int>(bits % 2046) - 1022));
        expectNear(std::strtod(("1e" + std::to_string(static_cast<int>(bits % 616) - 307)).c_str(), nullptr));
    } while (std::clock() < end && !testing::Test::HasFatalFailure());
}

} // namespace
