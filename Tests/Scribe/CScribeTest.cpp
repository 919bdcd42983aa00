#include "Scribe/CScribe.h"

#include <clocale>

#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "Support/Testing.h"

namespace
{

constinit const Scribing::CScribe Log(L"Tests");

// Made before and destroyed after all other statics, those of the library among them. What it finds at the end is
// beyond the reach of a test: it ends the process with another code than 0.
class COutermostStatic
{
public:
    COutermostStatic() : wasReadyAtTheStart(IsReady()) {}
    ~COutermostStatic()
    {
        if (!IsReady())
            std::_Exit(1);
    }

    const bool wasReadyAtTheStart;

private:
    static bool IsReady()
    {
        const CLogObserver observer;
        (void)CbExceptionConversion("f", 1, "x");
        (void)CbExceptionContainer("f", 1, "x");
        (void)CbExceptionWrongFileVersion("f", 1, "x");
        (void)CbExceptionStream("f", 1, "x");
        (void)Vellum::CException("f", 1, "x");
        const auto entries = observer.GetEntries();
        return entries.size() == 5 &&
               std::ranges::all_of(entries, [](const auto& entry) { return entry.source == L"Exception"; });
    }
};

#if __has_cpp_attribute(gnu::init_priority) // others have what this program's other sources leave to chance
[[gnu::init_priority(101)]]
#endif
const COutermostStatic Outermost;

std::string GetLine(const std::function<void()>& body)
{
    testing::internal::CaptureStderr();
    body();
    return testing::internal::GetCapturedStderr();
}

} // namespace

TEST(CScribe, IsThereForStaticsThatComeFirstAndGoLast) { EXPECT_TRUE(Outermost.wasReadyAtTheStart); }

TEST(CScribe, WritesOneLineOfUtf8InAnyLocale)
{
    const Scribing::CScribe log(L"\u00C4rger \U0001F600");
    for (const char* locale : {"C", "de_DE.UTF-8", "pl_PL.ISO-8859-2"})
    {
        ASSERT_NE(std::setlocale(LC_ALL, GetLocaleName(locale)), nullptr);
        EXPECT_EQ(GetLine([&] { log.Error("f.cpp", -3, "F", L"%d Gr\u00F6\u00DFen, %ls", 5, L"\xD83D\xDE00"); }),
                  "\u00C4rger \U0001F600: f.cpp(-3): F: 5 Gr\u00F6\u00DFen, \U0001F600\n");
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(GetLine([] { Log.Error(nullptr, 1, nullptr, L""); }), "Tests: (1): : \n");
}

TEST(CScribe, CutsWhatIsTooLongBetweenCharacters)
{
    const std::string line = GetLine([] { Log.Error("f", 1, "F", std::wstring(2000, L'\u00E4').c_str()); });
    EXPECT_EQ(line.size(), std::string("Tests: f(1): F: ").size() + 2 * 1023 + 1);
    EXPECT_EQ(line.back(), '\n');
    for (const std::size_t length : {8000u, 9000u, 9001u})
        EXPECT_LE(GetLine([&] { Log.Error("f", 1, std::string(length, 'F').c_str(), L"\u00E4\u00E4"); }).size(), 8192u);
}

TEST(CScribe, NeedsNoMemoryAndDropsWhatASinkRaises)
{
    GetLine(
        []
        {
            const CAllocationCounter counter;
            Log.Error("f", 1, "F", L"text");
            EXPECT_EQ(counter.GetCount(), 0u);
        });

    int calls = 0;
    Scribing::SetSink(
        [&](const Scribing::SEntry&)
        {
            ++calls;
            throw std::runtime_error("full");
        });
    EXPECT_NO_THROW((void)Vellum::CException("f", 1, "F"));
    Scribing::SetSink({});
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(GetLine([] { Log.Error("f", 1, "F", L"text"); }), "Tests: f(1): F: text\n");
}
