#include "Groundwork/CbExceptions.h"

#include <type_traits>

#include "Groundwork/CbDateTime.h"

#include "Vellum/CException.h"

#include "Support/Testing.h"

namespace
{

// Texts that lie in the exception itself, and such as have no room there.
const std::array<std::string, 2> Files = {"Sources/Core/X.cpp", "/" + std::string(500, 'f') + ".cpp"};
const std::array<std::string, 2> Functions = {"X::Y", "X<" + std::string(500, 'x') + ">::Y"};

template <class Exception>
void ExpectTells(const Exception& exception, const std::string& file, const std::string& function,
                 const std::string& what, std::uint32_t thread)
{
    EXPECT_EQ(exception.GetFilename(), file);
    EXPECT_EQ(exception.GetCodeLine(), 7u);
    EXPECT_EQ(exception.GetFunctionName(), function);
    EXPECT_EQ(dynamic_cast<const std::exception&>(exception).what(), what);
    EXPECT_EQ(exception.GetThreadID(), thread);
}

// All that a class has in common with the others, on the thread that calls and on another one.
template <class Exception>
void ExpectIsLoggedOnceAndCopied(const std::string& sentence)
{
    static_assert(std::is_nothrow_copy_constructible_v<Exception> && std::is_nothrow_copy_assignable_v<Exception>);
    for (const std::string& file : Files)
        for (const std::string& function : Functions)
        {
            const CLogObserver observer;
            auto original = std::make_unique<Exception>(file.c_str(), 7, function.c_str());
            const std::uint32_t thread = original->GetThreadID();
            const Exception& same = *original;
            *original = same;
            Exception assigned("", 1, "");
            std::unique_ptr<IException> clone;
            std::thread(
                [&]
                {
                    assigned = Exception(*original);
                    EXPECT_EQ(Exception("", 1, "").GetThreadID() == thread, false);
                    clone = assigned.Clone();
                })
                .join();
            original.reset(); // copies stand alone
            const std::string what = function + ": " + sentence;
            ExpectTells(assigned, file, function, what, thread);
            ExpectTells(*clone, file, function, what, thread);
            EXPECT_NE(dynamic_cast<const Exception*>(clone.get()), nullptr);

            const CLogObserver::SEntry entry = observer.GetEntries().front();
            EXPECT_EQ(observer.GetFunctions(), (std::vector<std::string>{function, "", ""}));
            EXPECT_EQ(entry.source, L"Exception");
            EXPECT_EQ(entry.file, file);
            EXPECT_EQ(entry.line, 7);
            EXPECT_EQ(entry.text, std::wstring(sentence.begin(), sentence.end()));
        }
}

TEST(CbExceptions, AreLoggedOnceWhereTheyAreRaisedAndTellItInOneLine)
{
    ExpectIsLoggedOnceAndCopied<Vellum::CException>("Exception");
    ExpectIsLoggedOnceAndCopied<CbExceptionConversion>("Exception on data conversion");
    ExpectIsLoggedOnceAndCopied<CbExceptionContainer>("Out of memory");
    ExpectIsLoggedOnceAndCopied<CbExceptionWrongFileVersion>("Wrong file version on stream");
    ExpectIsLoggedOnceAndCopied<CbExceptionStream>("Exception on stream access");
}

TEST(CbExceptions, AreLoggedAgainOnDemandAndTakeNullForTheEmptyText)
{
    const CLogObserver observer;
    Vellum::CException("f", 1, "x").LogException();
    const CbExceptionStream nameless(nullptr, 1, nullptr);
    EXPECT_EQ(observer.GetFunctions(), (std::vector<std::string>{"x", "x", ""}));
    EXPECT_STREQ(nameless.GetFilename(), "");
    EXPECT_STREQ(nameless.what(), "Exception on stream access");
}

TEST(CbExceptions, AreMadeWithoutMemory)
{
    const CLogObserver observer;
    const CAllocationCounter counter;
    const CbExceptionOrigin origin("Sources/Core/X.cpp", 7, "X::Y", L"Sentence");
    EXPECT_EQ(counter.GetCount(), 0u);

    FailEachAllocation(
        []
        {
            const CbExceptionOrigin cut(Files[1].c_str(), 7, Functions[1].c_str(), L"Sentence");
            EXPECT_TRUE(Files[1].starts_with(cut.GetFilename()) && Functions[1].starts_with(cut.GetFunctionName()));
            EXPECT_TRUE(std::string_view(cut.GetMessage()).starts_with(cut.GetFunctionName()));
            EXPECT_GE(std::string_view(cut.GetFunctionName()).size(), 200u);
        });
}

TEST(CbExceptions, ThatNobodyCatchesTellWhatWentWrong)
{
    const auto raise = []() noexcept { (void)CbDateTime("never"); };
    EXPECT_DEATH(raise(), "CbExceptionConversion.*\n?.*CbDateTime::CbDateTime: Exception on data conversion");
}

TEST(CbExceptions, TellAFunctionOrASentenceAlone)
{
    EXPECT_STREQ(CbExceptionOrigin("f", 1, "X::Y", nullptr).GetMessage(), "X::Y");
    EXPECT_STREQ(CbExceptionOrigin("f", 1, "X", L"Gr\u00FC\u00DFe").GetMessage(), "X: Gr\u00FC\u00DFe");
}

} // namespace
