#include <algorithm>
#include <bit>
#include <cstring>
#include <map>

#include "Model/Formats.h"
#include "Model/Values.h"

namespace Model
{

namespace
{

// By kind.
constexpr std::uint8_t Tags[Kinds] = {0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 1, 12, 13, 14, 15, 16, 17};

template <class Number>
std::string Raw(Number number)
{
    return std::string(reinterpret_cast<const char*>(&number), sizeof number);
}

std::string Size(std::size_t size) { return Raw(static_cast<std::uint32_t>(size)); }

std::string Counted(const std::string& bytes) { return Size(bytes.size()) + bytes; }

// What a value without parts is stored as.
template <class Number>
std::string Encoded(const Number& number)
{
    return Raw(number);
}
template <>
std::string Encoded(const std::string& text)
{
    return Counted(UpToNul(text));
}
template <>
std::string Encoded(const std::wstring& text)
{
    const std::vector<std::uint16_t> units = ToUnits(text);
    const std::size_t size = units.size();
    std::string bytes = "\xFF\xFE\xFF";
    bytes += size < 0xFF     ? Raw(static_cast<std::uint8_t>(size))
             : size < 0xFFFE ? "\xFF" + Raw(static_cast<std::uint16_t>(size))
                             : "\xFF\xFF\xFF" + Size(size);
    for (const std::uint16_t unit : units)
        bytes += Raw(unit);
    return bytes;
}
template <>
std::string Encoded(const SDate& date)
{
    return Size(0) + Raw(ToTicks(date));
}
template <>
std::string Encoded(const SBlob& blob)
{
    return Counted(blob.bytes);
}
template <>
std::string Encoded(const std::shared_ptr<const SNode>&)
{
    return {};
}

class CBinaryWriter
{
public:
    std::string Record(const SNode& node);
    std::string Sequence(const SNode& node);

    std::string Strings() const
    {
        std::vector<std::uint64_t> hashes;
        for (const std::string& text : texts)
            hashes.push_back(HashOfName(text));
        std::string bytes = Size(texts.size());
        for (const std::size_t index : TableOrder(hashes))
            bytes += Counted(texts[index]) + Size(index);
        return bytes;
    }

private:
    std::string index(const std::string& text)
    {
        const auto [found, isNew] = indices.emplace(text, texts.size());
        if (isNew)
            texts.push_back(text);
        return Size(found->second);
    }

    // Puts the bytes into `out` even if the client's Write raises: a field stays then as it is.
    void nested(const SNode& node, std::string& out);
    void writeRecord(const SNode& node, std::string& out);
    void writeSequence(const SNode& node, std::string& out);

    std::map<std::string, std::size_t> indices;
    std::vector<std::string> texts;
};

template <class Run, class Finish>
void RunAndFinish(const Run& run, const Finish& finish)
{
    try
    {
        run();
    }
    catch (...)
    {
        finish();
        throw;
    }
    finish();
}

void CBinaryWriter::nested(const SNode& node, std::string& out)
{
    node.isSequence ? writeSequence(node, out) : writeRecord(node, out);
}

void CBinaryWriter::writeRecord(const SNode& node, std::string& out)
{
    struct SEntry
    {
        std::string key, value;
    };
    std::array<std::vector<SEntry>, Kinds> sections;
    const auto writeField = [&](const SItem& item)
    {
        const std::string key = index(item.key);
        std::vector<SEntry>& section = sections[KindOf(item.value)];
        auto entry = std::find_if(section.begin(), section.end(), [&](const SEntry& each) { return each.key == key; });
        if (entry == section.end())
            entry = section.insert(section.end(), {key, {}});
        entry->value = std::visit([](const auto& value) { return Encoded(value); }, item.value);
        if (const auto* part = std::get_if<std::shared_ptr<const SNode>>(&item.value))
        {
            const std::string type = index((*part)->typeName);
            std::string bytes;
            RunAndFinish([&] { nested(**part, bytes); },
                         [&] { entry->value = (*part)->isSequence ? bytes : type + bytes; });
        }
    };
    RunAndFinish([&] { RunClient(node, writeField); },
                 [&]
                 {
                     const auto isEmpty = [](const std::vector<SEntry>& section) { return section.empty(); };
                     out = Raw(static_cast<std::uint8_t>(Kinds - std::ranges::count_if(sections, isEmpty)));
                     for (std::size_t kind = 0; kind < Kinds; ++kind)
                     {
                         std::vector<std::uint64_t> hashes;
                         for (const SEntry& entry : sections[kind])
                             hashes.push_back(HashOfBytes(entry.key));
                         if (!hashes.empty())
                             out += Raw(Tags[kind]) + Size(hashes.size());
                         for (const std::size_t place : TableOrder(hashes))
                             out += sections[kind][place].key + sections[kind][place].value;
                     }
                 });
}

void CBinaryWriter::writeSequence(const SNode& node, std::string& out)
{
    std::size_t fixed = Kinds, count = 0;
    std::vector<std::string> types;
    std::string elements;
    const auto writeElement = [&](const SItem& item)
    {
        const std::size_t kind = KindOf(item.value);
        if (fixed != Kinds && fixed != kind)
            throw SRaised{Exception, kind < KindBlob ? "Vellum::CContainerWriterBinary::write"
                                                     : "Vellum::CContainerWriterBinary::Write"};
        fixed = kind;
        std::string bytes = std::visit([](const auto& value) { return Encoded(value); }, item.value);
        if (kind >= KindObject) // a part that fails leaves nothing
        {
            const SNode& part = *std::get<std::shared_ptr<const SNode>>(item.value);
            const std::string type = kind == KindObject ? index(part.typeName) : "";
            nested(part, bytes);
            if (kind == KindObject)
                types.push_back(type);
            bytes = type + bytes;
        }
        elements += bytes;
        ++count;
    };
    RunAndFinish([&] { RunClient(node, writeElement); },
                 [&]
                 {
                     out = Raw(count == 0 ? std::uint8_t{0} : Tags[fixed]) + Size(count);
                     if (!types.empty())
                     {
                         const bool isSame = std::ranges::count(types, types[0]) == static_cast<std::ptrdiff_t>(count);
                         out += Raw(isSame);
                         for (std::size_t i = 0; i < (isSame ? 1 : count); ++i)
                             out += types[i];
                     }
                     out += elements;
                 });
}

std::string CBinaryWriter::Record(const SNode& node)
{
    std::string bytes;
    writeRecord(node, bytes);
    return bytes;
}

std::string CBinaryWriter::Sequence(const SNode& node)
{
    std::string bytes;
    writeSequence(node, bytes);
    return bytes;
}

} // namespace

SWritten WriteBinary(const SNode& root)
{
    CBinaryWriter writer;
    SWritten written;
    try
    {
        const std::string body = root.isSequence ? writer.Sequence(root) : writer.Record(root);
        written.document = Size(0) + Raw(Tags[root.isSequence ? KindSequence : KindObject]) + writer.Strings() + body;
    }
    catch (...)
    {
        written.raised = ShowRaised();
    }
    return written;
}

namespace
{

struct SPart;

// Every value of a document is one of these; parts are objects and sequences.
using Stored = std::variant<bool, unsigned char, signed char, std::uint16_t, std::int16_t, std::uint32_t, std::int32_t,
                            std::uint64_t, std::int64_t, float, double, char, std::string, std::wstring, SDate, SBlob,
                            std::shared_ptr<SPart>>;

struct SStored
{
    std::string key;
    std::size_t kind;
    Stored value;
};

struct SPart
{
    std::vector<SStored> values;

    std::uint32_t GetKeyCount() const { return static_cast<std::uint32_t>(values.size()); }
    const char* GetKey(std::uint32_t at) const { return values[at].key.c_str(); }

    const Stored* Find(const std::string& key, std::size_t kind) const
    {
        const Stored* found = nullptr; // the last one
        for (const SStored& each : values)
            if (each.kind == kind && each.key == key)
                found = &each.value;
        return found;
    }
    const Stored* Find(std::uint32_t at, std::size_t kind) const
    {
        return at < values.size() && values[at].kind == kind ? &values[at].value : nullptr;
    }

    template <class Name, class T>
    bool Read(const Name& name, T& value) const
    {
        const Stored* found = Find(name, Value(value).index());
        if (found != nullptr)
            value = std::get<T>(*found);
        return found != nullptr;
    }
    template <class Name, bool IsSequence>
    bool Read(const Name& name, CVisitor::SNested<IsSequence> value) const
    {
        const Stored* found = Find(name, IsSequence ? KindSequence : KindObject);
        if (found != nullptr)
            value.Visit(*std::get<std::shared_ptr<SPart>>(*found));
        return found != nullptr;
    }
    template <class Name>
    std::pair<const char*, const char*> GetBlob(const Name& name) const
    {
        const Stored* found = Find(name, KindBlob);
        if (found == nullptr || std::get<SBlob>(*found).bytes.empty())
            return {};
        const std::string& bytes = std::get<SBlob>(*found).bytes;
        return {bytes.data(), bytes.data() + bytes.size()};
    }
};

class CBinaryReader
{
public:
    explicit CBinaryReader(const std::string& document) : left(document)
    {
        checkVersion();
        const auto tag = take<std::uint8_t>();
        for (auto count = take<std::uint32_t>(); count > 0; --count)
        {
            const std::string text = UpToNul(taken(take<std::uint32_t>()));
            texts[take<std::uint32_t>()] = text;
        }
        if (tag != Tags[KindObject] && tag != Tags[KindSequence])
            throw SRaised{Exception, "Vellum::CReaderBinary::CReaderBinary"};
        isSequence = tag == Tags[KindSequence];
        root = isSequence ? sequence(1) : record(1);
    }

    std::shared_ptr<SPart> root;
    bool isSequence = false;

private:
    static constexpr const char *InRecord = "Vellum::CDataReader::Read", *InSequence = "Vellum::CContainerReader::Read";
    static constexpr int MostLevels = 1024;

    std::string taken(std::size_t size)
    {
        if (size > left.size())
            throw SRaised{"CbExceptionStream", "CbStreamReadBinary::Read"};
        const std::string bytes(left.substr(0, size));
        left.remove_prefix(size);
        return bytes;
    }
    template <class Number>
    Number take()
    {
        Number number;
        std::memcpy(&number, taken(sizeof number).data(), sizeof number);
        return number;
    }

    void checkVersion()
    {
        if (take<std::uint32_t>() != 0)
            throw SRaised{"CbExceptionWrongFileVersion", "CbStreamRead::ReadAndCompareVersion"};
    }

    std::string resolve(const char* function)
    {
        const auto found = texts.find(take<std::uint32_t>());
        if (found == texts.end())
            throw SRaised{Exception, function};
        return found->second;
    }

    std::wstring wideText()
    {
        if (taken(3) != "\xFF\xFE\xFF")
            throw SRaised{"CbExceptionStream", "CbStreamReadBinary::Read"};
        std::uint64_t size = take<std::uint8_t>();
        if (size == 0xFF)
            size = take<std::uint16_t>();
        if (size == 0xFFFF)
            size = take<std::uint32_t>();
        if (size == 0xFFFFFFFF)
            size = take<std::uint64_t>();
        std::wstring text;
        for (; size > 0; --size)
            text += static_cast<wchar_t>(take<std::uint16_t>());
        return text;
    }

    template <class T>
    Stored value(const char* function)
    {
        if constexpr (std::is_same_v<T, bool>)
            return take<std::uint8_t>() != 0;
        else if constexpr (std::is_arithmetic_v<T>)
            return take<T>();
        else if constexpr (std::is_same_v<T, std::string>)
            return taken(take<std::uint32_t>());
        else if constexpr (std::is_same_v<T, std::wstring>)
            return wideText();
        else if constexpr (std::is_same_v<T, SDate>)
            return (checkVersion(), FromTicks(take<std::uint64_t>()));
        else
        {
            const auto size = take<std::uint32_t>();
            if (size > left.size())
                throw SRaised{Exception, function};
            return SBlob{taken(size)};
        }
    }
    Stored value(std::size_t kind, const char* blobFunction)
    {
        return [&]<std::size_t... Each>(std::index_sequence<Each...>)
        {
            Stored stored;
            ((kind == Each ? void(stored = value<std::variant_alternative_t<Each, Value>>(blobFunction)) : void()),
             ...);
            return stored;
        }
        (std::make_index_sequence<KindObject>());
    }

    std::size_t kindOf(std::uint8_t tag, const char* function)
    {
        const auto found = std::find(std::begin(Tags), std::end(Tags), tag);
        if (found == std::end(Tags))
            throw SRaised{Exception, function};
        return static_cast<std::size_t>(found - std::begin(Tags));
    }

    std::shared_ptr<SPart> record(int level)
    {
        if (level > MostLevels)
            throw SRaised{Exception, InRecord};
        auto part = std::make_shared<SPart>();
        for (auto sections = take<std::uint8_t>(); sections > 0; --sections)
        {
            const std::size_t kind = kindOf(take<std::uint8_t>(), InRecord);
            for (auto count = take<std::uint32_t>(); count > 0; --count)
            {
                const std::string key = resolve(InRecord);
                if (kind == KindObject)
                    resolve(InRecord);
                part->values.push_back({key, kind,
                                        kind == KindObject     ? record(level + 1)
                                        : kind == KindSequence ? sequence(level + 1)
                                                               : value(kind, "Vellum::CDataReader::readBlobs")});
            }
        }
        return part;
    }

    std::shared_ptr<SPart> sequence(int level)
    {
        if (level > MostLevels)
            throw SRaised{Exception, InSequence};
        auto part = std::make_shared<SPart>();
        const auto tag = take<std::uint8_t>();
        const auto count = take<std::uint32_t>();
        if (count == 0)
            return part;
        const std::size_t kind = kindOf(tag, InSequence);
        static constexpr std::uint64_t sizes[] = {1, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 1};
        if (kind <= KindChar && count * sizes[kind] > 0xFFFFFFFF)
            throw SRaised{Exception, InSequence};
        if (kind == KindObject)
            for (std::uint32_t types = take<std::uint8_t>() != 0 ? 1 : count; types > 0; --types)
                resolve(InSequence);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            if (kind == KindObject)
                take<std::uint32_t>(); // the type, whatever it says
            part->values.push_back({{},
                                    kind,
                                    kind == KindObject     ? record(level + 1)
                                    : kind == KindSequence ? sequence(level + 1)
                                                           : value(kind, InSequence)});
        }
        return part;
    }

    std::string_view left;
    std::map<std::uint32_t, std::string> texts;
};

} // namespace

void ReadBinary(const std::string& document, bool isSequence, CVisitor& visitor)
{
    const CBinaryReader reader(document);
    if (reader.isSequence != isSequence)
        throw SRaised{Exception, "Vellum::CReaderBinary::Read"};
    isSequence ? visitor.VisitSequence(*reader.root) : visitor.VisitObject(*reader.root);
}

} // namespace Model
