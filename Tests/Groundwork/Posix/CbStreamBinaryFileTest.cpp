#include <cerrno>
#include <sys/stat.h>

#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"

#include "Support/CTempFolder.h"
#include "Support/Posix/CSystemCalls.h"
#include "Support/Testing.h"

namespace
{

TEST(CbStreamBinaryFile, WaitsForTheOtherEndOfAPipe)
{
    const CTempFolder folder;
    ASSERT_EQ(::mkfifo((folder.GetPath() / "pipe").c_str(), 0600), 0);
    std::thread writer([&] { CbStreamWriteBinaryFile(folder.GetName("pipe")).Write(7); });
    int value = 0;
    CbStreamReadBinaryFile(folder.GetName("pipe")).Read(value);
    writer.join();
    EXPECT_EQ(value, 7);
}

// Where a file that is being written can be read without asking for it by its lock.
TEST(CbStreamBinaryFile, HoldsBackWhatIsWrittenUntilItIsFlushed)
{
    const CTempFolder folder;
    CbStreamWriteBinaryFile out(folder.GetName("file"));
    out.Write(1);
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file"), "");
    out.Flush();
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file").size(), 4u);
}

TEST(CbStreamBinaryFile, ErrorsOfTheSystemAreNotTheEndOfTheFileAndRaiseOnceAndForAll)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    const std::ptrdiff_t openBefore = CountOpenFiles();
    const std::string bytes(0x10000, 'x');
    CSystemCalls calls;
    const auto fail = [&](CSystemCalls::ECall call) { calls.fates[call] = {{ENOSPC}}; };
    {
        CbStreamWriteBinaryFile large(name);
        fail(CSystemCalls::Write);
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", large.Write(bytes.data(), bytes.size()));
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", large.Write(true));
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Flush", large.Flush());
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Close", large.Close());
        EXPECT_EQ(CountOpenFiles(), openBefore);
        large.Close();
    }
    for (const CSystemCalls::ECall call : {CSystemCalls::Write, CSystemCalls::Close})
    {
        CbStreamWriteBinaryFile stream(name);
        fail(call);
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Close", (stream.Write(1), stream.Close()));
        const CLogObserver observer;
        fail(call);
        CbStreamWriteBinaryFile(folder.GetName("other")).Write(1); // closed by its destructor
        EXPECT_TRUE(observer.GetEntries().empty());
    }
    char byte = 0;
    CbStreamWriteBinaryFile(name).Write(bytes.data(), 1);
    CbStreamReadBinaryFile stream(name);
    fail(CSystemCalls::Read);
    EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinaryFile::Read", stream.Read(&byte, 1));
    EXPECT_EQ(stream.Read(&byte, 1), 1u); // nothing was taken for read
    EXPECT_EQ(CountOpenFiles(), openBefore + 1);
}

} // namespace
