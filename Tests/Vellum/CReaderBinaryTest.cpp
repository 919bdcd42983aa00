#include "Vellum/CReaderBinary.h"

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "Support/Binary.h"
#include "Support/Testing.h"

namespace
{

using namespace std::string_literals;
using Vellum::IContainerReader;
using Vellum::IContainerWriter;
using Vellum::IDataReader;
using Vellum::IDataWriter;

std::string Keys(const IDataReader& reader)
{
    std::string keys;
    for (std::uint32_t i = 0; i < reader.GetKeyCount(); ++i)
        keys += std::string(reader.GetKey(i)) + ' ';
    return keys;
}

const std::string OneKey = "00 00 00 00 10 01 00 00 00 01 00 00 00 6B 00 00 00 00"; // up to the root's sections
const std::string Sequence = "00 00 00 00 11 00 00 00 00";                          // up to the root's kind

std::string Repeat(std::string_view hex, int count)
{
    const std::string piece = Bytes(hex);
    std::string bytes;
    for (; count > 0; --count)
        bytes += piece;
    return bytes;
}

TEST(CReaderBinary, ReadsTheExampleAndLeavesTheStreamBehindIt)
{
    const std::string bytes = Bytes(ExampleDocument) + "tail";
    CbStreamReadBinaryBuffer stream(bytes.data(), bytes.size());
    const Vellum::CReaderBinary document(stream);
    EXPECT_EQ(stream.GetLeft(), 4u);

    CElements tags = ReadElements(
        [](IContainerReader& r)
        {
            EXPECT_EQ(Get<std::uint16_t>(r, 0), 1);
            EXPECT_EQ(Get<std::uint16_t>(r, 1), 2);
            EXPECT_EQ(Get<std::uint16_t>(r, 2), std::nullopt);
            EXPECT_EQ(Get<std::int32_t>(r, 0), std::nullopt); // kinds are strict
        });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            CFields none;
            EXPECT_EQ(Keys(r), "on x name tags ");
            EXPECT_EQ(Get<std::int32_t>(r, "x"), 7);
            EXPECT_EQ(Get<std::uint32_t>(r, "x"), std::nullopt);
            EXPECT_EQ(Get<std::string>(r, "name"), "ab");
            EXPECT_EQ(Get<bool>(r, "on"), true);
            EXPECT_EQ(Get<bool>(r, "TagList"), std::nullopt); // in the string table, but no key
            EXPECT_EQ(Get<bool>(r, "absent"), std::nullopt);
            EXPECT_TRUE(r.Read("tags", tags));
            EXPECT_FALSE(r.Read("tags", none));
        });
    document.Read(root);
    document.Read(root);
    EXPECT_RAISES(Vellum::CException, "Vellum::CReaderBinary::Read", document.Read(tags));
}

TEST(CReaderBinary, DatesAreHandedOverBySetters)
{
    CNotedDate date;
    ReadBinary(WriteBinary(ElementsOf(CbDateTime("1999-12-31T23:59:58"))),
               ReadElements([&](IContainerReader& r) { EXPECT_TRUE(r.Read(0, date)); }));
    ReadBinary(WriteBinary(FieldsOf("d", CbDateTime("2024-03-07T09:05:01"))),
               ReadFields([&](IDataReader& r) { EXPECT_TRUE(r.Read("d", date)); }));
    EXPECT_EQ(date.noted, "Y1999 m12 d31 H23 i59 s58 v0 Y2024 m3 d7 H9 i5 s1 v0 ");
}

TEST(CReaderBinary, FollowsAThousandAndTwentyFourLevelsAndNoMore)
{
    const auto records = [](int levels)
    { return Bytes(OneKey) + Repeat("01 10 01 00 00 00 00 00 00 00 00 00 00 00", levels - 1) + Bytes("00"); };
    const auto sequences = [](int levels)
    { return Bytes(Sequence) + Repeat("11 01 00 00 00", levels - 1) + Bytes("00 00 00 00 00"); };
    EXPECT_NO_THROW(ReadBinary(records(1024), CFields()));
    EXPECT_NO_THROW(ReadBinary(sequences(1024), CElements()));
    for (const int levels : {1025, 100000})
    {
        EXPECT_RAISES(Vellum::CException, "Vellum::CDataReader::Read", ReadBinary(records(levels), CFields()));
        EXPECT_RAISES(Vellum::CException, "Vellum::CContainerReader::Read", ReadBinary(sequences(levels), CElements()));
    }
}

// What costs most for its length: strings, fields, objects and elements without content, and what is announced alone.
TEST(CReaderBinary, MemoryStaysInProportionToTheDocument)
{
    const std::string many = "A0 86 01 00";
    for (const std::string& document :
         {Bytes("00 00 00 00 10" + many) + Repeat("00 00 00 00 00 00 00 00", 100000) + Bytes("00"),
          Bytes(OneKey + "01 00" + many) + Repeat("00 00 00 00 01", 100000),
          Bytes(Sequence + "0C" + many) + Repeat("00 00 00 00", 100000),
          Bytes(Sequence + "11" + many) + Repeat("00 00 00 00 00", 100000),
          Bytes("00 00 00 00 11 01 00 00 00 01 00 00 00 41 00 00 00 00 10" + many + "01 00 00 00 00") +
              Repeat("00 00 00 00 00", 100000),
          Bytes(Sequence + "0D 01 00 00 00 FF FE FF FF FE FF"),
          // Thirty bytes that announce four thousand million of anything cost little memory.
          Bytes("00 00 00 00 10 FF FF FF FF 01 00 00 00 61 00 00 00 00"),
          Bytes("00 00 00 00 10 FF FF FF FF FF FF FF FF"), Bytes(OneKey + "01 07 FF FF FF FF"),
          Bytes(OneKey + "01 0F 01 00 00 00 00 00 00 00 FF FF FF FF"), Bytes(Sequence + "0B FF FF FF 1F"),
          Bytes(Sequence + "0C FF FF FF FF"), Bytes(Sequence + "0D FF FF FF FF FF FE FF FF FF FF FF FF FF FF"),
          Bytes(Sequence + "10 FF FF FF FF 00"), Bytes(Sequence + "11 FF FF FF FF")})
    {
        const CLogObserver quiet;
        CbStreamReadBinaryBuffer stream(document.data(), document.size());
        const CAllocationCounter counter;
        GetsThrough([&] { const Vellum::CReaderBinary reader(stream); });
        EXPECT_LT(counter.GetPeak(), 16 * document.size() + 0x50000) << Hex(document.substr(0, 24));
    }
}

// The indices of the string table are of no use once a document has been parsed.
TEST(CReaderBinary, KeepsLessThanThreeTimesADocumentOfShortKeys)
{
    const CFields root(
        [](IDataWriter& w)
        {
            for (int i = 0; i < 100000; ++i)
                w.Write(("k" + std::to_string(i)).c_str(), i);
        });
    const std::string document = WriteBinary(root);
    CbStreamReadBinaryBuffer stream(document.data(), document.size());
    auto reader = std::make_unique<Vellum::CReaderBinary>(stream);
    const CAllocationCounter counter;
    reader.reset();
    EXPECT_GT(counter.GetFreed(), 2 * document.size());
    EXPECT_LT(counter.GetFreed(), 3 * document.size());
}

// Any number of entries may share a key of any length, so a key that was handed out isn't compared again. It is spoiled
// here for whoever would.
TEST(CReaderBinary, KnowsALongKeyThatItHandedOut)
{
    const std::string longKey(1000, 'k');
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            ASSERT_EQ(r.GetKeyCount(), 2u);
            for (std::uint32_t i = 0; i < 2; ++i)
            {
                const char* const key = r.GetKey(i);
                EXPECT_EQ(Get<int>(r, std::string(key).c_str()), static_cast<int>(std::strlen(key)));
                const char before = std::exchange(const_cast<char&>(*key), '!');
                EXPECT_EQ(Get<int>(r, key), static_cast<int>(std::strlen(key)));
                const_cast<char&>(*key) = before;
            }
        });
    ReadBinary(WriteBinary(FieldsOf(longKey.c_str(), 1000, (longKey + "2").c_str(), 1001)), root);
}

} // namespace
