#include "Vellum/CWriterBinary.h"

#include <set>
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
    if (FourGigabytes == 0)
        GTEST_SKIP() << "No size is too large here.";
    const auto field = [](IDataWriter& w)
    { EXPECT_RAISES(Vellum::CException, "Vellum::CDataWriterBinary::Write", w.Write("b", FourGigabytes, nullptr)); };
    const auto element = [](IContainerWriter& w)
    { EXPECT_RAISES(Vellum::CException, "Vellum::CContainerWriterBinary::Write", w.Write(FourGigabytes, nullptr)); };
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

TEST(CWriterBinary, AValueThatIsReplacedTimeAndAgainIsKeptOnce)
{
    const CFields root(
        [](IDataWriter& w)
        {
            for (std::size_t size = 0; size <= 3000; ++size)
                WriteFields(w, "grows", std::string(size, 'x'), "stays", std::string("here"), "n", 7);
        });
    const CAllocationCounter counter;
    const std::string document = WriteBinary(root);
    EXPECT_LT(counter.GetPeak(), 0x10000u);
    ReadBinary(document, ReadFields(
                             [](IDataReader& r)
                             {
                                 EXPECT_EQ(Get<std::string>(r, "grows"), std::string(3000, 'x'));
                                 EXPECT_EQ(Get<std::string>(r, "stays"), "here");
                             }));
}

TEST(CWriterBinary, AFieldThatCantBeKeptNamesTheTableOfItsKind)
{
    const auto fail = [](const auto& value)
    {
        std::set<std::string> raised;
        const auto write = [&]
        {
            CbStreamWriteBinaryBuffer stream;
            Vellum::CWriterBinary(stream).Write(CFields([&](IDataWriter& writer) { writer.Write("k", value); }));
        };
        FailEachAllocation(
            [&]
            {
                try
                {
                    write();
                }
                catch (const CbExceptionContainer& exception)
                {
                    raised.insert(exception.GetFunctionName());
                }
                catch (const std::bad_alloc&)
                {
                }
            });
        return raised;
    };
    const std::string begin = "CbPlexManager<struct CbMapTypes::SAssociation<",
                      end = ">,0,unsigned int>::getFreeElement";
    EXPECT_EQ(fail(7u).count(begin + "unsigned int,unsigned int" + end), 1u);
    EXPECT_EQ(fail(CbDateTime()).count(begin + "unsigned int,class CbDateTime" + end), 1u);
    EXPECT_EQ(fail(CFields()).count(begin +
                                    "unsigned int,struct std::pair<unsigned int,class std::unique_ptr<class "
                                    "Vellum::CDataWriterBinary,struct std::default_delete<class "
                                    "Vellum::CDataWriterBinary> > > " +
                                    end),
              1u);
}

} // namespace
