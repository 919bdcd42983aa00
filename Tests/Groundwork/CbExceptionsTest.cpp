#include "Groundwork/CbExceptions.h"

#include <thread>

#include <gtest/gtest.h>

#include "Vellum/CException.h"

#include "Support/CLogObserver.h"

namespace
{

template <class Exception>
class CbExceptions : public testing::Test
{
};

using Classes = testing::Types<Vellum::CException, CbExceptionConversion, CbExceptionContainer,
                               CbExceptionWrongFileVersion, CbExceptionStream>;
TYPED_TEST_SUITE(CbExceptions, Classes);

TYPED_TEST(CbExceptions, IsLoggedOnceWhereItIsRaisedAndNotWhenCopied)
{
    const Support::CLogObserver observer;
    const TypeParam original("Sources/Core/X.cpp", 7, "X::Y");
    const TypeParam copy(original);
    const std::unique_ptr<IException> clone = copy.Clone();

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
}

TYPED_TEST(CbExceptions, CopiesKeepTheThreadThatRaisedTheOriginal)
{
    const Support::CLogObserver observer;
    const TypeParam original("file", 1, "function");
    std::thread(
        [&]
        {
            EXPECT_EQ(original.Clone()->GetThreadID(), original.GetThreadID());
            EXPECT_NE(TypeParam("file", 1, "function").GetThreadID(), original.GetThreadID());
        })
        .join();
}

TYPED_TEST(CbExceptions, AssignedToItselfStaysAsItWas)
{
    const Support::CLogObserver observer;
    TypeParam exception("file", 1, "function");
    const TypeParam& same = exception;
    exception = same;
    EXPECT_STREQ(exception.GetFilename(), "file");
    EXPECT_STREQ(exception.GetFunctionName(), "function");
}

TEST(CbExceptionsLog, HasTheSentenceOfEachClass)
{
    const Support::CLogObserver observer;
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
