#include <sys/stat.h>

#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"

#include "Support/CTempFolder.h"
#include "Support/Fates.h"
#include "Support/Testing.h"

namespace
{

// Around the buffer's 64 KiB more often than not.
rc::Gen<std::size_t> AnySize()
{
    return rc::gen::oneOf(rc::gen::inRange<std::size_t>(0, 10), rc::gen::inRange<std::size_t>(0x10000 - 9, 0x10000 + 9),
                          rc::gen::inRange<std::size_t>(0, 150000));
}

RC_GTEST_PROP(CbStreamBinaryFile, PiecesOfEverySizeComeBackInOrder, ())
{
    const CTempFolder folder;
    CSystemCalls calls;
    calls.fates[CSystemCalls::Write] = AnyDelays();
    calls.fates[CSystemCalls::Read] = AnyDelays();
    std::string expected;
    {
        CbStreamWriteBinaryFile stream(folder.GetName("file"));
        for (const std::string& piece : AnyPieces(AnySize()))
        {
            stream.Write(piece.data(), piece.size());
            expected += piece;
        }
    }
    RC_ASSERT(ReadWhole(folder.GetPath() / "file") == expected);

    CbStreamReadBinaryFile stream(folder.GetName("file"));
    std::string read;
    for (std::size_t delivered = 1; delivered != 0;)
    {
        std::string bytes(1 + *AnySize(), '?');
        delivered = stream.Read(bytes.data(), bytes.size());
        RC_ASSERT(delivered == std::min(bytes.size(), expected.size() - read.size()));
        read.append(bytes, 0, delivered);
    }
    RC_ASSERT(read == expected);
}

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

TEST(CbStreamBinaryFile, HoldsBackWhatIsWrittenUntilItIsFlushedAndTakesNothingOnceClosed)
{
    const CTempFolder folder;
    CbStreamWriteBinaryFile out(folder.GetName("file"));
    out.WriteVersion(0).Write(L"wide").Write(1.5).Write(true);
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file"), "");
    out.Flush();
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file").size(), 4u + 12 + 8 + 1);
    out.Close();
    out.Close();
    EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", out.Write(1));
    EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Flush", out.Flush());
}

TEST(CbStreamBinaryFile, FilesThatCannotBeOpenedRaise)
{
    const CTempFolder folder;
    const CbStreamWriteBinaryFile writer(folder.GetName("file")); // nobody else gets this one
    EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::CbStreamWriteBinaryFile",
                  CbStreamWriteBinaryFile(folder.GetName("file")));
    EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinaryFile::CbStreamReadBinaryFile",
                  CbStreamReadBinaryFile(folder.GetName("file")));
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
