#include "Vellum/Base64.h"

#include "Vellum/CException.h"

#include "Vellum/src/Base64Text.h"

#include "Model/Values.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;

// In a block of exactly the decoded size.
std::string Decoded(std::string_view text)
{
    const auto exact = ExactText(text);
    std::vector<char> out(Base64::GetDecodedSize(exact.get()));
    EXPECT_EQ(Base64::Decode(exact.get(), out.data(), out.size()), out.size());
    const CbArray<unsigned char> bytes = Base64::DecodeText(text);
    EXPECT_TRUE(std::ranges::equal(bytes, out, {}, {}, [](char byte) { return static_cast<unsigned char>(byte); }));
    return {out.begin(), out.end()};
}

TEST(Base64, TextDecodesAsTheModelTells)
{
    EXPECT_EQ(Decoded("QUJD*Q"), "ABC");
    EXPECT_EQ(Hex(Decoded("+/+/")), "FB FF BF");
    const CLogObserver quiet;
    CheckProperty(
        [](CTape& tape)
        {
            std::string text;
            for (std::size_t left = tape.Below(24); left != 0; --left)
                text += tape.From(std::string_view("AQUJDRa9+/==  \n\r\t*-\v\x80"));
            try
            {
                const std::string expected = Model::FromBase64(text);
                EXPECT_EQ(Hex(Decoded(text)), Hex(expected)) << text;
            }
            catch (const Model::SRaised&)
            {
                EXPECT_THROW(Decoded(text), CException) << text;
            }
        },
        2000);

    char text[] = "QUJD\nREVGRw=="; // in the memory of its text
    EXPECT_EQ(Base64::Decode(text, text, sizeof text), 7u);
    EXPECT_EQ(std::string(text, 7), "ABCDEFG");
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

TEST(Base64, TextIsMadeInOneAllocationOrRefusedInTheNameOfEncode)
{
    const std::string data(1000, 'x');
    const auto encode = [&] { GetsThrough([&] { Base64::CBase64Text(data.data(), data.size(), true); }); };
    {
        const CLogObserver log;
        EXPECT_EQ(FailEachAllocation(encode), 1u);
        EXPECT_EQ(log.GetFunctions(), std::vector<std::string>{"Vellum::Base64::Encode"});
    }
    for (std::size_t size = 0; size <= data.size(); ++size) // a short one is held in another place
        for (const bool lineBreaks : {false, true})
            EXPECT_EQ(Base64::CBase64Text(data.data(), size, lineBreaks).Get(),
                      Base64::Encode(data.data(), size, lineBreaks));
    if (constexpr std::size_t large = Support::FourGigabytes; large != 0)
        EXPECT_RAISES(CException, "Vellum::Base64::Encode", Base64::Encode("", large, false));
    EXPECT_EQ(Base64::Encode(nullptr, 0, true), "");
}

} // namespace
