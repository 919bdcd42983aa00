#include <gtest/gtest.h>

#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"

#include "Support/CTempFolder.h"
#include "Support/FailEachAllocation.h"
#include "Support/Raises.h"

namespace
{

using Support::CountOpenFiles;
using Support::CTempFolder;
using Support::ReadWhole;
using Support::WriteWhole;

std::string Pattern(std::size_t size)
{
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
        bytes += static_cast<char>(i * 31 + i / 256);
    return bytes;
}

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
                const std::string bytes = Pattern(first + second);
                stream.Write(bytes.data(), first).Write(bytes.data() + first, second);
                expected += bytes;
            }
    }
    EXPECT_TRUE(ReadWhole(folder.GetPath() / "file") == expected);

    CbStreamReadBinaryFile stream(folder.GetName("file"));
    CbStreamReadBinaryFile another(folder.GetName("file"));
    std::size_t at = 0;
    for (const std::size_t first : sizes)
        for (const std::size_t second : sizes)
            for (const std::size_t size : {second, first})
            {
                std::string bytes(size, '?');
                ASSERT_EQ(stream.Read(bytes.data(), size), size);
                ASSERT_TRUE(bytes == expected.substr(at, size)) << at << ' ' << size;
                at += size;
            }
    EXPECT_EQ(stream.Read(expected.data(), 1), 0u);
    std::string whole(expected.size() + 5, '?');
    EXPECT_EQ(another.Read(whole.data(), 7) + another.Read(whole.data() + 7, whole.size() - 7), expected.size());
    EXPECT_TRUE(whole == expected + "?????");
}

TEST(CbStreamBinaryFile, TypedValuesComeBackAndTheEndRaises)
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

    CbStreamReadBinaryFile in(folder.GetName("file"));
    std::wstring text;
    double number = 0;
    bool flag = false;
    in.ReadAndCompareVersion(0);
    in.Read(text).Read(number).Read(flag);
    EXPECT_EQ(text, L"wide");
    EXPECT_EQ(number, 1.5);
    EXPECT_TRUE(flag);
    EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinary::Read", in.Read(flag));
}

TEST(CbStreamBinaryFile, FilesThatCannotBeOpenedRaiseAndStayAsTheyWere)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    const auto write = [](const std::wstring& file) { CbStreamWriteBinaryFile stream(file); };
    const auto read = [](const std::wstring& file) { CbStreamReadBinaryFile stream(file); };
    constexpr const char* writing = "CbStreamWriteBinaryFile::CbStreamWriteBinaryFile";
    constexpr const char* reading = "CbStreamReadBinaryFile::CbStreamReadBinaryFile";
    EXPECT_RAISES(CbExceptionStream, reading, read(name));
    EXPECT_RAISES(CbExceptionStream, reading, read(folder.GetName("")));
    EXPECT_RAISES(CbExceptionStream, writing, write(folder.GetName("")));
    {
        CbStreamWriteBinaryFile first(name);
        first.Write('a');
        first.Flush();
        EXPECT_RAISES(CbExceptionStream, writing, write(name));
        EXPECT_RAISES(CbExceptionStream, reading, read(name));
        first.Write('b');
    }
    CbStreamReadBinaryFile reader(name);
    EXPECT_RAISES(CbExceptionStream, writing, write(name));
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file"), "ab");
}

TEST(CbStreamBinaryFile, AFullDiskRaisesOnceAndForAll)
{
    const std::ptrdiff_t openBefore = CountOpenFiles();
    const std::string bytes(0x10000, 'x');
    {
        CbStreamWriteBinaryFile stream(L"/dev/full");
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", stream.Write(bytes.data(), bytes.size()));
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Write", stream.Write(true));
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Close", stream.Close());
        EXPECT_EQ(CountOpenFiles(), openBefore);
    }
    {
        CbStreamWriteBinaryFile stream(L"/dev/full");
        stream.Write(1);
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Flush", stream.Flush());
    }
    {
        CbStreamWriteBinaryFile stream(L"/dev/full");
        stream.Write(1);
        EXPECT_RAISES(CbExceptionStream, "CbStreamWriteBinaryFile::Close", stream.Close());
        stream.Close();
    }
    {
        const Support::CLogObserver observer;
        CbStreamWriteBinaryFile(L"/dev/full").Write(1); // closed by its destructor
        EXPECT_TRUE(observer.GetEntries().empty());
    }
    EXPECT_EQ(CountOpenFiles(), openBefore);
}

TEST(CbStreamBinaryFile, ErrorsOfTheSystemAreNotTheEndOfTheFile)
{
    char byte = 0;
    CbStreamReadBinaryFile unmapped(L"/proc/self/mem"); // nothing lies at address 0
    EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinaryFile::Read", unmapped.Read(&byte, 1));
}

TEST(CbStreamBinaryFile, AFailedAllocationLeavesTheFileAsItWas)
{
    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "file", "old");
    const std::wstring name = folder.GetName("file");
    const std::ptrdiff_t openBefore = CountOpenFiles();
    EXPECT_GT(Support::FailEachAllocation(
                  [&]
                  {
                      try
                      {
                          CbStreamWriteBinaryFile stream(name);
                      }
                      catch (const std::bad_alloc&)
                      {
                          EXPECT_EQ(std::filesystem::file_size(folder.GetPath() / "file"), 3u);
                      }
                  }),
              1u);
    EXPECT_EQ(CountOpenFiles(), openBefore);
}

} // namespace
