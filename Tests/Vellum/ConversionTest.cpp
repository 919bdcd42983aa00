#include "Vellum/Conversion.h"

#include <bit>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "Support/Testing.h"

namespace
{

using namespace Vellum;
using namespace std::string_literals;

template <class T>
T From(const std::string& text)
{
    T value{};
    Conversion::FromString(text, value);
    return value;
}

TEST(Conversion, IntegersAreTheNumberThatATextBeginsWithIfItDoes)
{
    constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, std::vector<std::string>> cases[] = {
        // a number, and the texts that give it
        {0, {"0x", "-0xg", "0", "08"}},
        {1, {"1.9", "1e3", "-18446744073709551615"}},
        {5, {"+5", "5\0006"s}},
        {7, {std::string(70, '0') + "7"}},
        {-7, {" \t\n\v\f\r-7 "}},
        {8, {"010"}},
        {12, {"12abc"}},
        {16, {"0x10"}},
        {-16, {"-0x10"}},
        {-15, {"-017z"}},
        {255, {"0XfFg"}},
        {2024, {"2024-03-07T09:05:01"}},
        {-1, {"18446744073709551615", "0xFFFFFFFFFFFFFFFF", "01777777777777777777777"}},
        {Largest, {"9223372036854775807", "18446744073709551616", "0x10000000000000000", std::string(5000, '9')}},
        {Smallest, {"-9223372036854775808", "9223372036854775808", "-18446744073709551616"}},
    };
    for (const auto& [value, texts] : cases)
        for (const std::string& text : texts)
            EXPECT_EQ(Conversion::StringToInt(text), value) << text;

    int number = 7; // stays
    for (const std::string& text : {""s, "   "s, "true"s, "-"s, "+-5"s, "- 7"s, "x10"s, ".5"s, "\0005"s, "\xA0"s + "5"})
        EXPECT_RAISES(CException, "Vellum::Conversion::StringToInt", Conversion::FromString(text, number));
    EXPECT_EQ(number, 7);
}

TEST(Conversion, IntegersKeepTheLowBitsOfTheirWidth)
{
    EXPECT_EQ(From<unsigned char>("300"), 44);
    EXPECT_EQ(From<signed char>("0xFF"), -1);
    EXPECT_EQ(From<short>("65536"), 0);
    EXPECT_EQ(From<unsigned short>("-1"), 65535);
    EXPECT_EQ(From<int>("4294967295"), -1);
    EXPECT_EQ(From<unsigned int>("-1"), 4294967295u);
    EXPECT_EQ(From<std::int64_t>("-1"), -1);
    EXPECT_EQ(From<std::uint64_t>("-1"), 18446744073709551615u);
    EXPECT_EQ(From<unsigned long long>("18446744073709551615"), 18446744073709551615u);
    EXPECT_EQ(From<long>("-5") + From<long long>("-5"), -10);
}

TEST(Conversion, CharIsTheFirstByteTextIsCopiedAndADateIsAssigned)
{
    EXPECT_EQ(From<char>(""), '\0');
    EXPECT_EQ(From<char>("abc"), 'a');
    EXPECT_EQ(From<char>("\xE4"), '\xE4');
    std::string text = "a text\0 that is no short one"s;
    EXPECT_EQ(From<std::string>(text), text);
    Conversion::FromString(text, text);
    EXPECT_EQ(text, "a text\0 that is no short one"s);

    const auto date = From<CbDateTime>("2024-03-07T09:05:01\0 and more"s);
    EXPECT_EQ(date.ToString("Y-m-d H:i:s.v", false), "2024-03-07 09:05:01.000");
    EXPECT_RAISES(CbExceptionConversion, "CbDateTime::operator =", From<CbDateTime>("2024-03-07"));
}

TEST(Conversion, FloatingNumbersAreTheWholeText)
{
    const CCThread point;
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, std::vector<const char*>> cases[] = {
        // a number, and the texts that give it
        {0, {"", "1e-400"}},
        {1.5, {"1.5", " \t\n\v\f\r1.5", "+1.5"}},
        {3, {"0x1.8p1"}},
        {5, {"5."}},
        {-5, {"-.5e1"}},
        {-16, {"-0X10"}},
        {100, {"1E+2"}},
        {4.9e-324, {"4.9e-324"}},
        {Infinity, {"inf", "1e400"}},
        {-Infinity, {"-Infinity", "-1e400"}},
    };
    for (const auto& [value, texts] : cases)
        for (const char* const text : texts)
            EXPECT_EQ(Conversion::StringToDouble(text), value) << text;
    for (const char* const text : {"-0", "-1e-400"})
        EXPECT_TRUE(std::signbit(Conversion::StringToDouble(text)));
    EXPECT_TRUE(std::isnan(Conversion::StringToDouble("nan(1)")));

    double real = 7; // stays
    for (const std::string& text :
         {"1.5 "s, " "s, "1,5"s, "1.5\0"s, "\0"s, "."s, "-"s, "1e"s, "0x"s, "1.5x"s, "--1"s, "true"s})
        EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Conversion::FromString(text, real));
    EXPECT_EQ(real, 7);
}

TEST(Conversion, FloatIsTheDoubleNarrowed)
{
    const CCThread point;
    EXPECT_EQ(From<float>("1.50000000"), 1.5f);
    EXPECT_EQ(From<float>("0.100000001"), 0.1f);
    EXPECT_EQ(From<float>("1e39"), std::numeric_limits<float>::infinity());
    // Rounded twice: the double lies half way between two floats, the text a little above.
    EXPECT_EQ(From<float>("1.000000059604644775390626"), 1.0f);
}

// Numbers of all magnitudes and forms, with mutations that break some of them.
TEST(Conversion, DoublesAreBitForBitThoseOfStrtod)
{
    const CLogObserver silence;
    std::mt19937_64 random(754);
    for (int round = 0; round < 50000; ++round)
    {
        char text[64];
        const char* const formats[] = {"%.17g", "%.9g", "%a", "%.3f", "%.30e", "%g"};
        const double number = std::bit_cast<double>(random() >> (random() % 8 == 0 ? random() % 64 : 0));
        const double drawn = round % 4 == 0 ? static_cast<double>(random() % 2000000) / 1000 : number;
        std::snprintf(text, sizeof text, formats[random() % (std::abs(drawn) < 1e20 ? 6 : 3)], drawn);
        if (random() % 4 == 0)
            text[random() % std::char_traits<char>::length(text)] = "0123456789.eE+-xnif "[random() % 20];

        char* end = nullptr;
        const double expected = std::strtod(text, &end);
        if (*end != '\0')
        {
            EXPECT_THROW(Conversion::StringToDouble(text), CException) << text;
            continue;
        }
        const auto value = Conversion::StringToDouble(text);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
    }
}

TEST(Conversion, DecimalsAreSeparatedAsTheThreadsLocaleDoes)
{
    const CGermanThread german;
    EXPECT_EQ(Conversion::StringToDouble("1,5"), 1.5);
    EXPECT_EQ(Conversion::StringToDouble("15"), 15);
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Conversion::StringToDouble("1.5"));
    EXPECT_EQ(Conversion::StringToInt("1.500"), 1);
}

} // namespace
