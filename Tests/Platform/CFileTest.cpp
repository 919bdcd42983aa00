#include "Platform/CFile.h"

#include "Support/CDelays.h"
#include "Support/CTempFolder.h"
#include "Support/Pieces.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

void ExpectTheSame(CTape& tape)
{
    const CTempFolder folder;
    const char* const name = "n\xC3\xA4me \xF0\x9F\x98\x80.bin"; // an umlaut and a character beyond 16 bits
    WriteWhole(folder.GetPath(name), std::string(1000, 'x'));
    const std::ptrdiff_t openBefore = CountOpenFiles();
    const CDelays delays(tape);
    std::string bytes;
    {
        CFile first;
        HOLDS(first.OpenForWriting(folder.GetName(name)));
        CFile file(std::move(first));
        for (const std::string& piece : AnyPieces(tape, [](CTape& sizes) { return sizes.Below(300); }))
        {
            HOLDS(file.Write(piece.data(), piece.size()));
            bytes += piece;
        }
        HOLDS(file.Close() && !file.Close() && !first.IsOpen());
    }
    HOLDS(ReadWhole(folder.GetPath(name)) == bytes);

    CFile file;
    HOLDS(file.OpenForReading(folder.GetName(name)));
    HOLDS(file.GetSize() == bytes.size());
    HOLDS(file.MayHold(bytes.size()) && !file.MayHold(bytes.size() + 1));
    std::string read(bytes.size() + 5, '?');
    const std::size_t some = tape.Below(bytes.size() + 1);
    HOLDS(file.Read(read.data(), some) == some);
    HOLDS(file.Read(read.data() + some, read.size() - some) == bytes.size() - some);
    HOLDS(read == bytes + "?????");
    HOLDS(file.Close());
    HOLDS(CountOpenFiles() == openBefore);
}

TEST(CFile, TheSameBytesArriveHoweverTheSystemMovesThem) { CheckProperty(ExpectTheSame, 100); }

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

TEST(CFile, SizesAreToldBeyond32Bits)
{
    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "sparse", "");
    std::filesystem::resize_file(folder.GetPath() / "sparse", 0x100000005);
    CFile file;
    ASSERT_TRUE(file.OpenForReading(folder.GetName("sparse")));
    EXPECT_EQ(file.GetSize(), 0x100000005u);
    EXPECT_TRUE(file.MayHold(0x100000005) && !file.MayHold(0x100000006));
}

} // namespace
