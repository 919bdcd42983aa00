#include <type_traits>

#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Model/Values.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

namespace
{

std::string Content(const CbStreamWriteBinaryBuffer& buffer)
{
    return {reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSize()};
}

// What any stream makes of the values. The stream in memory, which has code of its own for each type, must agree.
template <class... Value>
std::string Written(const Value&... values)
{
    CbStreamWriteBinaryBuffer direct;
    (direct.Write(values), ...);
    CClientWriter client;
    CbStreamWriteBinaryBuffer called;
    for (IStreamWrite* stream : {static_cast<IStreamWrite*>(&client), static_cast<IStreamWrite*>(&called)})
        (stream->Write(values), ...);
    EXPECT_EQ(client.bytes, Content(direct));
    EXPECT_EQ(client.bytes, Content(called));
    return client.bytes;
}

// Reads one value in the same three ways, which must agree on the value and on what they leave.
template <class Value>
Value ReadBack(const std::string& bytes)
{
    Value value{};
    Value direct{};
    Value called{};
    CClientReader client(bytes);
    CbStreamReadBinaryBuffer first(bytes.data(), bytes.size());
    CbStreamReadBinaryBuffer second(first);
    static_cast<CbStreamRead&>(client).Read(value);
    first.Read(direct);
    static_cast<CbStreamRead&>(second).Read(called);
    EXPECT_TRUE(value != value || (value == direct && value == called)); // or not a number
    EXPECT_EQ(client.bytes.size(), first.GetLeft());
    EXPECT_EQ(client.bytes.size(), second.GetLeft());
    return value;
}

TEST(CbStreamBinary, ValuesAreStoredAsTheModelTells)
{
    EXPECT_EQ(Hex(Content(CbStreamWriteBinaryBuffer().WriteVersion(7).Write('a'))), "07 00 00 00 61");
    EXPECT_EQ(Hex(Written(0x12345678u, -0.1)), "78 56 34 12 9A 99 99 99 99 99 B9 BF");
    CheckProperty(
        [](CTape& tape)
        {
            for (std::size_t kind = 0; kind <= Model::KindWideText; ++kind)
                std::visit(
                    []<class T>(const T& value)
                    {
                        constexpr bool isText = requires { value.c_str(); };
                        const std::string bytes = Model::Encoded(value);
                        if constexpr (isText || std::is_arithmetic_v<T>)
                        {
                            EXPECT_TRUE(Written(value) == bytes) << Hex(bytes);
                            EXPECT_TRUE(Written(ReadBack<T>(bytes + "rest")) == bytes) << Hex(bytes);
                        }
                        if constexpr (isText)
                        {
                            using Text = ATL::CStringT<typename T::value_type>;
                            EXPECT_TRUE(Written(value.c_str()) == bytes && Written(Text(value.c_str())) == bytes);
                            EXPECT_TRUE(Written(ReadBack<Text>(bytes)) == bytes);
                        }
                    },
                    Model::AnyValue(tape, kind));
        },
        300);
    EXPECT_TRUE(ReadBack<bool>("\x02"));
    EXPECT_EQ(ReadBack<std::string>(Bytes("03 00 00 00 61 00 62")), std::string("a\0b", 3));
    EXPECT_EQ(ReadBack<std::wstring>(Bytes("FF FE FF FF FE FF") + std::string(2 * 0xFFFE, 'a')).size(), 0xFFFEu);
    EXPECT_EQ(ReadBack<std::wstring>(Bytes("FF FE FF FF FF FF FF FF FF FF 01 00 00 00 00 00 00 00 61 00")), L"a");
}

TEST(CbStreamWriteBinaryBuffer, GrowsByDoublingFromItsStartCapacity)
{
    const std::string bytes(4097, 'x');
    CbStreamWriteBinaryBuffer buffer;
    EXPECT_EQ(buffer.GetBytes().GetCapacity(), 4096u);
    buffer.Write(nullptr, 0);
    EXPECT_EQ(buffer.GetBytes().GetEnd(), nullptr);
    buffer.Write(bytes.data(), bytes.size());
    EXPECT_EQ(buffer.GetBytes().GetCapacity(), 8192u);
    EXPECT_EQ(buffer.GetBytes().GetEnd(), buffer.GetData() + 4097);
    buffer.Write(buffer.GetData(), buffer.GetSize());
    EXPECT_EQ(buffer.GetBytes().GetCapacity(), 16384u);
    EXPECT_EQ(Content(buffer), bytes + bytes);

    const CAllocationCounter counter;
    CbStreamWriteBinaryBuffer lean(0);
    EXPECT_EQ(counter.GetCount(), 0u);
    lean.Write(1);
    EXPECT_EQ(lean.GetBytes().GetCapacity(), 4u);
}

TEST(CbStreamWriteBinaryBuffer, TruncateTakesBytesBack)
{
    CbStreamWriteBinaryBuffer buffer(2);
    buffer.Write("abc").Write(1);
    buffer.Truncate(5);
    buffer.Truncate(7);
    EXPECT_EQ(Content(buffer.Write('z')), Bytes("03 00 00 00 61 7A"));
    buffer.Truncate(0);
    EXPECT_EQ(buffer.GetSize(), 0u);
}

TEST(CbStreamWriteBinaryBuffer, WhatItCannotHoldLeavesItAsItWas)
{
    CbStreamWriteBinaryBuffer buffer;
    buffer.Write('a');
    for (const std::size_t size : {std::size_t{0xFFFFFFFF}, std::numeric_limits<std::size_t>::max()})
        EXPECT_THROW(buffer.Write("", size), std::bad_array_new_length);
    EXPECT_EQ(Content(buffer), "a");

    const std::string text(10000, 'x');
    const auto write = [&]
    {
        CbStreamWriteBinaryBuffer stream;
        if (!GetsThrough([&] { stream.Write(1).Write(text); }))
        {
            EXPECT_EQ(stream.GetSize(), 8u); // the number and the length of the text
            stream.Truncate(0);
            stream.Write(1).Write(text);
        }
        EXPECT_EQ(stream.GetSize(), 10008u);
    };
    EXPECT_EQ(FailEachAllocation([&] { GetsThrough(write); }), 2u); // the first in the constructor
}

TEST(CbStreamRead, VersionsUpToTheExpectedOnePass)
{
    const std::string one = Bytes("01 00 00 00");
    for (const unsigned int expected : {1u, 2u})
        CbStreamReadBinaryBuffer(one.data(), one.size()).ReadAndCompareVersion(expected);
    CbStreamReadBinaryBuffer later(one.data(), one.size());
    EXPECT_RAISES(CbExceptionWrongFileVersion, "CbStreamRead::ReadAndCompareVersion", later.ReadAndCompareVersion(0));
    EXPECT_EQ(later.GetLeft(), 0u);
}

template <class Value>
class CbStreamReadBinaryShort : public testing::Test
{
};
using Values =
    testing::Types<char, double, float, std::int64_t, std::uint64_t, int, unsigned int, short, unsigned short,
                   signed char, unsigned char, bool, std::string, std::wstring, ATL::CStringT<char>>;
TYPED_TEST_SUITE(CbStreamReadBinaryShort, Values);

TYPED_TEST(CbStreamReadBinaryShort, EveryCutRaises)
{
    TypeParam value{};
    if constexpr (!std::is_arithmetic_v<TypeParam>)
        value.assign(300, 'x');
    const std::string whole = Written(value);
    for (std::size_t size = 0; size < whole.size(); ++size)
    {
        const auto block = ExactText(whole.substr(0, size));
        CbStreamReadBinaryBuffer buffer(block.get(), size);
        EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinary::Read", buffer.Read(value));
        CClientReader client(whole.substr(0, size));
        EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinary::Read", static_cast<CbStreamRead&>(client).Read(value));
    }
}

TEST(CbStreamReadBinary, AnnouncedLengthsAreNotBelievedAndWideTextNeedsItsMark)
{
    const std::string rest(20, 'x');
    const CAllocationCounter counter;
    EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinary::Read", ReadBack<std::string>(Bytes("FF FF FF FF") + rest));
    for (const char* bytes : {"FF FE FF FF FF FF FE FF FF FF", "FF FE FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF",
                              "FE FE FF 00", "FF FF FF 00", "FF FE FE 00"})
        EXPECT_RAISES(CbExceptionStream, "CbStreamReadBinary::Read", ReadBack<std::wstring>(Bytes(bytes) + rest));
    CClientReader reader(rest);
    CbArray<unsigned char> bytes;
    EXPECT_EQ(reader.ReadBytes(bytes, 0xFFFFFFFF), 20u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), rest);
    EXPECT_LT(counter.GetBytes(), 2u << 20);
}

TEST(CbStreamReadBinary, BytesArriveInOneStepUpTo64KiBAndExactlyFit)
{
    const std::pair<std::uint32_t, int> steps[] = {{0, 1}, {1, 1}, {0x10000, 1}, {0x10001, 2}, {500000, 4}};
    for (const auto& [count, rawReads] : steps)
    {
        std::string source;
        for (std::uint32_t i = 0; i < count; ++i)
            source += static_cast<char>(i * 7);
        CClientReader reader(source);
        CbArray<unsigned char> bytes;
        EXPECT_EQ(reader.ReadBytes(bytes, count), count);
        EXPECT_EQ(reader.rawReads, rawReads);
        EXPECT_EQ(bytes.GetCapacity(), count);
        EXPECT_TRUE(std::string(bytes.begin(), bytes.end()) == source);
    }
}

} // namespace
