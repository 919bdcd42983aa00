#include <type_traits>

#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

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
    EXPECT_TRUE(value == direct && value == called);
    EXPECT_EQ(client.bytes.size(), first.GetLeft());
    EXPECT_EQ(client.bytes.size(), second.GetLeft());
    return value;
}

template <class Value>
void ExpectBytes(Value value, const char* hex)
{
    EXPECT_EQ(Hex(Written(value)), hex);
    EXPECT_EQ(ReadBack<Value>(Bytes(hex) + "rest"), value);
}

TEST(CbStreamBinary, NumbersAreStoredLeastSignificantByteFirst)
{
    ExpectBytes('\x80', "80");
    ExpectBytes(static_cast<signed char>(-2), "FE");
    ExpectBytes(static_cast<unsigned char>(0xFE), "FE");
    ExpectBytes(static_cast<short>(-2), "FE FF");
    ExpectBytes(static_cast<unsigned short>(0x1234), "34 12");
    ExpectBytes(-2, "FE FF FF FF");
    ExpectBytes(0x12345678u, "78 56 34 12");
    ExpectBytes(std::numeric_limits<std::int64_t>::min() + 1, "01 00 00 00 00 00 00 80");
    ExpectBytes(std::uint64_t{0x123456789ABCDEF0}, "F0 DE BC 9A 78 56 34 12");
    ExpectBytes(1.5f, "00 00 C0 3F");
    ExpectBytes(-0.1, "9A 99 99 99 99 99 B9 BF");
    ExpectBytes(true, "01");
    ExpectBytes(false, "00");
    EXPECT_EQ(Hex(Content(CbStreamWriteBinaryBuffer().WriteVersion(7).Write('a'))), "07 00 00 00 61");
    EXPECT_EQ(Hex(Written(1, 'a', true)), "01 00 00 00 61 01");
    EXPECT_TRUE(ReadBack<bool>("\x02"));
}

TEST(CbStreamBinary, NarrowTextIsItsLengthAndItsBytesUpToTheFirstNul)
{
    for (const char* text : {"", "ab", "\xFF\x80"})
    {
        const std::string expected = Bytes(*text == 0 ? "00 00 00 00" : "02 00 00 00") + text;
        EXPECT_EQ(Hex(Written(text, std::string(text), ATL::CStringT<char>(text))),
                  Hex(expected + expected + expected));
        EXPECT_EQ(ReadBack<std::string>(expected), text);
        EXPECT_EQ(ReadBack<ATL::CStringT<char>>(expected), text);
    }
    EXPECT_EQ(Hex(Written(std::string("a\0b", 3))), "01 00 00 00 61");
    EXPECT_EQ(ReadBack<std::string>(Bytes("03 00 00 00 61 00 62")), std::string("a\0b", 3));
}

TEST(CbStreamBinary, WideTextHasTheShortestHeaderForItsLength)
{
    const std::pair<std::size_t, const char*> headers[] = {
        {0, "FF FE FF 00"},
        {254, "FF FE FF FE"},
        {255, "FF FE FF FF FF 00"},
        {65533, "FF FE FF FF FD FF"},
        {65534, "FF FE FF FF FF FF FE FF 00 00"},
        {200000, "FF FE FF FF FF FF 40 0D 03 00"},
    };
    for (const auto& [length, header] : headers)
    {
        std::wstring text;
        std::string expected = Bytes(header);
        for (std::size_t i = 0; i < length; ++i)
        {
            const auto unit = static_cast<std::uint16_t>(i % 0xFFFF + 1); // lone surrogates are units like any other
            text += static_cast<wchar_t>(unit);
            (expected += static_cast<char>(unit & 0xFF)) += static_cast<char>(unit >> 8);
        }
        EXPECT_TRUE(Written(text) == expected) << length;
        EXPECT_TRUE(Written(text.c_str()) == expected) << length;
        EXPECT_TRUE(Written(ATL::CStringT<wchar_t>(text.c_str())) == expected) << length;
        EXPECT_TRUE(ReadBack<std::wstring>(expected) == text) << length;
        EXPECT_TRUE(ReadBack<ATL::CStringT<wchar_t>>(expected) == text) << length;
    }
    EXPECT_EQ(Hex(Written(std::wstring(L"a\0b", 3))), "FF FE FF 01 61 00");
    EXPECT_EQ(ReadBack<std::wstring>(Bytes("FF FE FF FF FF FF FF FF FF FF 01 00 00 00 00 00 00 00 61 00")), L"a");
}

TEST(CbStreamBinary, ElementsBeyond16BitsLeaveAsPairsAndComeBackAsUnits)
{
    EXPECT_EQ(Hex(Written(L"a\U0001F600\U0010FFFF")), "FF FE FF 05 61 00 3D D8 00 DE FF DB FF DF");
    for (const std::size_t length : {252u, 253u, 254u, 255u, 256u, 511u}) // around the header and the runs of raw bytes
    {
        const std::wstring units = ReadBack<std::wstring>(Written(std::wstring(length, L'x') + L"\U0001F600y"));
        EXPECT_EQ(units, std::wstring(length, L'x') + wchar_t(0xD83D) + wchar_t(0xDE00) + L'y');
    }
    if constexpr (sizeof(wchar_t) > 2)
    {
        const wchar_t none[] = {static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0xFFFFFFFF), 0};
        EXPECT_EQ(Hex(Written(none)), "FF FE FF 02 FD FF FD FF");
    }
}

template <class Stream, class Value>
concept CanWrite = requires(Stream& stream, Value value)
{
    stream.Write(value);
};

TEST(CbStreamBinary, PointersAreNeverTakenAsBool)
{
    static_assert(CanWrite<IStreamWrite, const char*>);
    static_assert(!CanWrite<CbStreamWriteBinaryBuffer, const unsigned char*> && !CanWrite<IStreamWrite, void*>);
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
