#include "Platform/CFile.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <fstream>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "Platform/FilePath.h"

#include "Support/CTempFolder.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(CFile, WritesAndReadsWhatItIsGiven)
{
    const CTempFolder folder;
    const char* const name = "n\xC3\xA4me \xF0\x9F\x98\x80.bin"; // an umlaut and a character beyond 16 bits
    const std::ptrdiff_t openBefore = CountOpenFiles();
    WriteWhole(folder.GetPath() / name, "what was there before");
    {
        CFile file;
        ASSERT_TRUE(file.OpenForWriting(folder.GetName(name)));
        EXPECT_TRUE(file.Write("abc", 3) && file.Write(nullptr, 0) && file.Write("de", 2));
        CFile moved(std::move(file));
        EXPECT_TRUE(moved.Close());
        EXPECT_FALSE(moved.Close());
    }
    EXPECT_EQ(ReadWhole(folder.GetPath() / name), "abcde");

    CFile file;
    char bytes[8] = {};
    ASSERT_TRUE(file.OpenForReading(folder.GetName(name)));
    EXPECT_EQ(file.GetSize(), 5u);
    EXPECT_EQ(file.Read(bytes, 4), 4u);
    EXPECT_EQ(file.Read(bytes + 4, 4), 1u);
    EXPECT_EQ(file.Read(bytes, 4), 0u);
    EXPECT_STREQ(bytes, "abcde");
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(CountOpenFiles(), openBefore);
}

TEST(CFile, OneThatIsNotOpenRefusesAndOneThatIsOpenedAgainLetsTheOldLockGo)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    CFile first;
    CFile second;
    EXPECT_FALSE(first.OpenForReading(L"") || first.OpenForWriting(folder.GetName("missing/file")));
    EXPECT_FALSE(first.OpenForReading(folder.GetName("")) || first.OpenForWriting(folder.GetName("")) ||
                 first.IsOpen());
    EXPECT_FALSE(first.GetSize() || first.Read(&first, 1) || first.Write("x", 1) || first.Close());
    ASSERT_TRUE(first.OpenForWriting(name) && first.Write("kept", 4));
    EXPECT_FALSE(second.OpenForReading(name) || second.OpenForWriting(name));
    ASSERT_TRUE(first.OpenForReading(name));
    EXPECT_TRUE(second.OpenForReading(name) && second.Close());
    EXPECT_FALSE(second.OpenForWriting(name));
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file"), "kept");
    first = CFile();
    EXPECT_TRUE(second.OpenForWriting(name));
}

TEST(CFile, ClosedItIsFreeWhateverAForkedProcessHolds)
{
    const CTempFolder folder;
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    CFile file;
    ASSERT_TRUE(file.OpenForWriting(folder.GetName("file")));
    const ::pid_t child = ::fork();
    ASSERT_GE(child, 0);
    ::close(pipe[child == 0 ? 1 : 0]);
    if (child == 0)
        ::_exit(static_cast<int>(::read(pipe[0], &pipe, 1))); // waits for the end
    EXPECT_TRUE(file.Close());
    EXPECT_TRUE(file.OpenForWriting(folder.GetName("file")));
    ::close(pipe[1]);
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
}

TEST(CFile, PipesAndDevicesAreEverybodys)
{
    const CTempFolder folder;
    ASSERT_EQ(::mkfifo((folder.GetPath() / "pipe").c_str(), 0600), 0);
    CFile reader;
    std::thread opener([&] { EXPECT_TRUE(reader.OpenForReading(folder.GetName("pipe"))); }); // waits for a writer
    CFile writer;
    EXPECT_TRUE(writer.OpenForWriting(folder.GetName("pipe")));
    opener.join();
    EXPECT_EQ(reader.GetSize(), std::nullopt);
    EXPECT_TRUE(writer.OpenForWriting(L"/dev/null") && reader.OpenForWriting(L"/dev/null"));
}

TEST(CFile, SizesBeyond32BitsAreTold)
{
    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "sparse", "");
    std::filesystem::resize_file(folder.GetPath() / "sparse", 0x100000005);
    CFile file;
    ASSERT_TRUE(file.OpenForReading(folder.GetName("sparse")));
    EXPECT_EQ(file.GetSize(), 0x100000005u);
}

TEST(CFile, FullDevicesAndLimitsAreFailuresAndEndNoProcess)
{
    const CTempFolder folder;
    const std::string bytes(100000, 'x');
    CFile file;
    ASSERT_TRUE(file.OpenForWriting(L"/dev/full"));
    EXPECT_FALSE(file.Write("x", 1));
    EXPECT_TRUE(file.Close());

    ::rlimit before;
    ::getrlimit(RLIMIT_FSIZE, &before);
    const ::rlimit limit{4096, before.rlim_max};
    ASSERT_TRUE(file.OpenForWriting(folder.GetName("limited")));
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const bool written = file.Write(bytes.data(), bytes.size());
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(written);
    EXPECT_TRUE(file.Write("x", 1)); // no signal is left behind to strike now
    ::sigset_t pending;
    ::sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGXFSZ), 0);
}

TEST(CFile, InterruptedAndPartialReadsGoOn)
{
    const CTempFolder folder;
    const std::filesystem::path pipe = folder.GetPath() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    struct sigaction interrupt = {};
    struct sigaction before = {};
    static std::atomic<int> interruptions;
    interrupt.sa_handler = [](int) { ++interruptions; };
    ::sigaction(SIGUSR1, &interrupt, &before); // without SA_RESTART

    std::thread writer(
        [&pipe, reader = ::pthread_self()]
        {
            std::ofstream stream(pipe, std::ios::binary);
            for (int part = 0; part < 5; ++part)
            {
                stream << part << std::flush;
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                ::pthread_kill(reader, SIGUSR1);
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        });
    CFile file;
    std::string bytes(10, '?');
    const bool opened = file.OpenForReading(folder.GetName("pipe"));
    const std::optional<std::size_t> moved = file.Read(bytes.data(), bytes.size());
    writer.join();
    ::sigaction(SIGUSR1, &before, nullptr);
    EXPECT_TRUE(opened);
    EXPECT_EQ(moved, 5u);
    EXPECT_EQ(bytes, "01234?????");
    EXPECT_GT(interruptions, 0);
}

TEST(FilePath, LoneSurrogatesAreReplaced)
{
    EXPECT_EQ(ToFilePath({L'a', wchar_t(0xD800), L'b'}).native(), "a\xEF\xBF\xBD"
                                                                  "b");
}

} // namespace
