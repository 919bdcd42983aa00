#pragma once

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbStreamReadBinary.h"
#include "Groundwork/CbStreamWriteBinary.h"

#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

namespace Support
{

// A client object made of two lambdas. One that is only written or only read leaves the other out.
template <class Interface, class Writer, class Reader>
class CClient : public Interface
{
public:
    using Writing = std::function<void(Writer&)>;
    using Reading = std::function<void(Reader&)>;

    explicit CClient(Writing writing = {}, Reading reading = {}, std::string typeName = DefaultName)
        : writing(std::move(writing)), reading(std::move(reading)), typeName(std::move(typeName))
    {
    }

    const char* GetTypeName() const override { return typeName.c_str(); }
    void Write(Writer& writer) const override { writing ? writing(writer) : void(); }
    void Read(Reader& reader) override { reading ? reading(reader) : void(); }

private:
    static constexpr const char* DefaultName = std::is_same_v<Interface, Vellum::ISerializable> ? "Fields" : "Elements";

    Writing writing;
    Reading reading;
    std::string typeName;
};

using CFields = CClient<Vellum::ISerializable, Vellum::IDataWriter, Vellum::IDataReader>;
using CElements = CClient<Vellum::ISerializableContainer, Vellum::IContainerWriter, Vellum::IContainerReader>;

// Objects that are only read.
inline CFields ReadFields(CFields::Reading reading) { return CFields({}, std::move(reading)); }
inline CElements ReadElements(CElements::Reading reading) { return CElements({}, std::move(reading)); }

inline void WriteFields(Vellum::IDataWriter&) {}
template <class Value, class... More>
void WriteFields(Vellum::IDataWriter& writer, const char* key, const Value& value, const More&... more)
{
    writer.Write(key, value);
    WriteFields(writer, more...);
}

// Objects that are only written: FieldsOf("key", 1, "other", "text") and ElementsOf(1, 2, 3). Values are copied.
template <class... KeyAndValue>
CFields FieldsOf(const KeyAndValue&... fields)
{
    return CFields([=](Vellum::IDataWriter& writer) { WriteFields(writer, fields...); });
}
template <class... Value>
CElements ElementsOf(const Value&... values)
{
    return CElements([=](Vellum::IContainerWriter& writer) { (writer.Write(values), ...); });
}

// What is read under a key or an index. None if nothing is found, which must have left the argument alone.
template <class Reader>
using KeyOf = std::conditional_t<std::is_same_v<Reader, Vellum::IContainerReader>, std::uint32_t, const char*>;
template <class Value, class Reader>
std::optional<Value> Get(Reader& reader, KeyOf<Reader> key)
{
    Value before{};
    if constexpr (std::is_arithmetic_v<Value>)
        before = static_cast<Value>(1);
    else
        before.assign(3, 'x');
    Value value = before;
    if (reader.Read(key, value))
        return value;
    EXPECT_EQ(value, before);
    return std::nullopt;
}

// Streams as a client makes them: the raw operation and nothing else.
class CClientWriter : public CbStreamWriteBinary
{
public:
    using CbStreamWriteBinary::Write;
    CbStreamWriteBinary& Write(const void* data, std::size_t count) override
    {
        bytes.append(static_cast<const char*>(data), count);
        return *this;
    }

    std::string bytes;
};

class CClientReader : public CbStreamReadBinary
{
public:
    explicit CClientReader(std::string bytes) : bytes(std::move(bytes)) {}

    using CbStreamReadBinary::Read;
    std::uint64_t Read(void* data, std::size_t count) override
    {
        ++rawReads;
        const std::size_t delivered = bytes.copy(static_cast<char*>(data), count);
        bytes.erase(0, delivered);
        return delivered;
    }

    std::string bytes; // what is left
    int rawReads = 0;
};

// A client's date: it notes what is set, in order.
class CNotedDate : public CbDateTime
{
public:
    void SetYear(unsigned short value) override { note('Y', value); }
    void SetMonth(unsigned short value) override { note('m', value); }
    void SetDay(unsigned short value) override { note('d', value); }
    void SetHour(unsigned short value) override { note('H', value); }
    void SetMinute(unsigned short value) override { note('i', value); }
    void SetSecond(unsigned short value) override { note('s', value); }
    void SetMilliseconds(unsigned short value) override { note('v', value); }

    std::string noted;

private:
    void note(char field, unsigned short value) { noted += field + std::to_string(value) + ' '; }
};

} // namespace Support
