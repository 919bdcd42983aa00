#include "Platform/ForcedUnwind.h"

#include <pthread.h>

#include "Platform/CFile.h"
#include "Platform/CNewFile.h"
#include "Platform/StandardError.h"

#include "Support/CTempFolder.h"
#include "Support/Posix/EndingThreads.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;

void Cancel()
{
    ::pthread_cancel(::pthread_self());
    ::pthread_testcancel();
}

enum class EEnd
{
    Exit,
    Cancelled,
    Exception,
    CancelledInScope,
    CancelledWithFiles
};

// All of it is noexcept, or is called by what is.
void UseFilesWhenCancelled(std::string& told)
{
    static const CTempFolder folder; // outlives the thread: it can be cancelled itself
    ::pthread_cancel(::pthread_self());
    char byte = 'x';
    Platform::CFile file;
    file.OpenForWriting(L"/dev/null");
    file.Write(&byte, 1);
    file.OpenForReading(L"/dev/zero");
    file.Read(&byte, 1);
    file.OpenForReading(L"/proc/self/status");
    file.MayHold(1000000);
    file.Close();
    file.OpenForReading(L"/dev/zero");
    Platform::WriteToStandardError("");
    Platform::CNewFile newFile;
    newFile.Create(folder.GetPath() / "file");
    newFile.Write("x", 1);
    newFile.PutInPlace();
    Platform::CNewFile().Create(folder.GetPath() / "dropped");
    std::string bytes;
    Platform::ReadWholeFile(folder.GetPath() / "file", bytes);
    EXPECT_EQ(bytes, "x");
    told += "held back, ";
}

void End(EEnd end, std::string& told)
{
    if (end == EEnd::Exit)
        ::pthread_exit(nullptr);
    if (end == EEnd::Cancelled)
        Cancel();
    if (end == EEnd::Exception)
        throw 42;
    if (end == EEnd::CancelledWithFiles)
        UseFilesWhenCancelled(told);
    else
    {
        const Platform::CNoCancellation outer;
        const Platform::CNoCancellation inner;
        Cancel();
        told += "held back, ";
    }
    ::pthread_testcancel();
}

// What a thread tells of itself.
std::string RunThread(EEnd end)
{
    std::pair<EEnd, std::string> thread(end, "");
    const auto body = [](void* argument) -> void*
    {
        auto& [how, told] = *static_cast<decltype(thread)*>(argument);
        const struct SUnwound
        {
            std::string& told;
            ~SUnwound() { told += "unwound"; }
        } unwound{told};
        try
        {
            End(how, told);
        }
        catch (...)
        {
            Platform::PassForcedUnwind();
            told += "caught, ";
        }
        return nullptr;
    };
    ::pthread_t id;
    EXPECT_EQ(::pthread_create(&id, nullptr, body, &thread), 0);
    ::pthread_join(id, nullptr);
    return thread.second;
}

TEST(ForcedUnwind, PassesWhatCatchesEverythingAndCanBeHeldBack)
{
    EXPECT_EQ(RunThread(EEnd::Exception), "caught, unwound");
    if (!Support::EndingThreadsUnwind)
        GTEST_SKIP() << "No thread may end in the midst of its functions.";
    EXPECT_EQ(RunThread(EEnd::Exit), "unwound");
    EXPECT_EQ(RunThread(EEnd::Cancelled), "unwound");
    EXPECT_EQ(RunThread(EEnd::CancelledInScope), "held back, unwound");
    EXPECT_EQ(RunThread(EEnd::CancelledWithFiles), "held back, unwound");
}

} // namespace
