#include <map>

#include "Model/Formats.h"
#include "Model/Values.h"

namespace Model
{

namespace
{

std::string Quoted(const std::string& text)
{
    static const std::map<char, char> escapes = {{'\b', 'b'}, {'\t', 't'}, {'\n', 'n'}, {'\f', 'f'},
                                                 {'\r', 'r'}, {'"', '"'},  {'\\', '\\'}};
    std::string quoted = "\"";
    for (const char byte : UpToNul(text))
        quoted += escapes.contains(byte) ? std::string("\\") + escapes.at(byte) : std::string(1, byte);
    return quoted + '"';
}

struct SJsonWriter
{
    std::string& out;
    bool showPoint;

    std::string Text(const std::string& value) const { return Quoted(value); }
    std::string Text(const std::wstring& value) const { return Quoted(ToUtf8(value)); }
    std::string Text(const SDate& value) const { return Quoted(ToText(value)); }
    std::string Text(const SBlob& value) const { return Quoted(ToBase64(value.bytes, false)); }
    std::string Text(char value) const
    {
        const std::string escape = value == '"' || value == '\\' ? "\\" : "";
        return '"' + escape + UpToNul(std::string(1, value)) + '"';
    }
    template <class Number>
    std::string Text(Number value) const
    {
        return ToText(value, showPoint);
    }

    void Write(const SNode& node, const std::string& outer) const
    {
        const std::string inner = outer + '\t';
        bool isFirst = true;
        out += node.isSequence ? '[' : '{';
        const auto writeItem = [&](const SItem& item)
        {
            out += isFirst ? "\t" : ",\n" + inner;
            isFirst = false;
            if (!node.isSequence)
                out += '"' + item.key + "\":";
            const auto write = [&]<class T>(const T& value)
            {
                if constexpr (std::is_same_v<T, std::shared_ptr<const SNode>>)
                {
                    out += node.isSequence ? "" : '\n' + inner;
                    Write(*value, inner);
                }
                else
                    out += Text(value);
            };
            std::visit(write, item.value);
        };
        RunClient(node, writeItem);
        out += '\n' + outer + (node.isSequence ? ']' : '}');
    }
};

} // namespace

SWritten WriteJson(const SNode& root, bool showPoint)
{
    SWritten written;
    try
    {
        SJsonWriter{written.document, showPoint}.Write(root, "");
        written.document += '\n';
    }
    catch (...)
    {
        written.raised = "CException Vellum::CWriterJson::Write";
    }
    return written;
}

namespace
{

struct SJson;
using Element = std::shared_ptr<const SJson>; // null for the word null

struct SJson
{
    enum
    {
        Text,
        Object,
        Array
    } kind = Text;
    std::string text;
    std::vector<std::pair<std::string, Element>> members; // in the order of their first insertion
    std::vector<Element> elements;
};

class CJsonParser
{
public:
    explicit CJsonParser(const std::string& text) : text(UpToNul(text)) {}

    Element Root(bool isSequence)
    {
        auto root = std::make_shared<SJson>();
        root->kind = isSequence ? SJson::Array : SJson::Object;
        if (!(isSequence ? text.empty() : text == "null"))
            isSequence ? array(*root) : object(*root);
        return root;
    }

private:
    static constexpr int MostLevels = 1024;

    [[noreturn]] static void fail(const char* function) { throw SRaised{Exception, function}; }

    static bool isSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

    char next() const { return at < text.size() ? text[at] : '\0'; }

    char skipSpace()
    {
        while (isSpace(next()))
            ++at;
        if (next() == '\0')
            fail("SkipEmptyChars");
        return next();
    }

    std::string string()
    {
        std::string raw;
        for (++at; next() != '"'; raw += text[at++])
        {
            if (next() == '\\')
                raw += text[at++];
            if (next() == '\0')
                fail("Vellum::ParseString");
        }
        ++at;
        return raw;
    }

    Element value(char terminator)
    {
        auto element = std::make_shared<SJson>();
        if (next() == '"')
            element->text = string();
        else if (next() == '{')
            object(*element);
        else if (next() == '[')
            array(*element);
        else
        {
            for (; next() != ',' && next() != terminator && !isSpace(next()); ++at)
                if (next() == '\0')
                    fail("ParseValue");
                else
                    element->text += next();
            skipSpace();
            if (element->text == "null")
                return nullptr;
        }
        skipSpace();
        return element;
    }

    void open(SJson& element, bool isArray)
    {
        element.kind = isArray ? SJson::Array : SJson::Object;
        if (skipSpace() != (isArray ? '[' : '{') || ++levels > MostLevels)
            fail(isArray ? "Vellum::ParseArray" : "Vellum::ParseObject");
        ++at;
    }

    void object(SJson& element)
    {
        open(element, false);
        while (skipSpace() != '}')
        {
            if (next() != '"')
                fail("Vellum::ParseObject");
            const std::string key = string();
            if (skipSpace() != ':')
                fail("Vellum::ParseObject");
            ++at;
            skipSpace();
            const Element member = value('}');
            if (member != nullptr)
                set(element.members, key, member);
            if (next() == ',')
                ++at;
        }
        ++at;
        --levels;
    }

    static void set(std::vector<std::pair<std::string, Element>>& members, const std::string& key, Element member)
    {
        for (auto& [name, present] : members)
            if (name == key)
            {
                present = std::move(member);
                return;
            }
        members.emplace_back(key, std::move(member));
    }

    void array(SJson& element)
    {
        open(element, true);
        if (skipSpace() == ',')
            fail("Vellum::ParseArray");
        while (next() != ']')
        {
            element.elements.push_back(value(']'));
            if (next() != ',')
                continue;
            ++at;
            if (skipSpace() == ']')
                fail("Vellum::ParseArray");
        }
        ++at;
        --levels;
    }

    std::string text;
    std::size_t at = 0;
    int levels = 0;
};

std::string Unescaped(const std::string& raw)
{
    static const std::map<char, std::uint32_t> letters = {{'a', 7},  {'b', 8}, {'f', 12}, {'n', 10},
                                                          {'r', 13}, {'t', 9}, {'v', 11}};
    std::string text;
    for (std::size_t at = 0; at < raw.size();)
    {
        if (raw[at] != '\\' || at + 1 == raw.size()) // a word may end with one
        {
            text += raw[at++];
            continue;
        }
        const char letter = raw[at + 1];
        at += 2;
        const std::size_t most = letter == 'x' ? 2 : letter == 'u' ? 4 : letter == 'U' ? 8 : 0;
        const std::size_t end =
            std::min(raw.find_first_not_of("0123456789abcdefABCDEF", at), std::min(at + most, raw.size()));
        std::uint32_t codePoint = letters.contains(letter)
                                      ? letters.at(letter)
                                      : static_cast<std::uint32_t>(static_cast<signed char>(letter));
        if (end > at)
            codePoint = static_cast<std::uint32_t>(std::stoul(raw.substr(at, end - at), nullptr, 16));
        if (codePoint <= 0x10FFFF)
            AppendCodePoint(text, codePoint);
        at = std::max(at, end);
    }
    return text;
}

class CJsonReader
{
public:
    explicit CJsonReader(const SJson& json) : json(json)
    {
        std::vector<std::uint64_t> hashes;
        for (const auto& [key, member] : json.members)
            hashes.push_back(HashOfBytes(key));
        order = TableOrder(hashes);
    }

    std::uint32_t GetKeyCount() const { return static_cast<std::uint32_t>(order.size()); }
    const char* GetKey(std::uint32_t at) const { return json.members[order[at]].first.c_str(); }

    template <class Name, class T>
    bool Read(const Name& name, T& value) const
    {
        const SJson* element = find(name);
        return element != nullptr && element->kind == SJson::Text && convert(element->text, value);
    }
    template <class Name, bool IsSequence>
    bool Read(const Name& name, CVisitor::SNested<IsSequence> value) const
    {
        const SJson* element = find(name);
        if (element == nullptr || element->kind != (IsSequence ? SJson::Array : SJson::Object))
            return false;
        CJsonReader reader(*element);
        value.Visit(reader);
        return true;
    }
    template <class Name>
    std::pair<const char*, const char*> GetBlob(const Name& name)
    {
        const SJson* element = find(name);
        if (element == nullptr || element->kind != SJson::Text)
            return {};
        const std::string& bytes = blobs.emplace(element, FromBase64(element->text)).first->second;
        return {bytes.data(), bytes.data() + bytes.size()};
    }

private:
    const SJson* find(const std::string& key) const
    {
        for (const auto& [name, member] : json.members)
            if (name == key)
                return member.get();
        return nullptr;
    }
    const SJson* find(std::uint32_t at) const { return at < json.elements.size() ? json.elements[at].get() : nullptr; }

    template <class T>
    static bool convert(const std::string& text, T& value)
    {
        if constexpr (std::is_same_v<T, bool>)
            return (value = text == "true") || text == "false";
        else if constexpr (std::is_same_v<T, SDate>)
            value = ToDate(text, "CbDateTime::operator =");
        else if constexpr (std::is_class_v<T>)
            Convert(Unescaped(text), value);
        else // the writer writes a quote as two bytes
            Convert(std::is_same_v<T, char> && text == "\\\"" ? "\"" : text, value);
        return true;
    }

    const SJson& json;
    std::vector<std::size_t> order;
    std::map<const SJson*, std::string> blobs;
};

} // namespace

void ReadJson(const std::string& document, bool isSequence, CVisitor& visitor)
{
    const Element root = CJsonParser(document).Root(isSequence);
    CJsonReader reader(*root);
    isSequence ? visitor.VisitSequence(reader) : visitor.VisitObject(reader);
}

} // namespace Model
