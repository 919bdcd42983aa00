#include "Vellum/Conversion.h"

#include <bit>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "Model/Values.h"
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

// What a scan gives, or none if it raises.
template <class Scan>
std::optional<std::uint64_t> Bits(const Scan& scan)
{
    try
    {
        return std::bit_cast<std::uint64_t>(scan());
    }
    catch (...)
    {
        return std::nullopt;
    }
}

// A number as printf writes it, or the beginning of one and what may follow; or neither.
std::string NumberLike(CTape& tape)
{
    static const char* const formats[] = {"%.17g", "%.9g", "%a", "%.3f", "%.30e", "%g", "%.0f"};
    static const auto starts =
        Model::Words("~-~0x~0~ \t\n\v\f\r~123456789012345678~9223372036854775807~18446744073709551615~"
                     "01777777777777777777777~inf~nan(1~1e30~9999999999999999999999");
    static const std::string letters = "0123456789 +-xX.,eEafginN)p\0\xA0"s;
    std::string text = tape.From(starts);
    if (tape.OneIn(2))
    {
        char number[400];
        const double value = std::bit_cast<double>(tape.Bits() >> (tape.OneIn(4) ? tape.Below(64) : 0));
        std::snprintf(number, sizeof number, tape.From(formats), tape.OneIn(4) ? std::fmod(value, 1e6) : value);
        text = number;
    }
    for (std::size_t more = tape.Below(4); more > 0; --more)
        text.insert(tape.Below(text.size() + 1), 1, tape.From(letters));
    return text;
}

TEST(Conversion, NumbersAreThoseOfTheCLibrary)
{
    const CLogObserver silence;
    const CCThread point;
    CheckProperty(
        [](CTape& tape)
        {
            for (int i = 0; i < 20; ++i)
            {
                const std::string text = NumberLike(tape);
                EXPECT_EQ(Bits([&] { return Conversion::StringToInt(text); }),
                          Bits([&] { return Model::ToInteger(text); }))
                    << text;
                EXPECT_EQ(Bits([&] { return Conversion::StringToDouble(text); }),
                          Bits([&] { return Model::ToDouble(text); }))
                    << text;
            }
        },
        2000);
}

TEST(Conversion, TakesIntegersOfBothNames)
{
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

TEST(Conversion, DecimalsAreSeparatedAsTheThreadsLocaleDoes)
{
    const CGermanThread german;
    EXPECT_EQ(Conversion::StringToDouble("1,5"), 1.5);
    EXPECT_EQ(Conversion::StringToDouble("15"), 15);
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Conversion::StringToDouble("1.5"));
    EXPECT_EQ(Conversion::StringToInt("1.500"), 1);
}

} // namespace
