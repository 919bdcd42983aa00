#include "Platform/ConstantText.h"

#include <string>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

char changeable[] = "a text that may change";

TEST(ConstantText, LiteralsOfTheProgramAreAndNothingElseIs)
{
    const char onTheStack[] = "a text that goes";
    const std::string onTheHeap = "a text that is no short one";
    EXPECT_TRUE(IsConstant("a literal"));
    for (const char* text : std::initializer_list<const char*>{changeable, onTheStack, onTheHeap.c_str(), nullptr})
        EXPECT_FALSE(IsConstant(text));
}

} // namespace
