#include "Groundwork/CbKeyedHash.h"

#include "Support/Testing.h"

namespace
{

// Made by another implementation of SipHash-1-3, with a secret of zeros.
TEST(CbKeyedHash, IsThatOfOthers)
{
    const CbKeyedHash hash(0, 0);
    for (const auto& [text, expected] : {std::pair<std::string, std::uint64_t>("a", 0x407448D2B89B1813u),
                                         {"vellum!", 0x5829CCCB1A9C9E0Eu},
                                         {"eight by", 0xD54CF3F0E0EE2AADu},
                                         {"a text of more than two words", 0xC5004E0CFB6CEA9Au}})
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
