#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryFile.h"
#include "Groundwork/CbStreamWriteBinaryFile.h"

#include "Support/CDelays.h"
#include "Support/CTempFolder.h"
#include "Support/Pieces.h"
#include "Support/Testing.h"

namespace
{

// Around the buffer's 64 KiB more often than not.
std::size_t AnySize(CTape& tape)
{
    const std::pair<std::size_t, std::size_t> ranges[] = {{0, 10}, {0x10000 - 9, 0x10000 + 9}, {0, 150000}};
    const auto& [first, end] = tape.From(ranges);
    return first + tape.Below(end - first);
}

void ExpectInOrder(CTape& tape)
{
    const CTempFolder folder;
    const CDelays delays(tape);
    std::string expected;
    {
        CbStreamWriteBinaryFile stream(folder.GetName("file"));
        for (const std::string& piece : AnyPieces(tape, AnySize))
        {
            stream.Write(piece.data(), piece.size());
            expected += piece;
        }
    }
    HOLDS(ReadWhole(folder.GetPath() / "file") == expected);

    CbStreamReadBinaryFile stream(folder.GetName("file"));
    std::string read;
    for (std::size_t delivered = 1; delivered != 0;)
    {
        std::string bytes(1 + AnySize(tape), '?');
        delivered = static_cast<std::size_t>(stream.Read(bytes.data(), bytes.size()));
        HOLDS(delivered == std::min(bytes.size(), expected.size() - read.size()));
        read.append(bytes, 0, delivered);
    }
    HOLDS(read == expected);
}

TEST(CbStreamBinaryFile, PiecesOfEverySizeComeBackInOrder) { CheckProperty(ExpectInOrder, 100); }

TEST(CbStreamBinaryFile, TakesNothingOnceClosed)
{
    const CTempFolder folder;
    CbStreamWriteBinaryFile out(folder.GetName("file"));
    out.WriteVersion(0).Write(L"wide").Write(1.5).Write(true);
    out.Close();
    out.Close();
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file").size(), 4u + 12 + 8 + 1);
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

} // namespace
