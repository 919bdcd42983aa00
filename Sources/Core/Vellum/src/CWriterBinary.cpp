#include "Vellum/CWriterBinary.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Platform/Compiler.h"
#include "Platform/ConstantText.h"

#include "Groundwork/BinaryEncoding.h"
#include "Groundwork/CbArray.h"
#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbMapEx.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataWriter.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CByteBuffer.h"
#include "Vellum/src/CByteChain.h"
#include "Vellum/src/CFieldIndex.h"
#include "Vellum/src/CRecordShape.h"
#include "Vellum/src/CShortList.h"
#include "Vellum/src/CWriterPool.h"
#include "Vellum/src/EntryPools.h"
#include "Vellum/src/FieldOrder.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/WriteKnown.h"

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

class CContainerWriterBinary;
class CDataWriterBinary;

namespace
{

// A nested object or sequence, with the index of its type name.
template <class Writer>
using NestedEntry = std::pair<unsigned int, std::unique_ptr<Writer>>;

template <class... Kind>
[[noreturn]] void RaiseOutOfEntries(std::uint8_t rank, SKindList<Kind...>)
{
    constexpr const char* Names[] = {EntryPool<unsigned int, typename Kind::Type, NestedEntry<CDataWriterBinary>,
                                               NestedEntry<CContainerWriterBinary>>::GetFunctionName()...};
    CbRaiseOutOfElements(Names[rank]);
}

// Obtains what a field of a kind takes beside its text, bytes or nested writer.
template <class Obtain>
decltype(auto) ObtainEntry(std::uint8_t rank, const Obtain& obtain)
try
{
    return obtain();
}
catch (const std::bad_alloc&)
{
    RaiseOutOfEntries(rank, ValueKinds());
}

constexpr std::uint64_t Max32 = std::numeric_limits<std::uint32_t>::max();

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
    void WriteBytes(const void* data, std::size_t size)
    {
        if (stream != nullptr && size >= WellFilled)
        {
            Flush();
            stream->Write(data, size);
        }
        else
            bytes.Write(data, size);
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

// What all writers of one document share: the string table, the shapes of records, and writers of finished elements,
// which serve again.
class CBinaryDocument
{
public:
    using Strings = CbMapEx<ATL::CStringT<char>, unsigned int>;
    using String = Strings::SAssociation; // a text and its index

    // A key or type name. Its index is how many texts were known when it was first used. Texts that come from one
    // address time and again are compared once and not looked up.
    const String& Intern(const char* text)
    {
        const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(text) * 0x9E3779B97F4A7C15u;
        SKnown& known = knownTexts[static_cast<std::size_t>(mixed >> KnownShift)];
        if (known.address != text || (!known.isConstant && std::strcmp(known.string->key.c_str(), text) != 0))
            known = {text, &look(text), Platform::IsConstant(text)};
        return *known.string;
    }

    // The shape of the type's last record, or null.
    CRecordShape* FindShape(std::uint32_t typeName)
    {
        CRecordShape& shape = shapes[typeName % shapes.size()];
        return shape.GetTypeName() == typeName && !shape.GetSteps().empty() ? &shape : nullptr;
    }

    // How many texts have an index.
    std::uint32_t CountTexts() const { return strings.GetCount(); }

    // Remembers the shape of a record, unless another record follows the one that would have to go.
    void Learn(std::uint32_t typeName, const std::vector<SRecordField>& fields, const FieldOrder::Positions& order)
    {
        CRecordShape& shape = shapes[typeName % shapes.size()];
        if (shape.followers != 0 || fields.size() > CRecordShape::MaxFields)
            return;
        try
        {
            shape.Learn(typeName, fields, order);
        }
        catch (const std::bad_alloc&)
        {
            // the next record is written without a shape
        }
    }

    template <class Writer>
    Writer* TakeWriter()
    {
        return std::get<CWriterPool<Writer>>(writers).Take(*this);
    }
    template <class Writer>
    void GiveBack(Writer* writer) noexcept
    {
        std::get<CWriterPool<Writer>>(writers).GiveBack(writer);
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
    struct SKnown
    {
        const char* address;
        const String* string;
        bool isConstant;
    };

    const String& look(const char* text)
    {
        const Strings::KeyView key(text);
        if (key.size() > MaxTextSize)
            throw CException(__FILE__, __LINE__, "Vellum::CDataWriterBinary::Write");
        return *strings.FindOrEmplace(key, strings.GetCount()).first;
    }

    static constexpr int KnownBits = 7;
    static constexpr int KnownShift = 64 - KnownBits;

    Strings strings{128u, 16u};
    std::array<SKnown, 1 << KnownBits> knownTexts{};
    std::array<CRecordShape, 32> shapes; // by type name, the last of those that share a place
    std::tuple<CWriterPool<CDataWriterBinary>, CWriterPool<CContainerWriterBinary>> writers;
};

// The fields of one object. As long as they follow the shape of the type's last record, they fill its image in. The
// first one that doesn't, or the end that comes too soon, makes single fields of what was gathered, and from there on
// each is kept with its key and put into order when the record goes out.
class CDataWriterBinary final : public CWriteOperations<CDataWriterBinary, IDataWriter, const char*>,
                                public SPooled<CDataWriterBinary>
{
public:
    static constexpr std::uint32_t NoTypeName = std::numeric_limits<std::uint32_t>::max();

    explicit CDataWriterBinary(CBinaryDocument& document) : document(document) {}

    // Called once for a new writer, or one that was cleared: from then on it is one of a type.
    void Begin(std::uint32_t nameOfType);

    template <class T>
    void writeValue(const char* key, const T& value)
    {
        if constexpr (std::is_arithmetic_v<T>)
            writeFixed<T>(expect(key, RankOf<T>), key, BinaryEncoding::ToImage(value));
        else
            writeText(key, value);
    }
    void writeValue(const char* key, const IDateTime& value);
    void writeValue(const char* key, const SBlob& value);
    void writeValue(const char* key, const ISerializable& value) { writeNested<CDataWriterBinary>(key, value); }
    void writeValue(const char* key, const ISerializableContainer& value)
    {
        writeNested<CContainerWriterBinary>(key, value);
    }

    // The record. Its sequences are empty afterwards.
    void Emit(COutput& output);

    // Makes the writer as new. Its lists keep their memory, its buffer a little.
    void Clear() noexcept;

private:
    // Where a text or blob lies.
    struct SPlace
    {
        std::size_t at;
        std::size_t size;
    };

    // A nested object or sequence, and its type name.
    template <class Writer>
    struct SPart
    {
        std::uint32_t typeName;
        Writer* writer; // null until it is settled
    };
    template <class Writer>
    using Parts = CShortList<SPart<Writer>, 1>;

    static constexpr std::size_t MinLost = 0x1000;

    // The step that such a field follows, or null.
    const CRecordShape::SStep* expect(const char* key, std::uint8_t rank) const
    {
        if (step == lastStep || step->rank != rank)
            return nullptr;
        return step->constant == key || isKeyOf(*step, key) ? step : nullptr;
    }
    static bool isKeyOf(const CRecordShape::SStep& step, const char* key)
    {
        if (std::strcmp(step.text, key) != 0)
            return false;
        step.constant = Platform::IsConstant(key) ? key : nullptr;
        return true;
    }
    // Likewise, but null is a key that has its index.
    const CRecordShape::SStep* expectOrIntern(const char* key, std::uint8_t rank) const
    {
        const CRecordShape::SStep* const expected = expect(key, rank);
        if (expected == nullptr)
            document.Intern(key);
        return expected;
    }
    template <class T, class Image>
    void writeFixed(const CRecordShape::SStep* expected, const char* key, const Image& image);
    template <class Char>
    void writeText(const char* key, const std::basic_string<Char>& value);
    template <class Encode>
    void writeBytes(const char* key, std::uint8_t rank, const Encode& encode);
    template <class Writer, class T>
    void writeNested(const char* key, const T& value);
    template <class Writer>
    std::uint32_t enterPart(const CRecordShape::SStep* expected, const char* key, std::uint8_t rank,
                            std::uint32_t nameOfPart);

    void leaveShape();
    void stopFollowing() noexcept;
    SRecordField& enterField(const char* key, std::uint8_t rank, const SPlace& place);
    void replaceBytes(SRecordField& field, const SPlace& place);
    void dropLost() noexcept;
    void learnEarly() noexcept;
    void emitImage(COutput& output);
    void emitFields(COutput& output);
    void emitValue(COutput& output, std::uint8_t rank, const SPlace& place);

    template <class Writer>
    auto& getParts()
    {
        return std::get<Parts<Writer>>(parts);
    }
    template <class Writer>
    void giveBackParts() noexcept;

    CBinaryDocument& document;
    std::uint32_t typeName = NoTypeName;
    CRecordShape* shape = nullptr;             // what the record follows
    const CRecordShape::SStep* step = nullptr; // what is expected next
    const CRecordShape::SStep* lastStep = nullptr;
    CByteBuffer bytes;                // the image, and values as they are stored
    CShortList<SPlace, 2> places;     // of values without a fixed size, while the record follows a shape
    std::vector<SRecordField> fields; // otherwise, in the order of their first writes
    CFieldIndex index;                // of the fields
    FieldOrder::Positions order;      // of the fields, as they are stored
    std::size_t lost = 0;             // bytes of values that were replaced
    std::tuple<Parts<CDataWriterBinary>, Parts<CContainerWriterBinary>> parts;
};

// The elements of one sequence, each encoded as soon as it is written.
class CContainerWriterBinary final : public CWriteOperations<CContainerWriterBinary, IContainerWriter>,
                                     public SPooled<CContainerWriterBinary>
{
public:
    explicit CContainerWriterBinary(CBinaryDocument& document) : document(document) {}

    template <class T>
    void writeValue(const T& value)
    {
        if constexpr (std::is_arithmetic_v<T>)
            if (tag == TagOf<T> && count != Max32 && elements.WriteIntoRoom(BinaryEncoding::ToImage(value))) [[likely]]
            {
                ++count;
                return;
            }
        writeElement(value);
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
    static constexpr std::uint8_t NoTag = 0xFF;

    void fixTag(std::uint8_t tagOfElement);

    template <class T>
    void writeElement(const T& value);
    template <class Encode>
    void append(const Encode& encode);
    void emitTypeHeader(COutput& output) const;
    void addTypeName(unsigned int typeName);

    CBinaryDocument& document;
    unsigned int firstTypeName = 0;  // of elements that are objects
    CbArray<unsigned int> typeNames; // of all of them, if there were two that differ
    std::uint8_t tag = NoTag;        // of all elements; the first one fixes it
    std::uint32_t count = 0;
    CByteChain elements; // encoded
};

namespace
{

// A writer of one nested object or sequence, which goes back to the document on every way out.
template <class Writer>
class CTemporaryWriter
{
public:
    explicit CTemporaryWriter(CBinaryDocument& document) : document(document), writer(document.TakeWriter<Writer>()) {}
    CTemporaryWriter(CBinaryDocument& document, std::uint32_t typeName) : CTemporaryWriter(document)
    {
        if constexpr (std::is_same_v<Writer, CDataWriterBinary>)
            writer->Begin(typeName);
    }
    ~CTemporaryWriter() { document.GiveBack(writer); }
    CTemporaryWriter(const CTemporaryWriter&) = delete;
    CTemporaryWriter& operator=(const CTemporaryWriter&) = delete;

    Writer& Get() const { return *writer; }

    // Another writer goes back in the place of this one.
    void Swap(Writer*& other) noexcept { std::swap(writer, other); }

private:
    CBinaryDocument& document;
    Writer* writer;
};

// A date as it is stored: the version of dates, which is 0, and the ticks.
std::array<unsigned char, 12> ToImage(const CbDateTime& date)
{
    const auto ticks = BinaryEncoding::ToImage(date.ToFileTime());
    std::array<unsigned char, 12> image{};
    std::copy(ticks.begin(), ticks.end(), image.begin() + 4);
    return image;
}

} // namespace

void CDataWriterBinary::Begin(std::uint32_t nameOfType)
{
    typeName = nameOfType;
    CRecordShape* const found = document.FindShape(typeName);
    if (found == nullptr)
        return;
    places.Reserve(found->GetGaps().size());
    bytes.Write(found->GetImage().GetData(), found->GetImage().GetSize());
    shape = found;
    ++shape->followers;
    step = shape->GetSteps().data();
    lastStep = step + shape->GetSteps().size();
}

template <class T, class Image>
void CDataWriterBinary::writeFixed(const CRecordShape::SStep* expected, const char* key, const Image& image)
{
    if (expected == nullptr || expected != step) [[unlikely]]
        return writeBytes(key, RankOf<T>,
                          [&] { ObtainEntry(RankOf<T>, [&] { bytes.Write(image.data(), image.size()); }); });
    std::memcpy(bytes.GetData() + step->at, image.data(), image.size());
    ++step;
}

template <class Char>
void CDataWriterBinary::writeText(const char* key, const std::basic_string<Char>& value)
{
    if (IsTooLong(value))
        throw CException(__FILE__, __LINE__, "Vellum::CDataWriterBinary::Write");
    writeBytes(key, RankOf<std::basic_string<Char>>, [&] { BinaryEncoding::WriteText(bytes, value.c_str()); });
}

void CDataWriterBinary::writeValue(const char* key, const IDateTime& value)
{
    const CRecordShape::SStep* const expected = expectOrIntern(key, RankOf<IDateTime>);
    const CbDateTime date(value); // the client's getters may write other fields
    writeFixed<IDateTime>(expected == nullptr ? expect(key, RankOf<IDateTime>) : expected, key, ToImage(date));
}

void CDataWriterBinary::writeValue(const char* key, const SBlob& value)
{
    if (value.size > Max32)
        throw CException(__FILE__, __LINE__, "Vellum::CDataWriterBinary::Write");
    const auto encode = [&]
    {
        BinaryEncoding::WriteNumber(bytes, static_cast<std::uint32_t>(value.size));
        bytes.Write(value.data, value.size);
    };
    writeBytes(key, RankOf<SBlob>, encode);
}

// Keeps a value as it is stored, or leaves no trace of it.
template <class Encode>
void CDataWriterBinary::writeBytes(const char* key, std::uint8_t rank, const Encode& encode)
{
    const std::size_t at = bytes.GetSize();
    try
    {
        encode();
        const SPlace place{at, bytes.GetSize() - at};
        if (expect(key, rank) == nullptr)
            enterField(key, rank, place);
        else
        {
            places.Add(place); // there is room for all gaps
            ++step;
        }
    }
    catch (...)
    {
        bytes.Truncate(at);
        throw;
    }
}

// The nested writer takes its place in the record when the client is done with it, normally or by an exception. Until
// then it stands alone, so that nothing that the client does meanwhile can destroy it.
template <class Writer, class T>
void CDataWriterBinary::writeNested(const char* key, const T& value)
{
    const CRecordShape::SStep* const expected = expectOrIntern(key, RankOf<T>);
    const std::uint32_t nameOfPart = document.Intern(value.GetTypeName()).value;
    CTemporaryWriter<Writer> nested(document, nameOfPart);
    const std::uint32_t part = enterPart<Writer>(expected, key, RankOf<T>, nameOfPart);
    learnEarly();
    const auto settle = [&]() noexcept { nested.Swap(getParts<Writer>()[part].writer); };
    try
    {
        value.Write(nested.Get());
    }
    catch (...)
    {
        settle();
        throw;
    }
    settle();
}

// The number of the part under that key, which has the type name from now on.
template <class Writer>
std::uint32_t CDataWriterBinary::enterPart(const CRecordShape::SStep* expected, const char* key, std::uint8_t rank,
                                           std::uint32_t nameOfPart)
{
    auto& all = getParts<Writer>();
    const auto next = static_cast<std::uint32_t>(all.GetSize());
    ObtainEntry(rank, [&] { all.Add({nameOfPart, nullptr}); });
    try
    {
        const bool isNext = expected != nullptr && expected == step;
        const std::uint32_t number =
            isNext ? (++step, next) : static_cast<std::uint32_t>(enterField(key, rank, {next, 0}).at);
        if (number != next)
            all.RemoveLast();
        all[number].typeName = nameOfPart;
        return number;
    }
    catch (...)
    {
        all.RemoveLast();
        throw;
    }
}

// Makes fields of what has followed the shape.
void CDataWriterBinary::leaveShape()
{
    if (shape == nullptr)
        return;
    fields.reserve(shape->GetSteps().size() + 1);
    for (const auto* done = shape->GetSteps().data(); done != step; ++done)
    {
        const std::size_t fixedSize = SizesByRank[done->rank];
        const bool isPlaced = fixedSize == 0 && StorageOf(done->rank) == 0;
        const SPlace place = isPlaced ? places[done->at] : SPlace{done->at, fixedSize};
        fields.push_back({done->text, place.at, place.size, done->key, done->rank});
    }
    stopFollowing();
}

void CDataWriterBinary::stopFollowing() noexcept
{
    if (shape != nullptr)
        --shape->followers;
    shape = nullptr;
    step = lastStep = nullptr;
    places.Clear();
}

// The field of a key and kind. A new one, and one of a value without parts, lies at the place.
SRecordField& CDataWriterBinary::enterField(const char* key, std::uint8_t rank, const SPlace& place)
{
    const std::uint32_t before = document.CountTexts();
    const CBinaryDocument::String& string = document.Intern(key);
    const auto findOrEnter = [&]
    {
        leaveShape();
        SRecordField* const known = string.value < before ? index.Find(fields, string.value, rank) : nullptr;
        return known != nullptr ? std::pair(known, true)
                                : std::pair(&fields.emplace_back(SRecordField{string.key.c_str(), place.at, place.size,
                                                                              string.value, rank}),
                                            false);
    };
    const auto [field, isKnown] = ObtainEntry(rank, findOrEnter);
    if (isKnown && StorageOf(rank) == 0)
        replaceBytes(*field, place);
    return *field;
}

// Gives a field the value that was appended last.
void CDataWriterBinary::replaceBytes(SRecordField& field, const SPlace& place)
{
    lost += field.size;
    if (place.size <= field.size)
    {
        lost -= place.size;
        std::memcpy(bytes.GetData() + field.at, bytes.GetData() + place.at, place.size);
        bytes.Truncate(place.at);
    }
    else
        field.at = place.at;
    field.size = place.size;
    if (lost > MinLost && lost > bytes.GetSize() / 2)
        dropLost();
}

// Drops what values have left behind that were replaced, if there is memory for the others.
void CDataWriterBinary::dropLost() noexcept
{
    CByteBuffer kept;
    try
    {
        for (const SRecordField& field : fields)
            if (StorageOf(field.rank) == 0)
                kept.Write(bytes.GetData() + field.at, field.size);
    }
    catch (const std::bad_alloc&)
    {
        return;
    }
    std::size_t end = 0;
    for (SRecordField& field : fields)
        if (StorageOf(field.rank) == 0)
            field.at = std::exchange(end, end + field.size);
    bytes = std::move(kept);
    lost = 0;
}

void CDataWriterBinary::Emit(COutput& output)
{
    if (shape != nullptr && step == lastStep)
        return emitImage(output);
    leaveShape();
    FieldOrder::Arrange(fields, order);
    if (typeName != NoTypeName)
        document.Learn(typeName, fields, order);
    emitFields(output);
}

// Records within the first part of a record may be of its type, and then they have a shape already.
void CDataWriterBinary::learnEarly() noexcept
{
    const std::size_t count = getParts<CDataWriterBinary>().GetSize() + getParts<CContainerWriterBinary>().GetSize();
    if (count != 1 || shape != nullptr || typeName == NoTypeName || document.FindShape(typeName) != nullptr)
        return;
    try
    {
        FieldOrder::Arrange(fields, order);
        document.Learn(typeName, fields, order);
    }
    catch (const std::bad_alloc&)
    {
        // it is learned when the record is complete
    }
}

void CDataWriterBinary::emitImage(COutput& output)
{
    const unsigned char* const image = bytes.GetData();
    std::size_t done = 0;
    for (const CRecordShape::SGap& gap : shape->GetGaps())
    {
        output.bytes.Write(image + done, gap.at - done);
        done = gap.at;
        emitValue(output, gap.rank, StorageOf(gap.rank) == 0 ? places[gap.value] : SPlace{gap.value, 0});
        output.Relieve();
    }
    output.bytes.Write(image + done, shape->GetImage().GetSize() - done);
}

void CDataWriterBinary::emitFields(COutput& output)
{
    const SSectionCounts counts = CountSections(fields);
    output.bytes.Write(counts.sections);
    std::size_t rankBefore = Ranks;
    for (const std::uint32_t position : order)
    {
        const SRecordField& field = fields[position];
        if (field.rank != std::exchange(rankBefore, field.rank))
            output.bytes.Write(TagsByRank[field.rank]).Write(counts.fields[field.rank]);
        output.bytes.Write(field.key);
        emitValue(output, field.rank, {field.at, field.size});
        output.Relieve();
    }
}

void CDataWriterBinary::emitValue(COutput& output, std::uint8_t rank, const SPlace& place)
{
    if (rank == RankOf<ISerializable>)
    {
        const auto& part = getParts<CDataWriterBinary>()[place.at];
        output.bytes.Write(part.typeName);
        part.writer->Emit(output);
    }
    else if (rank == RankOf<ISerializableContainer>)
        getParts<CContainerWriterBinary>()[place.at].writer->Emit(output);
    else
        output.WriteBytes(bytes.GetData() + place.at, place.size);
}

template <class Writer>
void CDataWriterBinary::giveBackParts() noexcept
{
    for (const SPart<Writer>& part : getParts<Writer>())
        document.GiveBack(part.writer);
    getParts<Writer>().Clear();
}

void CDataWriterBinary::Clear() noexcept
{
    stopFollowing();
    giveBackParts<CDataWriterBinary>();
    giveBackParts<CContainerWriterBinary>();
    bytes.Clear();
    fields.clear();
    index.Clear();
    lost = 0;
    typeName = NoTypeName;
}

void CContainerWriterBinary::fixTag(std::uint8_t tagOfElement)
{
    if (tag != NoTag && tag != tagOfElement)
        throw CException(__FILE__, __LINE__,
                         tagOfElement <= TagDate ? "Vellum::CContainerWriterBinary::write"
                                                 : "Vellum::CContainerWriterBinary::Write");
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

// A number, where there is more to do than to append it, or a text.
template <class T>
VELLUM_NOINLINE void CContainerWriterBinary::writeElement(const T& value)
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

void CContainerWriterBinary::writeValue(const IDateTime& value)
{
    fixTag(TagDate);
    const CbDateTime date(value); // the client's getters may write other elements
    append([&, image = ToImage(date)] { elements.Write(image.data(), image.size()); });
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
    const std::uint32_t typeName = document.Intern(value.GetTypeName()).value;
    const CTemporaryWriter<CDataWriterBinary> nested(document, typeName);
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
    tag = NoTag;
    count = 0;
    elements.Clear();
}

CWriterBinary::CWriterBinary(CbStreamWriteBinary& stream) : stream(stream) {}
CWriterBinary::CWriterBinary(const CWriterBinary& other) = default;
CWriterBinary::~CWriterBinary() = default;

namespace
{

template <class Writer, class Root>
void WriteDocument(CbStreamWriteBinary& stream, const Root& root, std::span<const std::string> texts = {})
{
    CBinaryDocument document;
    for (const std::string& text : texts)
        document.Intern(text.c_str());
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

void WriteKnown(CbStreamWriteBinary& stream, const ISerializable& root, std::span<const std::string> texts)
{
    WriteDocument<CDataWriterBinary>(stream, root, texts);
}

void WriteKnown(CbStreamWriteBinary& stream, const ISerializableContainer& root, std::span<const std::string> texts)
{
    WriteDocument<CContainerWriterBinary>(stream, root, texts);
}

} // namespace Vellum
