#include "Vellum/Base64.h"

#include <limits>
#include <random>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Vellum/CException.h"

#include "Vellum/src/Base64Text.h"

#include "Support/FailEachAllocation.h"
#include "Support/Raises.h"
#include "Support/Texts.h"

namespace
{

using namespace Vellum;
using Support::Bytes;
using Support::ExactText;
using Support::Hex;

// In a block of exactly the decoded size.
std::string Decoded(std::string_view text)
{
    const auto exact = ExactText(text);
    std::vector<char> out(Base64::GetDecodedSize(exact.get()));
    EXPECT_EQ(Base64::Decode(exact.get(), out.data(), out.size()), out.size());
    EXPECT_EQ(Base64::GetDecodedSizeOf(text), out.size());
    return {out.begin(), out.end()};
}

TEST(Base64, TextDecodesAsFarAsItIsData)
{
    using namespace std::string_literals;
    const struct
    {
        const char* text;
        std::string bytes;
    } cases[] = {
        {"QQ==", "A"},
        {"QUI=", "AB"},
        {"QUJD", "ABC"},
        {"QQ", "A"},
        {"QUI", "AB"},
        {"QUJDR", "ABC"},
        {"QU JD\n", "ABC"},
        {"Q\tU\r\nJ D", "ABC"},
        {"\nQUJD QUJD\n", "ABCABC"},
        {"QUJD*Q", "ABC"},
        {"QUJD-", "ABC"},
        {"QUJD\vQUJD", "ABC"},
        {"QUJD\x80QUJD", "ABC"},
        {"QR==", "A"},        // bits below the last byte are dropped
        {"QQ==\n", "A\0\0"s}, // fills that aren't directly at the end count, and what they promise is 0
        {"QQ=Q", "A\0\0"s},
        {"QQ=\n=", "A\0"s},
        {"=QUJD", "\0\0\0"s},
        {"QQ==QUJD", "A\0\0\0\0\0"s},
        {"QUJD====", "ABC"},
        {"////", "\xFF\xFF\xFF"},
        {"+/+/", "\xFB\xFF\xBF"},
    };
    for (const auto& [text, bytes] : cases)
        EXPECT_EQ(Hex(Decoded(text)), Hex(bytes)) << text;
}

TEST(Base64, DecodingNothingOrIntoTooLittleIsRefused)
{
    char out[4] = "xyz";
    for (const char* text : {"", "   ", "Q", "=", "====", "*QUJD", "\n=", static_cast<const char*>(nullptr)})
    {
        EXPECT_EQ(Base64::GetDecodedSize(text), 0u);
        EXPECT_RAISES(CException, "Vellum::Base64::Decode", Base64::Decode(text, out, sizeof out));
    }
    EXPECT_RAISES(CException, "Vellum::Base64::Decode", Base64::Decode("QQ==", out, 0));
    EXPECT_RAISES(CException, "Vellum::Base64::Decode", Base64::Decode("QQ==\n", out, 2));
    EXPECT_STREQ(out, "xyz");
    EXPECT_EQ(Base64::Decode("QQ==", out, 4), 1u);
    EXPECT_STREQ(out, "Ayz");
}

TEST(Base64, DecodesInTheMemoryOfItsText)
{
    char text[] = "QUJD\nREVGRw==";
    EXPECT_EQ(Base64::Decode(text, text, sizeof text), 7u);
    EXPECT_EQ(std::string(text, 7), "ABCDEFG");
}

// Bit by bit, as RFC 4648 tells it.
std::string ModelEncode(std::string_view data, bool lineBreaks)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t bit = 0; bit < data.size() * 8; bit += 6)
    {
        unsigned int value = 0;
        for (std::size_t i = bit; i < bit + 6; ++i)
            value =
                value * 2 + (i / 8 < data.size() ? (static_cast<unsigned char>(data[i / 8]) >> (7 - i % 8)) & 1u : 0u);
        text += alphabet[value];
        if (lineBreaks && (bit / 6) % 72 == 71 && (bit + 6) % 8 == 0)
            text += '\n';
    }
    return text.append((3 - data.size() % 3) % 3, '=');
}

TEST(Base64, BytesOfEverySizeComeBack)
{
    std::mt19937 random(64);
    for (std::size_t size = 0; size < 400; ++size)
    {
        std::string data(size, '\0');
        for (char& byte : data)
            byte = static_cast<char>(random());
        for (const bool lineBreaks : {false, true})
        {
            const std::string text = Base64::Encode(data, lineBreaks);
            ASSERT_EQ(text, ModelEncode(data, lineBreaks)) << size;
            if (size != 0)
            {
                ASSERT_EQ(Decoded(text), data);
            }
        }
    }
}

TEST(Base64, LinesHave72CharactersFromWholeBytes)
{
    const std::string line = std::string(72, 'A') + "\n";
    EXPECT_EQ(Base64::Encode(std::string(54, '\0'), true), line);
    EXPECT_EQ(Base64::Encode(std::string(55, '\0'), true), line + "AA==");
    EXPECT_EQ(Base64::Encode(std::string(53, '\0'), true), std::string(71, 'A') + "=");
    EXPECT_EQ(Base64::Encode(std::string(108, '\0'), true), line + line);
    EXPECT_EQ(Base64::Encode(std::string(108, '\0'), false), std::string(144, 'A'));
}

TEST(Base64, TextIsMadeInOneAllocationOrRefusedInTheNameOfEncode)
{
    const std::string data(1000, 'x');
    std::string text;
    const std::uint32_t failures = Support::FailEachAllocation(
        [&]
        {
            text = "before ";
            try
            {
                Base64::AppendBase64(text, data.data(), data.size(), true);
            }
            catch (const CException& exception)
            {
                EXPECT_STREQ(exception.GetFunctionName(), "Vellum::Base64::Encode");
                EXPECT_EQ(text, "before ");
            }
        });
    EXPECT_EQ(failures, 1u);
    EXPECT_EQ(text, "before " + ModelEncode(data, true));
    if constexpr (sizeof(std::size_t) > 4)
    {
        constexpr std::size_t TooMuch = std::size_t{std::numeric_limits<std::uint32_t>::max()} + 1;
        EXPECT_RAISES(CException, "Vellum::Base64::Encode", Base64::Encode("", TooMuch, false));
    }
    EXPECT_EQ(Base64::Encode(nullptr, 0, true), "");
}

} // namespace
