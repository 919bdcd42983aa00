
#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"

#include "Support/CTempFolder.h"
#include "Support/Testing.h"

namespace
{

// Sizes around the buffer's 64 KiB, in every order.
TEST(CbStreamBinaryFile, RunsOfEverySizeComeBackInOrder)
{
    const CTempFolder folder;
    const std::size_t sizes[] = {0, 1, 3, 65530, 65535, 65536, 65537, 200000};
    std::string expected;
    {
        CbStreamWriteBinaryFile stream(folder.GetName("file"));
        for (const std::size_t first : sizes)
            for (const std::size_t second : sizes)
            {
                std::string bytes;
                for (std::size_t i = 0; i < first + second; ++i)
                    bytes += static_cast<char>(i * 31 + i / 256);
                stream.Write(bytes.data(), first).Write(bytes.data() + first, second);
                expected += bytes;
            }
    }
    EXPECT_TRUE(ReadWhole(folder.GetPath() / "file") == expected);

    CbStreamReadBinaryFile stream(folder.GetName("file"));
    CbStreamReadBinaryFile another(folder.GetName("file"));
    std::string read;
    const auto take = [&](std::size_t size)
    {
        std::string bytes(size, '?');
        ASSERT_EQ(stream.Read(bytes.data(), size), size);
        read += bytes;
    };
    for (const std::size_t first : sizes)
        for (const std::size_t second : sizes)
            (take(second), take(first));
    EXPECT_TRUE(read == expected);
    EXPECT_EQ(stream.Read(read.data(), 1), 0u);
    std::string whole(expected.size() + 5, '?');
    EXPECT_EQ(another.Read(whole.data(), 7) + another.Read(whole.data() + 7, whole.size() - 7), expected.size());
    EXPECT_TRUE(whole == expected + "?????");
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

TEST(CbStreamBinaryFile, ErrorsOfTheSystemAreNotTheEndOfTheFileAndAFullDiskRaisesOnceAndForAll)
{
    char byte = 0;
    EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinaryFile::Read", // nothing lies at address 0
                  CbStreamReadBinaryFile(L"/proc/self/mem").Read(&byte, 1));
    const std::ptrdiff_t openBefore = CountOpenFiles();
    const std::string bytes(0x10000, 'x');
    {
        CbStreamWriteBinaryFile large(L"/dev/full");
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", large.Write(bytes.data(), bytes.size()));
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", large.Write(true));
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Close", large.Close());
        EXPECT_EQ(CountOpenFiles(), openBefore);
    }
    {
        CbStreamWriteBinaryFile flushed(L"/dev/full");
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Flush", (flushed.Write(1), flushed.Flush()));
    }
    {
        CbStreamWriteBinaryFile closed(L"/dev/full");
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Close", (closed.Write(1), closed.Close()));
        closed.Close();
        const CLogObserver observer;
        CbStreamWriteBinaryFile(L"/dev/full").Write(1); // closed by its destructor
        EXPECT_TRUE(observer.GetEntries().empty());
    }
    EXPECT_EQ(CountOpenFiles(), openBefore);
}

TEST(CbStreamBinaryFile, AFailedAllocationLeavesTheFileAsItWas)
{
    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "file", "old");
    const std::wstring name = folder.GetName("file");
    const std::ptrdiff_t openBefore = CountOpenFiles();
    const auto open = [&]
    {
        if (!GetsThrough([&] { CbStreamWriteBinaryFile stream(name); }))
        {
            EXPECT_EQ(ReadWhole(folder.GetPath() / "file"), "old");
        }
    };
    EXPECT_GT(FailEachAllocation(open), 1u);
    EXPECT_EQ(CountOpenFiles(), openBefore);
}

} // namespace
