#include "Platform/CFile.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/FilePath.h"

#include "Support/CTempFolder.h"
#include "Support/Posix/CSystemCalls.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(CFile, TellsEachFailureOfTheSystemAndStaysOpenForNone)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    WriteWhole(folder.GetPath() / "file", "old");
    const std::ptrdiff_t openBefore = CountOpenFiles();
    char bytes[3];
    const auto writes = [&]
    {
        CFile file;
        return file.OpenForWriting(name) && file.Write("new", 3) && file.Close();
    };
    const auto reads = [&]
    {
        CFile file;
        return file.OpenForReading(name) && file.Read(bytes, 3) == 3u && file.Close();
    };
    for (const CSystemCalls::ECall call : {CSystemCalls::Open, CSystemCalls::Settings, CSystemCalls::Status,
                                           CSystemCalls::Truncate, CSystemCalls::Write, CSystemCalls::Close})
    {
        CSystemCalls calls;
        calls.fates[call] = {{EIO}};
        EXPECT_FALSE(writes()) << call;
        EXPECT_EQ(calls.made[CSystemCalls::Close], call == CSystemCalls::Open ? 0 : 1) << call;
    }
    for (const CSystemCalls::ECall call :
         {CSystemCalls::Open, CSystemCalls::Settings, CSystemCalls::Status, CSystemCalls::Read, CSystemCalls::Close})
    {
        EXPECT_TRUE(writes());
        CSystemCalls calls;
        calls.fates[call] = {{EIO}};
        EXPECT_FALSE(reads()) << call;
    }
    CSystemCalls calls;
    calls.fates[CSystemCalls::Lock] = {{ENOTSUP}}; // a file system without locks
    calls.fates[CSystemCalls::Close] = {{EINTR}};  // it is closed all the same, and mustn't be again
    EXPECT_TRUE(writes());
    EXPECT_EQ(calls.made[CSystemCalls::Close], 1);
    calls.fates[CSystemCalls::Open] = {{EWOULDBLOCK}}; // a lease, which is waited for
    EXPECT_TRUE(reads());
    calls.fates[CSystemCalls::Write] = {{0, 0}};
    EXPECT_FALSE(writes());
    calls.fates[CSystemCalls::Read] = {{EIO}};
    CFile file;
    ASSERT_TRUE(file.OpenForReading(name));
    EXPECT_EQ(file.Read(bytes, std::numeric_limits<std::size_t>::max() / 2), std::nullopt);
    EXPECT_EQ(calls.mostAsked, std::size_t{1} << 30); // systems refuse more, or move part of it
    file = CFile();
    EXPECT_EQ(CountOpenFiles(), openBefore);
}

TEST(CFile, IsMadeForEverybodyAndHandedToNoOtherProgram)
{
    const CTempFolder folder;
    const ::mode_t before = ::umask(0);
    CSystemCalls calls;
    CFile file;
    EXPECT_TRUE(file.OpenForWriting(folder.GetName("file")));
    ::umask(before);
    EXPECT_EQ(std::filesystem::status(folder.GetPath() / "file").permissions(), std::filesystem::perms(0666));
    EXPECT_EQ(calls.openFlags & (O_CLOEXEC | O_NOCTTY | O_TRUNC), O_CLOEXEC | O_NOCTTY);
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

TEST(CFile, PipesAreRefusedAtOnceOrAwaitedAndDevicesAreEverybodys)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("pipe");
    ASSERT_EQ(::mkfifo((folder.GetPath() / "pipe").c_str(), 0600), 0);
    CFile reader;
    CFile writer;
    EXPECT_FALSE(reader.OpenForReading(name) || writer.OpenForWriting(name)); // with no other end
    std::thread opener([&] { EXPECT_TRUE(reader.OpenForReading(name, CFile::EPipes::Await)); });
    EXPECT_TRUE(writer.OpenForWriting(name, CFile::EPipes::Await));
    opener.join();
    EXPECT_EQ(reader.GetSize(), std::nullopt);
    EXPECT_TRUE(reader.MayHold(1) && writer.Write("x", 1));
    EXPECT_FALSE(CFile().OpenForReading(name) || CFile().OpenForWriting(name)); // with one

    EXPECT_TRUE(writer.OpenForWriting(L"/dev/null") && reader.OpenForWriting(L"/dev/null"));
    ASSERT_TRUE(reader.OpenForReading(L"/dev/zero"));
    char bytes[] = "xyz";
    EXPECT_TRUE(reader.MayHold(4) && reader.Read(bytes, 4) == 4u);
    EXPECT_EQ(std::string(bytes, 4), std::string(4, '\0'));
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY); // its reader waits
    ASSERT_TRUE(terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    ASSERT_TRUE(reader.OpenForReading(std::filesystem::path(::ptsname(terminal)).wstring()));
    std::thread typist([&] { EXPECT_EQ(::write(terminal, "ab\n", 3), 3); });
    EXPECT_EQ(reader.Read(bytes, 3), 3u);
    typist.join();
    ::close(terminal);
}

TEST(CFile, SizesAreNotTheLastWordOnFilesThatTheSystemMakesUp)
{
    CFile file;
    ASSERT_TRUE(file.OpenForReading(L"/proc/self/status"));
    EXPECT_EQ(file.GetSize(), 0u);
    EXPECT_TRUE(file.MayHold(10) && !file.MayHold(0x10000000));
    CSystemCalls calls;
    calls.fates[CSystemCalls::ReadAt] = {{EINTR}, {ESPIPE}}; // nothing can be known then
    EXPECT_TRUE(file.MayHold(0x10000000));
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

TEST(FilePath, LoneSurrogatesAreReplaced)
{
    EXPECT_EQ(ToFilePath({L'a', wchar_t(0xD800), L'b'}).native(), "a\xEF\xBF\xBD"
                                                                  "b");
}

} // namespace
