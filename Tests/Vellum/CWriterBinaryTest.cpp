#include "Vellum/CWriterBinary.h"

#include <stdexcept>

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
using Vellum::IContainerWriter;
using Vellum::IDataReader;
using Vellum::IDataWriter;

std::string DocumentOf(CFields::Writing writing) { return Hex(WriteBinary(CFields(std::move(writing)))); }
std::string DocumentOfElements(CElements::Writing writing) { return Hex(WriteBinary(CElements(std::move(writing)))); }
std::string HexOf(std::string_view hex) { return Hex(Bytes(hex)); }

TEST(CWriterBinary, EmptyRoots)
{
    EXPECT_EQ(Hex(WriteBinary(CFields())), "00 00 00 00 10 00 00 00 00 00");
    EXPECT_EQ(Hex(WriteBinary(CElements())), "00 00 00 00 11 00 00 00 00 00 00 00 00 00");
}

TEST(CWriterBinary, WorkedExampleByteForByte)
{
    const CElements tags(
        [](IContainerWriter& w)
        {
            w.Write(std::uint16_t{1});
            w.Write(std::uint16_t{2});
        },
        {}, "TagList");
    EXPECT_EQ(DocumentOf(
                  [&](IDataWriter& w)
                  {
                      w.Write("x", 7);
                      w.Write("name", "ab");
                      w.Write("on", true);
                      w.Write("tags", tags);
                  }),
              HexOf("00 00 00 00 10 05 00 00 00"                   // version, object, 5 strings
                    "02 00 00 00 6F 6E 02 00 00 00"                // on
                    "04 00 00 00 6E 61 6D 65 01 00 00 00"          // name
                    "04 00 00 00 74 61 67 73 03 00 00 00"          // tags
                    "07 00 00 00 54 61 67 4C 69 73 74 04 00 00 00" // TagList
                    "01 00 00 00 78 00 00 00 00"                   // x
                    "04"                                           // sections
                    "00 01 00 00 00 02 00 00 00 01"                // bool
                    "07 01 00 00 00 00 00 00 00 07 00 00 00"       // int32
                    "0C 01 00 00 00 01 00 00 00 02 00 00 00 61 62"
                    "11 01 00 00 00 03 00 00 00 04 02 00 00 00 01 00 02 00"));
}

// One field of each kind: the sections stand in their fixed order, char between double and narrow text.
TEST(CWriterBinary, EveryKindInItsSection)
{
    CbDateTime date("2024-03-01T10:20:30");
    date.SetMilliseconds(7);
    EXPECT_EQ(DocumentOf(
                  [&](IDataWriter& w)
                  {
                      const CElements empty({}, {}, "k");
                      const CFields nothing({}, {}, "k"); // type name and key share one string
                      w.Write("k", empty);
                      w.Write("k", nothing);
                      w.Write("k", 3, "\x01\x02\x03");
                      w.Write("k", static_cast<const IDateTime&>(date));
                      w.Write("k", L"Hi");
                      w.Write("k", "a\0b");
                      w.Write("k", 'c');
                      w.Write("k", 1.5);
                      w.Write("k", -1.5f);
                      w.Write("k", std::int64_t{-2});
                      w.Write("k", std::uint64_t{3});
                      w.Write("k", std::int32_t{-4});
                      w.Write("k", std::uint32_t{5});
                      w.Write("k", std::int16_t{-6});
                      w.Write("k", std::uint16_t{7});
                      w.Write("k", static_cast<signed char>(-8));
                      w.Write("k", static_cast<unsigned char>(9));
                      w.Write("k", false);
                  }),
              HexOf("00 00 00 00 10 01 00 00 00 01 00 00 00 6B 00 00 00 00 12"
                    "00 01 00 00 00 00 00 00 00 00"
                    "02 01 00 00 00 00 00 00 00 09"
                    "03 01 00 00 00 00 00 00 00 F8"
                    "04 01 00 00 00 00 00 00 00 07 00"
                    "05 01 00 00 00 00 00 00 00 FA FF"
                    "06 01 00 00 00 00 00 00 00 05 00 00 00"
                    "07 01 00 00 00 00 00 00 00 FC FF FF FF"
                    "08 01 00 00 00 00 00 00 00 03 00 00 00 00 00 00 00"
                    "09 01 00 00 00 00 00 00 00 FE FF FF FF FF FF FF FF"
                    "0A 01 00 00 00 00 00 00 00 00 00 C0 BF"
                    "0B 01 00 00 00 00 00 00 00 00 00 00 00 00 00 F8 3F"
                    "01 01 00 00 00 00 00 00 00 63"
                    "0C 01 00 00 00 00 00 00 00 01 00 00 00 61"
                    "0D 01 00 00 00 00 00 00 00 FF FE FF 02 48 00 69 00"
                    "0E 01 00 00 00 00 00 00 00 00 00 00 00 70 FC 22 16 C2 6B DA 01"
                    "0F 01 00 00 00 00 00 00 00 03 00 00 00 01 02 03"
                    "10 01 00 00 00 00 00 00 00 00 00 00 00 00"
                    "11 01 00 00 00 00 00 00 00 00 00 00 00 00"));
}

TEST(CWriterBinary, LaterWriteOfOneKindReplacesTheEarlier)
{
    const CFields dropped([](IDataWriter& w) { w.Write("gone", 1); }, {}, "T");
    const CFields kept({}, {}, "T");
    EXPECT_EQ(DocumentOf(
                  [&](IDataWriter& w)
                  {
                      w.Write("k", 1);
                      w.Write("k", 2);
                      w.Write("k", dropped);
                      w.Write("k", kept);
                  }),
              HexOf("00 00 00 00 10 03 00 00 00"
                    "04 00 00 00 67 6F 6E 65 02 00 00 00" // gone, bucket 73: stays, though nothing refers to it
                    "01 00 00 00 54 01 00 00 00"          // T, bucket 84
                    "01 00 00 00 6B 00 00 00 00"          // k, bucket 107
                    "02"
                    "07 01 00 00 00 00 00 00 00 02 00 00 00"
                    "10 01 00 00 00 00 00 00 00 01 00 00 00 00"));
}

TEST(CWriterBinary, SequencesOfObjectsHaveATypeHeader)
{
    const auto object = [](const char* typeName) { return CFields({}, {}, typeName); };
    const auto written = [&](std::vector<const char*> typeNames)
    {
        return DocumentOfElements(
            [&](IContainerWriter& w)
            {
                for (const char* typeName : typeNames)
                    w.Write(object(typeName));
            });
    };
    EXPECT_EQ(written({"A", "A", "A"}),
              HexOf("00 00 00 00 11 01 00 00 00 01 00 00 00 41 00 00 00 00"
                    "10 03 00 00 00 01 00 00 00 00" // one type name for all
                    "00 00 00 00 00  00 00 00 00 00  00 00 00 00 00"));
    EXPECT_EQ(written({"A", "B"}),
              HexOf("00 00 00 00 11 02 00 00 00 01 00 00 00 41 00 00 00 00 01 00 00 00 42 01 00 00 00"
                    "10 02 00 00 00 00 00 00 00 00 01 00 00 00"
                    "00 00 00 00 00  01 00 00 00 00"));
}

TEST(CWriterBinary, SequencesOfSequencesMayDifferInside)
{
    EXPECT_EQ(DocumentOfElements(
                  [](IContainerWriter& w)
                  {
                      w.Write(CElements([](IContainerWriter& inner) { inner.Write(true); }));
                      w.Write(CElements([](IContainerWriter& inner) { inner.Write("x"); }));
                      w.Write(CElements());
                  }),
              HexOf("00 00 00 00 11 00 00 00 00 11 03 00 00 00"
                    "00 01 00 00 00 01  0C 01 00 00 00 01 00 00 00 78  00 00 00 00 00"));
}

TEST(CWriterBinary, AnotherKindOfElementIsRefusedAndLeavesTheSequenceAsItWas)
{
    EXPECT_EQ(DocumentOfElements(
                  [](IContainerWriter& w)
                  {
                      const char* const small = "Vellum::CContainerWriterBinary::write";
                      const char* const large = "Vellum::CContainerWriterBinary::Write";
                      w.Write('a');
                      EXPECT_RAISES(Vellum::CException, small, w.Write(static_cast<signed char>(1)));
                      EXPECT_RAISES(Vellum::CException, small, w.Write(true));
                      EXPECT_RAISES(Vellum::CException, small, w.Write(CbDateTime()));
                      EXPECT_RAISES(Vellum::CException, large, w.Write(1, "x"));
                      EXPECT_RAISES(Vellum::CException, large, w.Write(CFields()));
                      EXPECT_RAISES(Vellum::CException, large, w.Write(CElements()));
                      w.Write('b');
                  }),
              HexOf("00 00 00 00 11 00 00 00 00 01 02 00 00 00 61 62"));
}

TEST(CWriterBinary, ElementWhoseClientRaisesLeavesNoTraceButTheKind)
{
    const auto failing = [](auto& w)
    {
        w.Write("never", 1);
        throw std::runtime_error("client");
    };
    EXPECT_EQ(DocumentOfElements(
                  [&](IContainerWriter& w)
                  {
                      const CFields good({}, {}, "T");
                      const CFields bad([&](IDataWriter& d) { failing(d); }, {}, "U");
                      EXPECT_THROW(w.Write(bad), std::runtime_error);
                      w.Write(good);
                      EXPECT_THROW(w.Write(bad), std::runtime_error);
                      EXPECT_RAISES(Vellum::CException, "Vellum::CContainerWriterBinary::write", w.Write(1));
                      w.Write(good);
                  }),
              HexOf("00 00 00 00 11 03 00 00 00"
                    "05 00 00 00 6E 65 76 65 72 01 00 00 00" // never, bucket 32: interned before the failure
                    "01 00 00 00 54 02 00 00 00 01 00 00 00 55 00 00 00 00"
                    "10 02 00 00 00 01 02 00 00 00"
                    "02 00 00 00 00  02 00 00 00 00"));
    EXPECT_EQ(DocumentOfElements(
                  [&](IContainerWriter& w)
                  {
                      const CElements bad([&](IContainerWriter&) { throw 1; });
                      EXPECT_ANY_THROW(w.Write(bad));
                  }),
              HexOf("00 00 00 00 11 00 00 00 00 00 00 00 00 00"));
}

TEST(CWriterBinary, FailureOfTheClientLeavesTheStreamUntouched)
{
    CbStreamWriteBinaryBuffer stream;
    Vellum::CWriterBinary writer(stream);
    const CFields bad(
        [](IDataWriter& w)
        {
            w.Write("a", std::string(100000, 'x'));
            throw 1;
        });
    EXPECT_THROW(writer.Write(bad), int);
    EXPECT_EQ(stream.GetSize(), 0u);

    writer.Write(CFields());
    Vellum::CWriterBinary(writer).Write(CFields()); // a second document, which stands alone
    EXPECT_EQ(stream.GetSize(), 20u);
}

TEST(CWriterBinary, BlobsBeyond32BitsAreRefusedBeforeTheyAreTouched)
{
    constexpr std::size_t tooLarge = std::size_t{1} << 32;
    EXPECT_EQ(DocumentOf(
                  [](IDataWriter& w) {
                      EXPECT_RAISES(Vellum::CException, "Vellum::CDataWriterBinary::Write",
                                    w.Write("b", tooLarge, nullptr));
                  }),
              HexOf("00 00 00 00 10 00 00 00 00 00"));
    DocumentOfElements(
        [](IContainerWriter& w)
        { EXPECT_RAISES(Vellum::CException, "Vellum::CContainerWriterBinary::Write", w.Write(tooLarge, nullptr)); });
}

// Whatever a client does with the writer of an outer level while an inner one is open, nothing is destroyed under it.
TEST(CWriterBinary, OuterWriterMayBeUsedDuringANestedWrite)
{
    EXPECT_EQ(DocumentOf(
                  [](IDataWriter& outer)
                  {
                      const CFields inner({}, {}, "T");
                      const CFields odd(
                          [&](IDataWriter& w)
                          {
                              outer.Write("k", inner);
                              w.Write("k", true);
                          },
                          {}, "T");
                      outer.Write("k", odd);
                  }),
              HexOf("00 00 00 00 10 02 00 00 00 01 00 00 00 54 01 00 00 00 01 00 00 00 6B 00 00 00 00 01"
                    "10 01 00 00 00 00 00 00 00 01 00 00 00 01 00 01 00 00 00 00 00 00 00 01"));
}

TEST(CWriterBinary, FailedAllocationsReachTheCallerAndLeaveTheStreamUntouched)
{
    const CLogObserver quiet;
    const CFields item(
        [](IDataWriter& w)
        {
            for (const char* key : {"a", "b", "c"})
                w.Write(key, std::wstring(40, L'w'));
            w.Write("blob", 3, "abc");
        });
    const CElements items(
        [&](IContainerWriter& w)
        {
            for (int i = 0; i < 20; ++i)
                w.Write(item);
        });
    const CFields root(
        [&](IDataWriter& w)
        {
            w.Write("items", items);
            w.Write("item", item);
        });
    const std::string expected = WriteBinary(root);
    const std::uint32_t failures = FailEachAllocation(
        [&]
        {
            CbStreamWriteBinaryBuffer stream(0u);
            try
            {
                Vellum::CWriterBinary(stream).Write(root);
                EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(stream.GetData()), stream.GetSize()),
                          expected);
            }
            catch (const std::bad_alloc&)
            {
                EXPECT_EQ(stream.GetSize(), 0u);
            }
            catch (const CbExceptionContainer& exception)
            {
                EXPECT_EQ(stream.GetSize(), 0u);
                EXPECT_TRUE(
                    std::string_view(exception.GetFunctionName()).ends_with(",0,unsigned int>::getFreeElement"));
            }
        });
    EXPECT_GT(failures, 20u);
}

// A table of nested objects may have the new entry although doubling it failed; the client may go on all the same.
TEST(CWriterBinary, ClientThatSwallowsFailedAllocationsGetsADocument)
{
    const CLogObserver quiet;
    std::vector<std::string> keys;
    for (int i = 0; i < 100; ++i)
        keys.push_back(std::to_string(i));
    const CFields item([](IDataWriter& w) { w.Write("a", 1); });
    const CFields root(
        [&](IDataWriter& w)
        {
            for (const std::string& key : keys)
                try
                {
                    w.Write(key.c_str(), item);
                }
                catch (...)
                {
                    continue;
                }
        });
    FailEachAllocation(
        [&]
        {
            try
            {
                CbStreamWriteBinaryBuffer stream;
                Vellum::CWriterBinary(stream).Write(root);
                CbStreamReadBinaryBuffer copy(stream.GetData(), stream.GetSize());
                std::uint32_t count = 0;
                CFields check = ReadFields([&](IDataReader& r) { count = r.GetKeyCount(); });
                Vellum::CReaderBinary(copy).Read(check);
                EXPECT_GE(count, 99u);
            }
            catch (const std::bad_alloc&)
            {
                return; // outside the client's code
            }
            catch (const CbExceptionContainer&)
            {
                return;
            }
        });
}

} // namespace
