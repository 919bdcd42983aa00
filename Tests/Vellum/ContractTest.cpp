#include <sstream>
#include <type_traits>

#include <gtest/gtest.h>

#include "Vellum/Vellum.h"

#include "Vellum/src/KindOperations.h"

namespace
{

// Notes which of the eighteen operations each call lands in, by the tag of its kind.
class CNotingWriter final : public Vellum::CWriteOperations<CNotingWriter, Vellum::IDataWriter, const char*>
{
public:
    std::string log;

    template <class T>
    void writeValue(const char* key, const T& value)
    {
        log += key;
        if constexpr (std::is_same_v<T, std::string>)
            log += "=text:" + value;
        else if constexpr (std::is_same_v<T, std::wstring>)
            log += "=wide:" + std::to_string(value.size());
        else if constexpr (std::is_same_v<T, bool>)
            log += "=bool";
        else if constexpr (std::is_integral_v<T>)
            log += (std::is_signed_v<T> ? "=int" : "=uint") + std::to_string(8 * sizeof(T));
        log += ' ';
    }
};

class CNotingContainerWriter final : public Vellum::CWriteOperations<CNotingContainerWriter, Vellum::IContainerWriter>
{
public:
    std::string log;

    template <class T>
    void writeValue(const T&)
    {
        log += std::is_same_v<T, std::string>     ? "text "
               : std::is_same_v<T, std::wstring>  ? "wide "
               : std::is_same_v<T, std::int64_t>  ? "int64 "
               : std::is_same_v<T, std::uint64_t> ? "uint64 "
                                                  : "other ";
    }
};

// Answers every Read with the width of what was asked for, below zero for a signed kind.
class CWidthReader final : public Vellum::CReadOperations<CWidthReader, Vellum::IDataReader, const char*>
{
public:
    std::uint32_t GetKeyCount() const override { return 0; }
    const char* GetKey(std::uint32_t) const override { return ""; }
    Vellum::BlobRange GetBlob(const char*) override { return {}; }

    template <class T>
    bool readValue(const char*, T& value) const
    {
        if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>)
            value = static_cast<T>(std::is_signed_v<T> ? -static_cast<int>(sizeof(T)) : static_cast<int>(sizeof(T)));
        return true;
    }
};

template <class Writer, class Value>
concept CanWrite = requires(Writer& writer, Value value)
{
    writer.Write("key", value);
};

template <class Writer, class Value>
concept CanAppend = requires(Writer& writer, Value value)
{
    writer.Write(value);
};

TEST(Contract, NaturalCallsLandInTheKindThatTheySay)
{
    CNotingWriter writer;
    Vellum::IDataWriter& fields = writer;
    fields.Write("a", "text");
    fields.Write("b", L"wide");
    fields.Write("c", true);
    fields.Write("d", 1L);
    fields.Write("e", 1UL);
    fields.Write("f", 1LL);
    fields.Write("g", 1ULL);
    fields.Write("h", 1);
    fields.Write("i", 1U);
    EXPECT_EQ(writer.log, "a=text:text b=wide:4 c=bool d=int64 e=uint64 f=int64 g=uint64 h=int32 i=uint32 ");

    CNotingContainerWriter container;
    Vellum::IContainerWriter& elements = container;
    elements.Write("text");
    elements.Write(L"wide");
    elements.Write(1LL);
    elements.Write(1ULL);
    EXPECT_EQ(container.log, "text wide int64 uint64 ");
}

TEST(Contract, OtherPointersDoNotCompile)
{
    static_assert(CanWrite<Vellum::IDataWriter, const char*> && CanWrite<Vellum::IDataWriter, char*>);
    static_assert(!CanWrite<Vellum::IDataWriter, const int*> && !CanWrite<Vellum::IDataWriter, void*>);
    static_assert(!CanWrite<Vellum::IDataWriter, std::nullptr_t>);
    static_assert(!CanWrite<Vellum::IDataWriter, volatile char*>);
    static_assert(!CanWrite<Vellum::IDataWriter, int CNotingWriter::*>);
    static_assert(!CanWrite<Vellum::IDataWriter, void (*)()>);
    static_assert(CanAppend<Vellum::IContainerWriter, const wchar_t*> && CanAppend<Vellum::IContainerWriter, wchar_t*>);
    static_assert(!CanAppend<Vellum::IContainerWriter, const void*>);
    static_assert(!CanAppend<Vellum::IContainerWriter, Vellum::ISerializable*>);
    static_assert(!CanAppend<Vellum::IContainerWriter, std::nullptr_t>);
}

TEST(Contract, IntegersOfOtherTypesAreReadByTheirWidthAndSign)
{
    const CWidthReader widths;
    const Vellum::IDataReader& reader = widths;
    long a = 0;
    unsigned long b = 0;
    long long c = 0;
    unsigned long long d = 0;
    EXPECT_TRUE(reader.Read("k", a) && reader.Read("k", b) && reader.Read("k", c) && reader.Read("k", d));
    EXPECT_EQ(a, -static_cast<long>(sizeof a));
    EXPECT_EQ(b, sizeof b);
    EXPECT_EQ(c, -8);
    EXPECT_EQ(d, 8u);
}

} // namespace
