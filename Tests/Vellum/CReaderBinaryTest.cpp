#include "Vellum/CReaderBinary.h"

#include <gtest/gtest.h>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "Support/Binary.h"
#include "Support/FailEachAllocation.h"
#include "Support/Raises.h"

namespace
{

using namespace Support;
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

std::string ToText(Vellum::BlobRange blob)
{
    return blob.first == nullptr && blob.second == nullptr ? "null" : std::string(blob.first, blob.second);
}

void Refuse(const char* document, const char* function)
{
    SCOPED_TRACE(document);
    EXPECT_RAISES(Vellum::CException, function, ReadBinary(Bytes(document), CFields()));
}

// A date class of a client that notes the order of its setters.
class CNotingDate : public CbDateTime
{
public:
    std::string order;
    void SetYear(unsigned short value) override { note('Y', value, &CbDateTime::SetYear); }
    void SetMonth(unsigned short value) override { note('m', value, &CbDateTime::SetMonth); }
    void SetDay(unsigned short value) override { note('d', value, &CbDateTime::SetDay); }
    void SetHour(unsigned short value) override { note('H', value, &CbDateTime::SetHour); }
    void SetMinute(unsigned short value) override { note('i', value, &CbDateTime::SetMinute); }
    void SetSecond(unsigned short value) override { note('s', value, &CbDateTime::SetSecond); }
    void SetMilliseconds(unsigned short value) override { note('v', value, &CbDateTime::SetMilliseconds); }

private:
    void note(char field, unsigned short value, void (CbDateTime::*)(unsigned short))
    {
        order += field + std::to_string(value) + ' ';
    }
};

constexpr const char* Example = "00 00 00 00 10 05 00 00 00 02 00 00 00 6F 6E 02 00 00 00"
                                "04 00 00 00 6E 61 6D 65 01 00 00 00 04 00 00 00 74 61 67 73 03 00 00 00"
                                "07 00 00 00 54 61 67 4C 69 73 74 04 00 00 00 01 00 00 00 78 00 00 00 00"
                                "04 00 01 00 00 00 02 00 00 00 01 07 01 00 00 00 00 00 00 00 07 00 00 00"
                                "0C 01 00 00 00 01 00 00 00 02 00 00 00 61 62"
                                "11 01 00 00 00 03 00 00 00 04 02 00 00 00 01 00 02 00";

TEST(CReaderBinary, ReadsTheWorkedExampleAndLeavesTheStreamBehindIt)
{
    const std::string bytes = Bytes(Example) + "tail";
    CbStreamReadBinaryBuffer stream(bytes.data(), bytes.size());
    const Vellum::CReaderBinary document(stream);
    char tail[5] = "";
    EXPECT_EQ(stream.Read(tail, 5), 4u);
    EXPECT_STREQ(tail, "tail");

    CElements tags = ReadElements(
        [](IContainerReader& r)
        {
            std::uint16_t value = 0;
            EXPECT_TRUE(r.Read(0, value) && value == 1);
            EXPECT_TRUE(r.Read(1, value) && value == 2);
            EXPECT_FALSE(r.Read(2, value));
            std::int32_t other = 5;
            EXPECT_FALSE(r.Read(0, other)); // kinds are strict
            EXPECT_EQ(other, 5);
        });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            EXPECT_EQ(Keys(r), "on x name tags ");
            std::int32_t x = 0;
            std::uint32_t unsignedX = 9;
            std::string name;
            bool on = false;
            EXPECT_TRUE(r.Read("x", x) && x == 7);
            EXPECT_FALSE(r.Read("x", unsignedX));
            EXPECT_EQ(unsignedX, 9u);
            EXPECT_TRUE(r.Read("name", name) && name == "ab");
            EXPECT_TRUE(r.Read("on", on) && on);
            EXPECT_TRUE(r.Read("tags", tags));
            CFields none;
            EXPECT_FALSE(r.Read("tags", none));
            EXPECT_FALSE(r.Read("TagList", on)); // in the string table, but no key
            EXPECT_FALSE(r.Read("absent", on));
        });
    document.Read(root);
    document.Read(root);
    EXPECT_RAISES(Vellum::CException, "Vellum::CReaderBinary::Read", document.Read(tags));
}

// Every prefix of a document ends in an exception of the stream or of the reader, and in nothing else.
TEST(CReaderBinary, RefusesEveryTruncatedDocument)
{
    const CLogObserver quiet;
    const std::string document = Bytes(Example);
    for (std::size_t size = 0; size < document.size(); ++size)
        EXPECT_THROW(ReadBinary(std::string_view(document).substr(0, size), CFields()), CbExceptionStream) << size;
    EXPECT_NO_THROW(ReadBinary(document, CFields()));
}

TEST(CReaderBinary, RefusesWhatNoWriterMakes)
{
    const char* const head = "00 00 00 00 10 01 00 00 00 01 00 00 00 6B 00 00 00 00";
    const auto record = [&](const char* rest) { return std::string(head) + rest; };
    const auto sequence = [](const char* rest) { return std::string("00 00 00 00 11 00 00 00 00") + rest; };
    const char* const dataReader = "Vellum::CDataReader::Read";
    const char* const containerReader = "Vellum::CContainerReader::Read";

    EXPECT_RAISES(CbExceptionWrongFileVersion, "CbStreamRead::ReadAndCompareVersion",
                  ReadBinary(Bytes("01 00 00 00"), CFields()));
    EXPECT_RAISES(CbExceptionWrongFileVersion, "CbStreamRead::ReadAndCompareVersion",
                  ReadBinary(Bytes(record("01 0E 01 00 00 00 00 00 00 00 01 00 00 00")), CFields()));
    Refuse("00 00 00 00 0F 00 00 00 00", "Vellum::CReaderBinary::CReaderBinary");
    Refuse(record("01 12").c_str(), dataReader);
    Refuse(record("01 00 01 00 00 00 07 00 00 00").c_str(), dataReader);                // an unknown key
    Refuse(record("01 10 01 00 00 00 00 00 00 00 07 00 00 00 00").c_str(), dataReader); // an unknown type name
    Refuse(record("01 0F 01 00 00 00 00 00 00 00 05 00 00 00 01 02").c_str(), "Vellum::CDataReader::readBlobs");
    Refuse(record("01 0F 01 00 00 00 00 00 00 00 FF FF FF FF 01 02").c_str(), "Vellum::CDataReader::readBlobs");
    Refuse(sequence("12 01 00 00 00").c_str(), containerReader);
    Refuse(sequence("0F 01 00 00 00 FF FF FF FF 01").c_str(), containerReader);
    Refuse(sequence("10 01 00 00 00 01 07 00 00 00").c_str(), containerReader);
    Refuse(sequence("10 02 00 00 00 00 07 00 00 00").c_str(), containerReader);
}

TEST(CReaderBinary, AcceptsWhatIsOddButReadable)
{
    // Sections in any order, empty, and twice; an unused string; indices in any order, one of them twice.
    const std::string odd = "00 00 00 00 10 04 00 00 00 01 00 00 00 61 09 00 00 00 01 00 00 00 62 05 00 00 00"
                            "01 00 00 00 63 05 00 00 00 01 00 00 00 75 FF FF FF FF"
                            "05 0C 00 00 00 00"
                            "07 01 00 00 00 09 00 00 00 01 00 00 00"
                            "00 01 00 00 00 05 00 00 00 FF"
                            "07 01 00 00 00 09 00 00 00 02 00 00 00"
                            "0F 02 00 00 00 09 00 00 00 00 00 00 00 05 00 00 00 02 00 00 00 68 69";
    ReadBinary(Bytes(odd), ReadFields(
                               [](IDataReader& r)
                               {
                                   EXPECT_EQ(Keys(r), "a c a a c ");
                                   std::int32_t a = 0;
                                   bool c = false;
                                   EXPECT_TRUE(r.Read("a", a));
                                   EXPECT_EQ(a, 2); // the later one
                                   EXPECT_TRUE(r.Read("c", c) && c);
                                   EXPECT_FALSE(r.Read("b", c));
                                   EXPECT_EQ(ToText(r.GetBlob("a")), "null"); // empty
                                   EXPECT_EQ(ToText(r.GetBlob("c")), "hi");
                                   EXPECT_EQ(ToText(r.GetBlob("u")), "null");
                               }));
    // The tag of an empty sequence isn't looked at, nor is the index in front of an object.
    ReadBinary(Bytes("00 00 00 00 11 00 00 00 00 77 00 00 00 00"), ReadElements(
                                                                       [](IContainerReader& r)
                                                                       {
                                                                           bool value = false;
                                                                           EXPECT_FALSE(r.Read(0, value));
                                                                       }));
    ReadBinary(Bytes("00 00 00 00 11 01 00 00 00 01 00 00 00 41 00 00 00 00"
                     "10 01 00 00 00 01 00 00 00 00 63 00 00 00 00"),
               ReadElements(
                   [](IContainerReader& r)
                   {
                       CFields object = ReadFields([](IDataReader& d) { EXPECT_EQ(d.GetKeyCount(), 0u); });
                       EXPECT_TRUE(r.Read(0, object));
                       EXPECT_FALSE(r.Read(1, object));
                   }));
}

TEST(CReaderBinary, BlobsOfASequenceAreHandedOut)
{
    const std::string large(100000, 'L');
    ReadBinary(WriteBinary(CElements(
                   [&](IContainerWriter& w)
                   {
                       w.Write(2, "ab");
                       w.Write(0, nullptr);
                       w.Write(large.size(), large.data());
                   })),
               ReadElements(
                   [&](IContainerReader& r)
                   {
                       EXPECT_EQ(ToText(r.GetBlob(0)), "ab");
                       EXPECT_EQ(ToText(r.GetBlob(1)), "null");
                       EXPECT_EQ(ToText(r.GetBlob(2)), large);
                       EXPECT_EQ(r.GetBlob(2), r.GetBlob(2));
                       EXPECT_EQ(ToText(r.GetBlob(3)), "null");
                   }));
}

TEST(CReaderBinary, DatesAreHandedOverBySetters)
{
    const CbDateTime written("1999-12-31T23:59:58");
    ReadBinary(WriteBinary(CFields([&](IDataWriter& w) { w.Write("d", written); })),
               ReadFields(
                   [](IDataReader& r)
                   {
                       CNotingDate date;
                       EXPECT_TRUE(r.Read("d", date));
                       EXPECT_EQ(date.order, "Y1999 m12 d31 H23 i59 s58 v0 ");
                   }));
}

// A record of many entries is searched in another way.
TEST(CReaderBinary, FindsEachOfManyFieldsInItsOwnKind)
{
    for (const int count : {15, 16, 17, 400})
        ReadBinary(WriteBinary(CFields(
                       [&](IDataWriter& w)
                       {
                           for (int i = 0; i < count; ++i)
                           {
                               w.Write(std::to_string(i).c_str(), i);
                               w.Write(std::to_string(i).c_str(), -1.0 * i);
                           }
                       })),
                   ReadFields(
                       [&](IDataReader& r)
                       {
                           EXPECT_EQ(r.GetKeyCount(), 2u * static_cast<unsigned>(count));
                           for (int i = 0; i < count; ++i)
                           {
                               int asInt = -1;
                               double asDouble = 1;
                               float none = 7;
                               EXPECT_TRUE(r.Read(std::to_string(i).c_str(), asInt) && asInt == i);
                               EXPECT_TRUE(r.Read(std::to_string(i).c_str(), asDouble) && asDouble == -1.0 * i);
                               EXPECT_FALSE(r.Read(std::to_string(i).c_str(), none));
                           }
                       }));
}

TEST(CReaderBinary, FollowsAThousandAndTwentyFourLevelsAndNoMore)
{
    const auto records = [](int levels)
    {
        std::string document = Bytes("00 00 00 00 10 01 00 00 00 01 00 00 00 6B 00 00 00 00");
        for (int i = 1; i < levels; ++i)
            document += Bytes("01 10 01 00 00 00 00 00 00 00 00 00 00 00");
        return document + Bytes("00");
    };
    const auto sequences = [](int levels)
    {
        std::string document = Bytes("00 00 00 00 11 00 00 00 00");
        for (int i = 1; i < levels; ++i)
            document += Bytes("11 01 00 00 00");
        return document + Bytes("00 00 00 00 00");
    };
    EXPECT_NO_THROW(ReadBinary(records(1024), CFields()));
    EXPECT_NO_THROW(ReadBinary(sequences(1024), CElements()));
    for (const int levels : {1025, 100000})
    {
        EXPECT_RAISES(Vellum::CException, "Vellum::CDataReader::Read", ReadBinary(records(levels), CFields()));
        EXPECT_RAISES(Vellum::CException, "Vellum::CContainerReader::Read", ReadBinary(sequences(levels), CElements()));
    }
}

// Thirty bytes that announce four thousand million of anything cost little memory.
TEST(CReaderBinary, TrustsNoCount)
{
    const CLogObserver quiet;
    for (const char* document :
         {"00 00 00 00 10 FF FF FF FF 01 00 00 00 61 00 00 00 00", "00 00 00 00 10 FF FF FF FF FF FF FF FF",
          "00 00 00 00 10 01 00 00 00 01 00 00 00 61 00 00 00 00 01 07 FF FF FF FF",
          "00 00 00 00 10 01 00 00 00 01 00 00 00 61 00 00 00 00 01 0F 01 00 00 00 00 00 00 00 "
          "FF FF FF FF",
          "00 00 00 00 11 00 00 00 00 0B FF FF FF FF", "00 00 00 00 11 00 00 00 00 0C FF FF FF FF",
          "00 00 00 00 11 00 00 00 00 0D FF FF FF FF FF FE FF FF FF FF FF FF FF FF",
          "00 00 00 00 11 00 00 00 00 10 FF FF FF FF 00", "00 00 00 00 11 00 00 00 00 11 FF FF FF FF"})
    {
        const CAllocationCounter counter;
        EXPECT_THROW(ReadBinary(Bytes(document), CFields()), IException) << document;
        EXPECT_LT(counter.GetBytes(), 1u << 21) << document;
    }
}

TEST(CReaderBinary, SurvivesEveryFailedAllocation)
{
    const CLogObserver quiet;
    const std::string document = Bytes(Example);
    const std::uint32_t failures = FailEachAllocation(
        [&]
        {
            try
            {
                CbStreamReadBinaryBuffer stream(document.data(), document.size());
                const Vellum::CReaderBinary reader(stream);
            }
            catch (const std::bad_alloc&)
            {
            }
            catch (const CbExceptionContainer&)
            {
            }
        });
    EXPECT_GT(failures, 5u);
}

} // namespace
