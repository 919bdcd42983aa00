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

using Vellum::IContainerReader;
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

// A date of a client's own, whose getters do what they like.
class CBusyDate : public CbDateTime
{
public:
    explicit CBusyDate(std::function<void()> busy) : busy(std::move(busy)) {}
    unsigned short GetYear() const override { return (busy(), CbDateTime::GetYear()); }

private:
    std::function<void()> busy;
};

TEST(CWriterBinary, GettersOfADateMayWriteAndRaise)
{
    const CbDateTime plain("2024-03-07T09:05:01");
    const CElements elements(
        [&](IContainerWriter& w)
        {
            for (const bool isRaising : {true, false})
            {
                const CBusyDate date([&] { (w.Write(plain), isRaising ? throw 1 : void()); });
                if (isRaising)
                    EXPECT_THROW(w.Write(date), int);
                else
                    w.Write(date);
            }
        });
    EXPECT_EQ(WriteBinary(elements).size(), Bytes("00 00 00 00 11 00 00 00 00 0E 03 00 00 00").size() + 3 * 12);
    int next = 0;
    const CFields fields(
        [&](IDataWriter& w)
        {
            const auto writeMany = [&]
            {
                for (int i = 0; i < 40; ++i)
                    w.Write(std::to_string(next++).c_str(), plain);
            };
            w.Write("busy", CBusyDate(writeMany));
            EXPECT_THROW(w.Write("lost", CBusyDate([&] { (writeMany(), throw 1); })), int);
        });
    CFields check = ReadFields(
        [&](IDataReader& r)
        {
            CbDateTime date;
            EXPECT_EQ(r.GetKeyCount(), 81u);
            EXPECT_TRUE(r.Read("busy", date) && r.Read("79", date) && !r.Read("lost", date));
        });
    ReadBinary(WriteBinary(fields), check);
}

// Sequences in sequences, and objects and sequences in turn, around one large value.
class CNested : public Vellum::ISerializable, public Vellum::ISerializableContainer
{
public:
    CNested(int levels, bool isTurning, const std::string& payload)
        : levels(levels), isTurning(isTurning), payload(payload)
    {
    }
    const char* GetTypeName() const override { return "Nested"; }
    void Write(IDataWriter& w) const override { w.Write("k", static_cast<const ISerializableContainer&>(inner())); }
    void Write(IContainerWriter& w) const override
    {
        if (levels == 0)
            w.Write(payload.size(), payload.data());
        else if (isTurning)
            w.Write(static_cast<const ISerializable&>(inner()));
        else
            w.Write(static_cast<const ISerializableContainer&>(inner()));
    }
    void Read(IDataReader&) override {}
    void Read(IContainerReader&) override {}

private:
    const CNested& inner() const
    {
        made = std::make_unique<CNested>(std::max(levels - 1, 0), isTurning, payload);
        return *made;
    }

    int levels;
    bool isTurning;
    const std::string& payload;
    mutable std::unique_ptr<CNested> made;
};

TEST(CWriterBinary, MemoryAndCopiesDontGrowWithTheDepth)
{
    const std::string payload(1 << 20, 'p');
    for (const bool isTurning : {false, true})
    {
        const CNested root(1000, isTurning, payload);
        const CAllocationCounter counter;
        CbStreamWriteBinaryBuffer stream(0u);
        Vellum::CWriterBinary(stream).Write(static_cast<const Vellum::ISerializableContainer&>(root));
        EXPECT_LT(counter.GetPeak(), 4u * stream.GetSize());
        EXPECT_LT(counter.GetBytes(), 6u * stream.GetSize());
    }
}

// Documents larger than what goes out at once: nothing of them comes twice, in whatever pieces a stream takes them.
TEST(CWriterBinary, LargeDocumentsComeBackWhole)
{
    const std::string text(20000, 't');
    const CElements numbers(
        [](IContainerWriter& w)
        {
            for (std::uint32_t i = 0; i < 50000; ++i)
                w.Write(i);
        });
    const CElements texts(
        [&](IContainerWriter& w)
        {
            for (std::size_t i = 0; i < 300; ++i)
                w.Write(text.substr(0, i));
        });
    CFields root(
        [&](IDataWriter& w)
        { WriteFields(w, "numbers", numbers, "texts", ElementsOf(texts, texts, texts), "t", text, "u", text); },
        [&](IDataReader& r)
        {
            CElements readNumbers = ReadElements(
                [](IContainerReader& c)
                {
                    for (std::uint32_t i = 0; i < 50000; ++i)
                        ASSERT_EQ(Get<std::uint32_t>(c, i), i);
                });
            CElements readTexts = ReadElements(
                [&](IContainerReader& c)
                {
                    for (std::uint32_t i = 0; i < 300; ++i)
                        ASSERT_EQ(Get<std::string>(c, i), text.substr(0, i));
                });
            CElements readAll =
                ReadElements([&](IContainerReader& c)
                             { EXPECT_TRUE(c.Read(0, readTexts) && c.Read(1, readTexts) && c.Read(2, readTexts)); });
            EXPECT_TRUE(r.Read("numbers", readNumbers) && r.Read("texts", readAll));
            EXPECT_EQ(Get<std::string>(r, "t"), text);
            EXPECT_EQ(Get<std::string>(r, "u"), text);
        });
    CClientWriter stream;
    Vellum::CWriterBinary(stream).Write(root);
    EXPECT_EQ(stream.bytes, WriteBinary(root));
    ReadBinary(stream.bytes, root);
}

// An element that can't be had is not there, and nothing of it is.
TEST(CWriterBinary, ClientThatSwallowsFailedAllocationsInASequenceGetsTheOtherElements)
{
    const CLogObserver quiet;
    const std::string text(700, 't');
    const CElements inner([&](IContainerWriter& w) { (w.Write(text), w.Write(text)); });
    const CFields objects[] = {CFields([&](IDataWriter& w) { w.Write("s", inner); }, {}, "A"),
                               CFields([&](IDataWriter& w) { w.Write("t", text); }, {}, "B")};
    const auto read = [&](std::uint32_t expected, const auto& isElement)
    {
        return ReadElements(
            [=](IContainerReader& r)
            {
                std::uint32_t count = 0;
                while (isElement(r, count))
                    ++count;
                EXPECT_EQ(count, expected);
            });
    };
    const auto check = [&](const auto& write, const auto& isElement)
    {
        std::uint32_t written = 0;
        const CElements root(
            [&](IContainerWriter& w)
            {
                written = 0;
                for (int i = 0; i < 12; ++i)
                    written += GetsThrough([&] { write(w, i); }) ? 1 : 0;
            });
        std::string document;
        const bool isThere = GetsThrough([&] { document = WriteBinary(root); });
        GetsThrough([&] { isThere ? ReadBinary(document, read(written, isElement)) : void(); });
    };
    CElements anyElements = ReadElements([&](IContainerReader& r) { EXPECT_EQ(Get<std::string>(r, 1), text); });
    CFields anyFields = ReadFields([&](IDataReader& r) { EXPECT_EQ(r.GetKeyCount(), 1u); });
    FailEachAllocation(
        [&]
        {
            check([&](IContainerWriter& w, int) { w.Write(inner); },
                  [&](IContainerReader& r, std::uint32_t i) { return r.Read(i, anyElements); });
        });
    FailEachAllocation(
        [&]
        {
            check([&](IContainerWriter& w, int i) { w.Write(objects[i % 4 == 3 ? 1 : 0]); },
                  [&](IContainerReader& r, std::uint32_t i) { return r.Read(i, anyFields); });
        });
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
