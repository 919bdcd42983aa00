#include <algorithm>
#include <map>
#include <numeric>

#include "Model/Formats.h"
#include "Model/Values.h"

namespace Model
{

namespace
{

// By kind.
constexpr std::uint8_t Tags[Kinds] = {0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 1, 12, 13, 14, 15, 16, 17};

class CBinaryWriter
{
public:
    explicit CBinaryWriter(bool isOdd) : isOdd(isOdd) {}

    // Puts the bytes into `out` even if the client's Write raises: a field stays then as it is.
    void Write(const SNode& node, std::string& out, const std::string& front = {})
    {
        std::exception_ptr raised;
        const auto run = [&](const auto& writeItem)
        {
            try
            {
                RunClient(node, writeItem);
            }
            catch (...)
            {
                raised = std::current_exception();
            }
        };
        out = front + (node.isSequence ? sequence(run) : record(run));
        if (raised)
            std::rethrow_exception(raised);
    }

    std::string Strings() const
    {
        std::vector<std::uint64_t> hashes;
        for (const std::string& text : texts)
            hashes.push_back(HashOfName(text));
        std::string bytes = Size(texts.size() + (isOdd ? 2 : 0));
        if (isOdd)
            bytes += Counted("replaced") + Size(0) + Counted("unused") + Size(1u << 31);
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

    template <class Run>
    std::string record(const Run& run)
    {
        std::array<std::vector<std::pair<std::string, std::string>>, Kinds> sections; // keys and values
        const auto writeField = [&](const SItem& item)
        {
            const std::string key = index(item.key);
            auto& section = sections[KindOf(item.value)];
            auto entry = std::ranges::find(section, key, &std::pair<std::string, std::string>::first);
            if (entry == section.end() || isOdd)
                entry = section.insert(section.end(), {key, {}});
            entry->second = Encoded(item.value);
            if (const auto* part = std::get_if<Part>(&item.value))
            {
                const std::string type = index((*part)->typeName), front = (*part)->isSequence ? "" : type;
                Write(**part, entry->second, front);
            }
        };
        run(writeField);

        std::string out;
        std::uint8_t count = 0;
        for (std::size_t kind = 0; kind < Kinds; ++kind)
        {
            std::vector<std::uint64_t> hashes;
            for (const auto& [key, value] : sections[kind])
                hashes.push_back(HashOfBytes(key));
            if (hashes.empty())
                continue;
            ++count;
            out += Raw(Tags[kind]) + Size(hashes.size());
            for (const std::size_t place : TableOrder(hashes))
                out += sections[kind][place].first + sections[kind][place].second;
        }
        return Raw(count) + out;
    }

    template <class Run>
    std::string sequence(const Run& run)
    {
        std::size_t fixed = Kinds;
        std::vector<std::string> types, elements;
        const auto writeElement = [&](const SItem& item)
        {
            const std::size_t kind = KindOf(item.value);
            if (fixed != Kinds && fixed != kind)
                throw SRaised{Exception, kind < KindBlob ? "Vellum::CContainerWriterBinary::write"
                                                         : "Vellum::CContainerWriterBinary::Write"};
            fixed = kind;
            std::string bytes = Encoded(item.value);
            if (kind >= KindObject) // a part that fails leaves nothing
            {
                const SNode& part = *std::get<Part>(item.value);
                const std::string type = kind == KindObject ? index(part.typeName) : "";
                Write(part, bytes, type);
                types.push_back(type);
            }
            elements.push_back(bytes);
        };
        run(writeElement);

        std::string out = Raw(elements.empty() ? std::uint8_t{0} : Tags[fixed]) + Size(elements.size());
        if (fixed == KindObject && !elements.empty())
        {
            const bool isSame = std::ranges::count(types, types[0]) == std::ssize(types);
            types.resize(isSame ? 1 : types.size());
            out += Raw(isSame) + std::accumulate(types.begin(), types.end(), std::string());
        }
        for (const std::string& element : elements)
            out += element;
        return out;
    }

    bool isOdd;
    std::map<std::string, std::size_t> indices;
    std::vector<std::string> texts;
};

} // namespace

SWritten WriteBinary(const SNode& root, bool isOdd)
{
    CBinaryWriter writer(isOdd);
    SWritten written;
    try
    {
        std::string body;
        writer.Write(root, body);
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

// A document as a reader shows it: a tree again.
struct STreeReader
{
    const SNode& node;

    std::uint32_t GetKeyCount() const { return static_cast<std::uint32_t>(node.items.size()); }
    const char* GetKey(std::uint32_t at) const { return node.items[at].key.c_str(); }

    const Value* Find(const std::string& key, std::size_t kind) const
    {
        const Value* found = nullptr; // the last one
        for (const SItem& item : node.items)
            if (KindOf(item.value) == kind && item.key == key)
                found = &item.value;
        return found;
    }
    const Value* Find(std::uint32_t at, std::size_t kind) const
    {
        return at < node.items.size() && KindOf(node.items[at].value) == kind ? &node.items[at].value : nullptr;
    }

    template <class Name, class T>
    bool Read(const Name& name, T& value) const
    {
        const Value* found = Find(name, Value(value).index());
        return found != nullptr && (value = std::get<T>(*found), true);
    }
    template <class Name, bool IsSequence>
    bool Read(const Name& name, CVisitor::SNested<IsSequence> value) const
    {
        const Value* found = Find(name, IsSequence ? KindSequence : KindObject);
        if (found == nullptr)
            return false;
        STreeReader reader{*std::get<Part>(*found)};
        return (value.Visit(reader), true);
    }
    template <class Name>
    std::pair<const char*, const char*> GetBlob(const Name& name) const
    {
        const Value* found = Find(name, KindBlob);
        const std::string_view bytes = found == nullptr ? std::string_view() : std::get<SBlob>(*found).bytes;
        return bytes.empty() ? std::pair<const char*, const char*>()
                             : std::pair(bytes.data(), bytes.data() + bytes.size());
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
        Root = part(tag == Tags[KindSequence], 1);
    }

    Part Root;

private:
    static constexpr const char *InRecord = "Vellum::CDataReader::Read", *InSequence = "Vellum::CContainerReader::Read";
    static constexpr int MostLevels = 1024;

    std::string taken(std::size_t size)
    {
        if (size > left.size())
            throw SRaised{StreamException, "CbStreamReadBinary::Read"};
        const std::string bytes(left.substr(0, size));
        left.remove_prefix(size);
        return bytes;
    }
    template <class Number>
    Number take()
    {
        return FromRaw<Number>(taken(sizeof(Number)));
    }

    void checkVersion()
    {
        if (take<std::uint32_t>() != 0)
            throw SRaised{VersionException, "CbStreamRead::ReadAndCompareVersion"};
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
            throw SRaised{StreamException, "CbStreamReadBinary::Read"};
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
    Value value(const char* blobFunction, int level, bool isSequence)
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
        else if constexpr (std::is_same_v<T, Part>)
            return part(isSequence, level + 1);
        const auto size = take<std::uint32_t>();
        if (size > left.size())
            throw SRaised{Exception, blobFunction};
        return SBlob{taken(size)};
    }
    Value value(std::size_t kind, const char* blobFunction, int level)
    {
        return WithKind(kind, [&]<class T>() { return value<T>(blobFunction, level, kind == KindSequence); });
    }

    std::size_t kindOf(std::uint8_t tag, const char* function)
    {
        const auto found = std::ranges::find(Tags, tag);
        if (found == std::end(Tags))
            throw SRaised{Exception, function};
        return static_cast<std::size_t>(found - Tags);
    }

    Part part(bool isSequence, int level)
    {
        if (level > MostLevels)
            throw SRaised{Exception, isSequence ? InSequence : InRecord};
        auto node = std::make_shared<SNode>();
        node->isSequence = isSequence;
        isSequence ? sequence(*node, level) : record(*node, level);
        return node;
    }

    void record(SNode& node, int level)
    {
        for (auto sections = take<std::uint8_t>(); sections > 0; --sections)
        {
            const std::size_t kind = kindOf(take<std::uint8_t>(), InRecord);
            for (auto count = take<std::uint32_t>(); count > 0; --count)
            {
                const std::string key = resolve(InRecord);
                if (kind == KindObject)
                    resolve(InRecord);
                node.items.push_back({key, value(kind, "Vellum::CDataReader::readBlobs", level)});
            }
        }
    }

    void sequence(SNode& node, int level)
    {
        const auto tag = take<std::uint8_t>();
        const auto count = take<std::uint32_t>();
        if (count == 0)
            return;
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
            node.items.push_back({"", value(kind, InSequence, level)});
        }
    }

    std::string_view left;
    std::map<std::uint32_t, std::string> texts;
};

} // namespace

void ReadBinary(const std::string& document, bool isSequence, CVisitor& visitor)
{
    const CBinaryReader parsed(document);
    if (parsed.Root->isSequence != isSequence)
        throw SRaised{Exception, "Vellum::CReaderBinary::Read"};
    STreeReader reader{*parsed.Root};
    isSequence ? visitor.VisitSequence(reader) : visitor.VisitObject(reader);
}

} // namespace Model
