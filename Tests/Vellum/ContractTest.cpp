#include "Vellum/Vellum.h"

#include "Support/Binary.h"
#include "Support/Testing.h"

namespace
{

// The tag of the kind that a value is written as, which must be the same for a field and an element.
template <class Value>
char TagOf(const Value& value)
{
    constexpr std::size_t OfElements = 9, OfField = 19;
    const char tag = WriteBinary(ElementsOf(value))[OfElements];
    EXPECT_EQ(WriteBinary(FieldsOf("k", value))[OfField], tag);
    return tag;
}

TEST(Contract, NaturalCallsLandInTheKindThatTheySay)
{
    const auto tagsOf = [](const auto&... values) { return Hex(std::string{TagOf(values)...}); };
    EXPECT_EQ(tagsOf(true, 1, 1U, 1LL, 1ULL, "text", L"wide"), "00 07 06 09 08 0C 0D");
    EXPECT_EQ(tagsOf(1L, 1UL), sizeof(long) == 4 ? "07 06" : "09 08");
    EXPECT_EQ(Hex(WriteBinary(CElements([](auto& w) { w.Write(std::vector<bool>{true}[0]); }))).substr(27, 2), "00");
}

} // namespace
