#include "Vellum/CWriterBinary.h"

#include <stdexcept>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbExceptions.h"

#include "Vellum/CException.h"

#include "DocsExample.h"
#include "Support/Binary.h"
#include "Support/Testing.h"

namespace
{

using Vellum::IContainerWriter;
using Vellum::IDataReader;
using Vellum::IDataWriter;

template <class Root>
void ExpectDocument(const Root& root, std::string_view hex)
{
    EXPECT_EQ(Hex(WriteBinary(root)), Hex(Bytes(hex)));
}

CFields Named(const char* typeName, CFields::Writing writing = {}) { return CFields(std::move(writing), {}, typeName); }

TEST(CWriterBinary, EmptyRootsAndTheExampleByteForByte)
{
    ExpectDocument(CFields(), "00 00 00 00 10 00 00 00 00 00");
    ExpectDocument(CElements(), "00 00 00 00 11 00 00 00 00 00 00 00 00 00");
    const CElements tags([](IContainerWriter& w) { (w.Write(std::uint16_t{1}), w.Write(std::uint16_t{2})); }, {},
                         "TagList");
    ExpectDocument(FieldsOf("x", 7, "name", "ab", "on", true, "tags", tags), ExampleDocument);
    EXPECT_EQ(Hex(BinaryExample()), Hex(Bytes(ExampleDocument))); // of the page
}

// One field of each kind: the sections stand in their fixed order, char between double and narrow text.
TEST(CWriterBinary, EveryKindInItsSection)
{
    CbDateTime date("2024-03-01T10:20:30");
    date.SetMilliseconds(7);
    const CElements empty({}, {}, "k");
    const CFields root(
        [&](IDataWriter& w)
        {
            WriteFields(w, "k", empty, "k", Named("k")); // type name and key share one string
            w.Write("k", 3, "\x01\x02\x03");
            WriteFields(w, "k", static_cast<const IDateTime&>(date), "k", L"Hi", "k", "a\0b", "k", 'c', "k", 1.5, "k",
                        -1.5f, "k", std::int64_t{-2}, "k", std::uint64_t{3}, "k", -4, "k", 5u, "k", std::int16_t{-6},
                        "k", std::uint16_t{7}, "k", static_cast<signed char>(-8), "k", static_cast<unsigned char>(9),
                        "k", false);
        });
    ExpectDocument(root, "00 00 00 00 10 01 00 00 00 01 00 00 00 6B 00 00 00 00 12"
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
                         "11 01 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(CWriterBinary, FailureOfTheClientLeavesTheStreamUntouched)
{
    CbStreamWriteBinaryBuffer stream;
    Vellum::CWriterBinary writer(stream);
    const CFields bad([](IDataWriter& w) { (w.Write("a", std::string(100000, 'x')), throw 1); });
    EXPECT_THROW(writer.Write(bad), int);
    EXPECT_EQ(stream.GetSize(), 0u);

    writer.Write(CFields());
    Vellum::CWriterBinary(writer).Write(CFields()); // a second document, which stands alone
    EXPECT_EQ(stream.GetSize(), 20u);
}

TEST(CWriterBinary, BlobsBeyond32BitsAreRefusedBeforeTheyAreTouched)
{
    constexpr std::size_t large = std::size_t{1} << 32;
    const auto field = [](IDataWriter& w)
    { EXPECT_RAISES(Vellum::CException, "Vellum::CDataWriterBinary::Write", w.Write("b", large, nullptr)); };
    const auto element = [](IContainerWriter& w)
    { EXPECT_RAISES(Vellum::CException, "Vellum::CContainerWriterBinary::Write", w.Write(large, nullptr)); };
    ExpectDocument(CFields(field), "00 00 00 00 10 00 00 00 00 00");
    WriteBinary(CElements(element));
}

// Whatever a client does with the writer of an outer level while an inner one is open, nothing is destroyed under it.
TEST(CWriterBinary, OuterWriterMayBeUsedDuringANestedWrite)
{
    const CFields root(
        [](IDataWriter& outer)
        { outer.Write("k", Named("T", [&](IDataWriter& w) { (outer.Write("k", Named("T")), w.Write("k", true)); })); });
    ExpectDocument(root, "00 00 00 00 10 02 00 00 00 01 00 00 00 54 01 00 00 00 01 00 00 00 6B 00 00 00 00 01"
                         "10 01 00 00 00 00 00 00 00 01 00 00 00 01 00 01 00 00 00 00 00 00 00 01");
}

TEST(CWriterBinary, FailedAllocationsReachTheCallerAndLeaveTheStreamUntouched)
{
    const CLogObserver log;
    const std::wstring text(40, L'w');
    const CFields item([&](IDataWriter& w)
                       { (WriteFields(w, "a", text, "b", text, "c", text), w.Write("blob", 3, "abc")); });
    const CElements items(
        [&](IContainerWriter& w)
        {
            for (int i = 0; i < 20; ++i)
                w.Write(item);
        });
    const CFields root([&](IDataWriter& w) { WriteFields(w, "items", items, "item", item); });
    const std::string expected = WriteBinary(root);
    const auto writeOnce = [&]
    {
        CbStreamWriteBinaryBuffer stream(0u);
        const bool isWritten = GetsThrough([&] { Vellum::CWriterBinary(stream).Write(root); });
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(stream.GetData()), stream.GetSize()),
                  isWritten ? std::string_view(expected) : std::string_view());
    };
    EXPECT_GT(FailEachAllocation(writeOnce), 20u);
    for (const std::string& function : log.GetFunctions())
        EXPECT_TRUE(function.ends_with(",0,unsigned int>::getFreeElement")) << function;
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
                GetsThrough([&] { w.Write(key.c_str(), item); });
        });
    CFields check = ReadFields([](IDataReader& r) { EXPECT_GE(r.GetKeyCount(), 99u); });
    FailEachAllocation([&] { GetsThrough([&] { ReadBinary(WriteBinary(root), check); }); });
}

} // namespace
