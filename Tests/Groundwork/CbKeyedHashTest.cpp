#include "Groundwork/CbKeyedHash.h"

#include "Support/Testing.h"

namespace
{

// Made by another implementation of SipHash-1-3, with the secret 00 01 ... 0F.
TEST(CbKeyedHash, IsThatOfOthers)
{
    const CbKeyedHash hash(0x0706050403020100u, 0x0F0E0D0C0B0A0908u);
    for (const auto& [text, expected] : {std::pair<std::string, std::uint64_t>("a", 0x1C2697AB786A6237u),
                                         {"vellum!", 0x89B23923F925EFA7u},
                                         {"eight by", 0x9CCD6765CE74F65Fu},
                                         {"a text of more than two words", 0xF063EDAF39159B56u}})
        EXPECT_EQ(hash(text.data(), text.size()), expected) << text;
}

TEST(CbKeyedHash, HangsOnItsSecret)
{
    const std::string text = "vellum!";
    const auto hashOf = [&](const CbKeyedHash& hash) { return hash(text.data(), text.size()); };
    const CbKeyedHash drawn[2];
    EXPECT_NE(hashOf(drawn[0]), hashOf(drawn[1]));
    EXPECT_NE(hashOf(CbKeyedHash(1, 0)), hashOf(CbKeyedHash(0, 0)));
    EXPECT_NE(hashOf(CbKeyedHash(0, 1)), hashOf(CbKeyedHash(0, 0)));
}

} // namespace
