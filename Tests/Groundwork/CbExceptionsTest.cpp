#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "Support/Testing.h"

namespace
{

template <class Exception>
class CbExceptions : public testing::Test
{
};

using Classes = testing::Types<Vellum::CException, CbExceptionConversion, CbExceptionContainer,
                               CbExceptionWrongFileVersion, CbExceptionStream>;
TYPED_TEST_SUITE(CbExceptions, Classes);

TYPED_TEST(CbExceptions, IsLoggedOnceWhereItIsRaisedAndItsCopiesKeepWhereAndOnWhichThreadThatWas)
{
    const CLogObserver observer;
    TypeParam original("Sources/Core/X.cpp", 7, "X::Y");
    const TypeParam& same = original;
    original = same;
    std::unique_ptr<IException> clone;
    std::thread(
        [&]
        {
            const TypeParam copy(original);
            clone = copy.Clone();
        })
        .join();

    ASSERT_EQ(observer.GetEntries().size(), 1u);
    EXPECT_EQ(observer.GetEntries()[0].source, L"Exception");
    EXPECT_EQ(observer.GetEntries()[0].file, "Sources/Core/X.cpp");
    EXPECT_EQ(observer.GetEntries()[0].line, 7);
    EXPECT_EQ(observer.GetEntries()[0].function, "X::Y");
    EXPECT_NE(dynamic_cast<const TypeParam*>(clone.get()), nullptr);
    EXPECT_STREQ(clone->GetFilename(), "Sources/Core/X.cpp");
    EXPECT_EQ(clone->GetCodeLine(), 7u);
    EXPECT_STREQ(clone->GetFunctionName(), "X::Y");
    EXPECT_EQ(clone->GetThreadID(), original.GetThreadID());
    EXPECT_EQ(clone->GetThreadID(), TypeParam("file", 1, "function").GetThreadID());
    std::thread([&] { EXPECT_NE(TypeParam("file", 1, "function").GetThreadID(), clone->GetThreadID()); }).join();
}

TEST(CbExceptionsLog, HasTheSentenceOfEachClass)
{
    const CLogObserver observer;
    Vellum::CException("f", 1, "x").LogException();
    (void)CbExceptionConversion(nullptr, 1, nullptr);
    (void)CbExceptionContainer("f", 1, "x");
    (void)CbExceptionWrongFileVersion("f", 1, "x");
    (void)CbExceptionStream("f", 1, "x");

    std::vector<std::wstring> sentences;
    for (const auto& entry : observer.GetEntries())
        sentences.push_back(entry.text);
    EXPECT_EQ(sentences,
              (std::vector<std::wstring>{L"Exception", L"Exception", L"Exception on data conversion", L"Out of memory",
                                         L"Wrong file version on stream", L"Exception on stream access"}));
    EXPECT_EQ(observer.GetEntries()[2].function, "");
}

} // namespace
