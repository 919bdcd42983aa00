#include "Vellum/CWriterBinary.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Groundwork/CbArray.h"
#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbMapEx.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CByteChain.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/TypeNames.h"

// document := version:u32 rootTag:u8 count:u32 { text index:u32 }      the string table, in its table's order
//             record | sequence
// record   := sections:u8 { tag:u8 entries:u32 { key:u32 value } }     entries > 0: an empty section isn't written
// sequence := tag:u8 count:u32 [ typeHeader ] { value }                the header only for objects, if there are any
// typeHeader := true:u8 type:u32 | false:u8 { type:u32 }               one type for all, or one for each
// value    := the number | text | date | size:u32 bytes | type:u32 record | sequence
//
// key, index and type are indices of the string table. All numbers are little-endian.

namespace Vellum
{
namespace
{

constexpr std::uint64_t Max32 = std::numeric_limits<std::uint32_t>::max();

// What the table of a kind stores.
template <class T>
struct SStored
{
    using Type = T;
};
template <>
struct SStored<IDateTime>
{
    using Type = CbDateTime;
};
template <>
struct SStored<SBlob>
{
    using Type = CbArray<unsigned char>;
};
template <>
struct SStored<ISerializable>
{
    using Type = std::pair<unsigned int, std::unique_ptr<CDataWriterBinary>>; // index of the type name
};
template <>
struct SStored<ISerializableContainer>
{
    using Type = std::pair<unsigned int, std::unique_ptr<CContainerWriterBinary>>;
};

// The fields of one kind, by the index of their key. Records are many and small, so all tables of a document draw on
// one pool for each kind, which starts small too.
template <class T>
using Table = CbMapEx<unsigned int, typename SStored<T>::Type, 0, std::hash<unsigned int>, std::equal_to<unsigned int>,
                      CbMapPolicyBorrowed>;

template <class T>
struct SPool
{
    CbPlexManager<typename Table<T>::SAssociation, 0, unsigned int> nodes{8u};
};

template <class Kinds>
struct STuples;

template <class... Kind>
struct STuples<SKindList<Kind...>>
{
    using Pools = std::tuple<SPool<typename Kind::Type>...>;
    using Tables = std::tuple<std::unique_ptr<Table<typename Kind::Type>>...>;
};

// How many bytes of one text a buffer takes beside the bytes that may wait in it.
constexpr std::size_t MaxTextSize = Max32 - 0xFFFF;

template <class T>
bool IsTooLong(const T&)
{
    return false;
}
template <class Char>
bool IsTooLong(const std::basic_string<Char>& text)
{
    constexpr std::size_t MaxLength = MaxTextSize / (sizeof(Char) == 1 ? 1 : 4); // a wide one may become a pair
    return text.size() > MaxLength && std::char_traits<Char>::length(text.c_str()) > MaxLength;
}

// Where emitted bytes go: to the end of a sequence, where they stay, or by way of a chain to the client's stream.
class COutput
{
public:
    explicit COutput(CByteChain& bytes) : bytes(bytes) {}
    COutput(CByteChain& bytes, CbStreamWriteBinary& stream) : bytes(bytes), stream(&stream) {}

    CByteChain& bytes;

    // Called between items: passes on what has gathered.
    void Relieve()
    {
        if (stream != nullptr && bytes.GetSize() >= WellFilled)
            Flush();
    }
    void Flush() { bytes.PassOn(*stream); }
    void WriteNumbers(const unsigned int* numbers, std::uint32_t count)
    {
        for (; count != 0; --count, Relieve())
            bytes.Write(*numbers++);
    }
    void WriteBytes(const void* data, std::uint32_t size)
    {
        if (stream != nullptr && size >= WellFilled)
        {
            Flush();
            stream->Write(data, size);
        }
        else
            bytes.Write(data, std::size_t{size});
    }
    void Take(CByteChain& finished)
    {
        if (stream != nullptr && finished.GetSize() >= WellFilled)
        {
            Flush();
            if (auto* const memory = dynamic_cast<CbStreamWriteBinaryBuffer*>(stream))
                memory->MakeRoom(finished.GetSize()); // once, instead of doubling time and again
            finished.PassOn(*stream);
        }
        else
            bytes.Take(finished);
    }

private:
    static constexpr std::uint32_t WellFilled = 0x8000;

    CbStreamWriteBinary* stream = nullptr;
};

} // namespace

// What all writers of one document share: the string table, the pools, and writers of finished elements, which serve
// again.
class CBinaryDocument
{
public:
    // The index of a key or type name: how many texts were known when it was first used.
    unsigned int Intern(const char* text)
    {
        const Strings::KeyView key(text);
        if (key.size() > MaxTextSize)
            throw CException(__FILE__, __LINE__, "Vellum::CDataWriterBinary::Write");
        const auto [node, isNew] = strings.FindOrEmplace(key, strings.GetCount());
        return node->value;
    }

    template <class T>
    auto& GetPool()
    {
        return std::get<SPool<T>>(pools).nodes;
    }

    template <class Writer>
    std::unique_ptr<Writer> TakeWriter()
    {
        auto& spare = std::get<std::vector<std::unique_ptr<Writer>>>(spares);
        if (spare.empty())
            return std::make_unique<Writer>(*this);
        std::unique_ptr<Writer> writer = std::move(spare.back());
        spare.pop_back();
        return writer;
    }

    template <class Writer>
    void GiveBack(std::unique_ptr<Writer> writer) noexcept
    {
        if (!writer)
            return;
        writer->Clear();
        try
        {
            std::get<std::vector<std::unique_ptr<Writer>>>(spares).push_back(std::move(writer));
        }
        catch (const std::bad_alloc&)
        {
            writer.reset(); // one that can't be kept is made anew when it is needed
        }
    }

    void EmitHead(COutput& output, std::uint8_t rootTag) const
    {
        output.bytes.Write(std::uint32_t{0}); // version
        output.bytes.Write(rootTag);
        output.bytes.Write(strings.GetCount());
        for (const auto* node = strings.GetFirst(); node != nullptr; node = node->next)
        {
            output.bytes.Write(node->key).Write(node->value);
            output.Relieve();
        }
    }

private:
    using Strings = CbMapEx<ATL::CStringT<char>, unsigned int>;

    Strings strings{128u, 16u};
    STuples<ValueKinds>::Pools pools;
    std::tuple<std::vector<std::unique_ptr<CDataWriterBinary>>, std::vector<std::unique_ptr<CContainerWriterBinary>>>
        spares; // before they go, their nodes go back to the pools above
};

// The fields of one object.
class CDataWriterBinary final : public CWriteOperations<CDataWriterBinary, IDataWriter, const char*>
{
public:
    explicit CDataWriterBinary(CBinaryDocument& document) : document(document) {}

    template <class T>
    void writeValue(const char* key, const T& value)
    {
        if (IsTooLong(value))
            throw CException(__FILE__, __LINE__, "Vellum::CDataWriterBinary::Write");
        const auto [node, isNew] = getTable<T>().FindOrEmplace(document.Intern(key), value);
        if (!isNew)
            node->value = value;
    }
    void writeValue(const char* key, const IDateTime& value);
    void writeValue(const char* key, const SBlob& value);
    void writeValue(const char* key, const ISerializable& value) { writeNested<CDataWriterBinary>(key, value); }
    void writeValue(const char* key, const ISerializableContainer& value)
    {
        writeNested<CContainerWriterBinary>(key, value);
    }

    // The record. Its sequences are empty afterwards.
    void Emit(COutput& output) const;

    // Makes the writer as new. The memory of its tables is kept.
    void Clear() noexcept;

private:
    template <class T>
    Table<T>& getTable()
    {
        std::unique_ptr<Table<T>>& table = std::get<std::unique_ptr<Table<T>>>(tables);
        if (!table)
            table = std::make_unique<Table<T>>(Table<T>::DefaultBucketCount, document.GetPool<T>());
        return *table;
    }

    template <class Writer, class T>
    void writeNested(const char* key, const T& value);
    template <class NestedTable, class Writer>
    auto* findOrInsertNested(NestedTable& table, unsigned int index, std::unique_ptr<Writer>& nested);

    template <class T>
    void clearTable(std::unique_ptr<Table<T>>& table) noexcept;
    template <class... Kind>
    void clearTables(SKindList<Kind...>) noexcept;

    CBinaryDocument& document;
    STuples<ValueKinds>::Tables tables; // null: no field of that kind
};

// The elements of one sequence, each encoded as soon as it is written.
class CContainerWriterBinary final : public CWriteOperations<CContainerWriterBinary, IContainerWriter>
{
public:
    explicit CContainerWriterBinary(CBinaryDocument& document) : document(document) {}

    template <class T>
    void writeValue(const T& value)
    {
        fixTag(TagOf<T>);
        append(
            [&]
            {
                if (IsTooLong(value))
                    throw std::bad_array_new_length();
                elements.Write(value);
            });
    }
    void writeValue(const IDateTime& value);
    void writeValue(const SBlob& value);
    void writeValue(const ISerializable& value);
    void writeValue(const ISerializableContainer& value);

    // The sequence, whose elements move on without being copied if they are many.
    void Emit(COutput& output);

    // Makes the writer as new. A little memory is kept.
    void Clear() noexcept;

private:
    void fixTag(std::uint8_t tagOfElement);

    template <class Encode>
    void append(const Encode& encode);
    void emitTypeHeader(COutput& output) const;
    void addTypeName(unsigned int typeName);

    CBinaryDocument& document;
    unsigned int firstTypeName = 0;  // of elements that are objects
    CbArray<unsigned int> typeNames; // of all of them, if there were two that differ
    bool typed = false;              // whether the first element has fixed the tag
    std::uint8_t tag = 0;
    std::uint32_t count = 0;
    CByteChain elements; // encoded
};

namespace
{

// A writer for one nested element, which goes back to the document on every way out.
template <class Writer>
class CTemporaryWriter
{
public:
    explicit CTemporaryWriter(CBinaryDocument& document) : document(document), writer(document.TakeWriter<Writer>()) {}
    ~CTemporaryWriter() { document.GiveBack(std::move(writer)); }
    CTemporaryWriter(const CTemporaryWriter&) = delete;
    CTemporaryWriter& operator=(const CTemporaryWriter&) = delete;

    Writer& Get() const { return *writer; }

private:
    CBinaryDocument& document;
    std::unique_ptr<Writer> writer;
};

void EmitDate(CByteChain& bytes, const CbDateTime& date) { bytes.Write(0u).Write(date.ToFileTime()); }

// The value of a table's entry.
template <class T>
void EmitValue(COutput& output, const T& value)
{
    output.bytes.Write(value);
}
void EmitValue(COutput& output, const CbDateTime& date) { EmitDate(output.bytes, date); }
void EmitValue(COutput& output, const CbArray<unsigned char>& blob)
{
    output.bytes.Write(blob.GetSize());
    output.WriteBytes(blob.GetData(), blob.GetSize());
}
void EmitValue(COutput& output, const SStored<ISerializable>::Type& object)
{
    output.bytes.Write(object.first);
    object.second->Emit(output);
}
void EmitValue(COutput& output, const SStored<ISerializableContainer>::Type& sequence)
{
    sequence.second->Emit(output);
}

template <class T>
bool IsUsed(const std::unique_ptr<T>& table)
{
    return table && table->GetCount() != 0;
}

template <class T>
void EmitSection(COutput& output, const std::unique_ptr<Table<T>>& table)
{
    if (!IsUsed(table))
        return;
    output.bytes.Write(TagOf<T>);
    output.bytes.Write(table->GetCount());
    for (const auto* node = table->GetFirst(); node != nullptr; node = node->next)
    {
        output.bytes.Write(node->key);
        EmitValue(output, node->value);
        output.Relieve();
    }
}

template <class... Kind>
void EmitSections(COutput& output, const STuples<ValueKinds>::Tables& tables, SKindList<Kind...>)
{
    (EmitSection<typename Kind::Type>(output, std::get<std::unique_ptr<Table<typename Kind::Type>>>(tables)), ...);
}

} // namespace

void CDataWriterBinary::writeValue(const char* key, const IDateTime& value)
{
    const unsigned int index = document.Intern(key);
    const CbDateTime date(value); // the client's getters may write other fields
    const auto [node, isNew] = getTable<IDateTime>().FindOrEmplace(index, date);
    if (!isNew)
        node->value = date;
}

void CDataWriterBinary::writeValue(const char* key, const SBlob& value)
{
    if (value.size > Max32)
        throw CException(__FILE__, __LINE__, "Vellum::CDataWriterBinary::Write");
    CbArray<unsigned char> bytes;
    bytes.Reserve(value.size);
    bytes.Append(static_cast<const unsigned char*>(value.data), value.size);
    const auto [node, isNew] = getTable<SBlob>().FindOrEmplace(document.Intern(key), std::move(bytes));
    if (!isNew)
        node->value = std::move(bytes); // not moved from yet: no value was made of it
}

// A table that couldn't double its buckets has the new entry nonetheless: then it gets the writer at once, since the
// client may go on.
template <class NestedTable, class Writer>
auto* CDataWriterBinary::findOrInsertNested(NestedTable& table, unsigned int index, std::unique_ptr<Writer>& nested)
{
    try
    {
        return table.FindOrInsert(index);
    }
    catch (...)
    {
        if (auto* const node = table.Find(index); node != nullptr && !node->value.second)
            node->value.second = std::move(nested);
        throw;
    }
}

// The nested writer takes its place in the entry when the client is done with it, normally or by an exception. Until
// then it stands alone, so that nothing that the client does meanwhile can destroy it.
template <class Writer, class T>
void CDataWriterBinary::writeNested(const char* key, const T& value)
{
    const unsigned int index = document.Intern(key);
    const unsigned int typeName = document.Intern(value.GetTypeName());
    std::unique_ptr<Writer> nested = document.TakeWriter<Writer>();
    auto* const node = findOrInsertNested(getTable<T>(), index, nested);
    node->value.first = typeName;
    const auto enter = [&]() noexcept
    {
        node->value.second.swap(nested);
        document.GiveBack(std::move(nested));
    };
    try
    {
        value.Write(*nested);
    }
    catch (...)
    {
        enter();
        throw;
    }
    enter();
}

void CDataWriterBinary::Emit(COutput& output) const
{
    const std::size_t sections =
        std::apply([](const auto&... table) { return (std::size_t{0} + ... + (IsUsed(table) ? 1 : 0)); }, tables);
    output.bytes.Write(static_cast<unsigned char>(sections));
    EmitSections(output, tables, ValueKinds());
}

// Nested writers go back to the document before the nodes that hold them are destroyed.
template <class T>
void CDataWriterBinary::clearTable(std::unique_ptr<Table<T>>& table) noexcept
{
    if (!IsUsed(table))
        return;
    if constexpr (TagOf<T> == TagObject || TagOf<T> == TagSequence)
        for (auto* node = table->GetFirst(); node != nullptr; node = node->next)
            document.GiveBack(std::move(node->value.second));
    table->Clear();
}

template <class... Kind>
void CDataWriterBinary::clearTables(SKindList<Kind...>) noexcept
{
    (clearTable<typename Kind::Type>(std::get<std::unique_ptr<Table<typename Kind::Type>>>(tables)), ...);
}

void CDataWriterBinary::Clear() noexcept { clearTables(ValueKinds()); }

void CContainerWriterBinary::fixTag(std::uint8_t tagOfElement)
{
    if (typed && tag != tagOfElement)
        throw CException(__FILE__, __LINE__,
                         tagOfElement <= TagDate ? "Vellum::CContainerWriterBinary::write"
                                                 : "Vellum::CContainerWriterBinary::Write");
    typed = true;
    tag = tagOfElement;
}

// Encodes one element, or leaves no trace of it.
template <class Encode>
void CContainerWriterBinary::append(const Encode& encode)
{
    const std::uint32_t size = elements.GetSize();
    try
    {
        if (count == Max32)
            throw std::bad_array_new_length();
        encode();
    }
    catch (const std::bad_array_new_length&) // beyond 32 bits
    {
        elements.Truncate(size);
        throw CException(__FILE__, __LINE__, "Vellum::CContainerWriterBinary::Write");
    }
    catch (...)
    {
        elements.Truncate(size);
        throw;
    }
    ++count;
}

void CContainerWriterBinary::writeValue(const IDateTime& value)
{
    fixTag(TagDate);
    const CbDateTime date(value); // the client's getters may write other elements
    append([&] { EmitDate(elements, date); });
}

void CContainerWriterBinary::writeValue(const SBlob& value)
{
    fixTag(TagBlob);
    append(
        [&]
        {
            if (value.size > Max32)
                throw std::bad_array_new_length();
            elements.Write(static_cast<std::uint32_t>(value.size)).Write(value.data, value.size);
        });
}

void CContainerWriterBinary::writeValue(const ISerializable& value)
{
    fixTag(TagObject);
    const unsigned int typeName = document.Intern(value.GetTypeName());
    const CTemporaryWriter<CDataWriterBinary> nested(document);
    value.Write(nested.Get());
    append(
        [&]
        {
            addTypeName(typeName);
            elements.Write(typeName);
            COutput output(elements);
            nested.Get().Emit(output);
        });
}

void CContainerWriterBinary::writeValue(const ISerializableContainer& value)
{
    fixTag(TagSequence);
    const CTemporaryWriter<CContainerWriterBinary> nested(document);
    value.Write(nested.Get());
    append(
        [&]
        {
            COutput output(elements);
            nested.Get().Emit(output);
        });
}

// Notes the name of the next element. That of one that failed afterwards is forgotten.
void CContainerWriterBinary::addTypeName(unsigned int typeName)
{
    if (count == 0)
        firstTypeName = typeName;
    if (typeName == firstTypeName && typeNames.GetSize() == 0)
        return;
    while (typeNames.GetSize() < count)
        typeNames.Add(firstTypeName);
    typeNames.SetSize(count);
    typeNames.Add(typeName);
}

void CContainerWriterBinary::Emit(COutput& output)
{
    output.bytes.Write(count == 0 ? std::uint8_t{0} : tag).Write(count);
    if (count == 0)
        return;
    if (tag == TagObject)
        emitTypeHeader(output);
    output.Take(elements);
}

void CContainerWriterBinary::emitTypeHeader(COutput& output) const
{
    const bool alike = std::all_of(typeNames.begin(), typeNames.begin() + std::min(count, typeNames.GetSize()),
                                   [&](unsigned int name) { return name == firstTypeName; });
    output.bytes.Write(alike);
    if (alike)
        output.bytes.Write(firstTypeName);
    else
        output.WriteNumbers(typeNames.GetData(), count);
}

void CContainerWriterBinary::Clear() noexcept
{
    typeNames = CbArray<unsigned int>();
    typed = false;
    tag = 0;
    count = 0;
    elements.Clear();
}

CWriterBinary::CWriterBinary(CbStreamWriteBinary& stream) : stream(stream) {}
CWriterBinary::CWriterBinary(const CWriterBinary& other) = default;
CWriterBinary::~CWriterBinary() = default;

namespace
{

template <class Writer, class Root>
void WriteDocument(CbStreamWriteBinary& stream, const Root& root)
{
    CBinaryDocument document;
    Writer writer(document);
    root.Write(writer);

    CByteChain bytes(0x1000);
    COutput output(bytes, stream);
    document.EmitHead(output, TagOf<Root>);
    writer.Emit(output);
    output.Flush();
}

} // namespace

void CWriterBinary::Write(const ISerializable& root) { WriteDocument<CDataWriterBinary>(stream, root); }

void CWriterBinary::Write(const ISerializableContainer& root) { WriteDocument<CContainerWriterBinary>(stream, root); }

} // namespace Vellum
