#include <cstring>
#include <map>
#include <strings.h>

#include "Model/Formats.h"
#include "Model/Values.h"

namespace Model
{

namespace
{

std::string ElementName(std::string typeName)
{
    for (std::size_t at = 0; (at = typeName.find("::", at)) != std::string::npos;)
        typeName.replace(at, 2, "-");
    return typeName;
}

std::string Escaped(const std::string& text)
{
    static const std::map<char, std::string> references = {{'&', "&amp;"}, {'>', "&gt;"},   {'<', "&lt;"},
                                                           {'%', "&#37;"}, {'\n', "&#10;"}, {'\r', "&#13;"}};
    std::string escaped;
    for (const char byte : text)
        escaped += references.contains(byte) ? references.at(byte) : std::string(1, byte);
    return escaped;
}

struct SXmlWriter
{
    std::string& out;

    static std::string Text(const std::string& value) { return Escaped(value); }
    static std::string Text(const std::wstring& value) { return Escaped(ToUtf8(value)); }
    static std::string Text(const SDate& value) { return ToText(value); }
    static std::string Text(char value) { return std::string(1, value); }
    template <class Number>
    static std::string Text(Number value)
    {
        return ToText(value, false);
    }

    void Write(const SNode& node, const std::string& indent) const
    {
        const auto writeItem = [&](const SItem& item)
        {
            const auto write = [&]<class T>(const T& value)
            {
                std::string name = node.isSequence ? "elt" : item.key;
                if constexpr (std::is_same_v<T, std::shared_ptr<const SNode>>)
                {
                    if (node.isSequence)
                        name = ElementName(value->typeName);
                    out += indent + '<' + name + ">\n";
                    Write(*value, indent + '\t');
                    out += indent + "</" + name + ">\n";
                }
                else if constexpr (std::is_same_v<T, SBlob>)
                    out += indent + '<' + name + "><![CDATA[\n" + ToBase64(value.bytes, true) + '\n' + indent +
                           "]]></" + name + ">\n";
                else
                    out += indent + '<' + name + '>' + Text(value) + "</" + name + ">\n";
            };
            std::visit(write, item.value);
        };
        RunClient(node, writeItem);
    }
};

} // namespace

SWritten WriteXml(const SNode& root)
{
    SWritten written;
    const std::string name = ElementName(root.typeName);
    written.document = root.isSequence ? "<?xml version=\"1.0\"?>\n" : "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
    written.document += '<' + name +
                        " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                        " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">\n";
    try
    {
        SXmlWriter{written.document}.Write(root, "\t");
        written.document += "</" + name + ">\n";
    }
    catch (...)
    {
        written.raised = "CException Vellum::CWriterXml::Write";
    }
    return written;
}

namespace
{

struct SXml;
using Element = std::shared_ptr<SXml>;

struct SXml
{
    std::string name;
    bool isDeclaration = false, isDocument = false;
    std::vector<Element> children;
    std::vector<std::string> texts, clears;
    std::vector<std::pair<std::string, Element>> entries; // in their order: what one is shown as, or a child
};

// One line for a tree: name(entries), with @ for an attribute, ' ' around a text, { } around a clear section with its
// opening tag in front, ? in front of a declaration, * for the node around several top-level elements.
std::string Show(const SXml& node)
{
    std::string shown = node.isDocument ? "*" : (node.isDeclaration ? "?" : "") + node.name;
    std::string separator = "(";
    for (const auto& [entry, child] : node.entries)
        shown += std::exchange(separator, " ") + (child != nullptr ? Show(*child) : entry);
    return shown + (node.entries.empty() ? "()" : ")");
}

bool IsSame(const std::string& a, const std::string& b)
{
    return a.size() == b.size() && ::strcasecmp(a.c_str(), b.c_str()) == 0;
}

class CXmlParser
{
public:
    explicit CXmlParser(const std::string& text) : text(UpToNul(text)) {}

    // Null for a text that is dropped.
    Element Parse()
    {
        auto document = std::make_shared<SXml>();
        document->isDocument = true;
        element(*document);
        if (Error > 1)
            return nullptr;
        const bool isFrame = document->children.size() == 1 && document->texts.empty() && document->clears.empty();
        return isFrame ? document->children[0] : document;
    }

    int Error = 0;
    std::size_t ErrorAt = 0;

private:
    // '<' '>' '=' and ' ' for a word, 'q' for a quoted one, '/' for the sign in front of an end tag's name, 'e' for the
    // end of an empty element, '?' for a declaration, '!' for a section, 0 for the end of the text.
    struct SToken
    {
        char kind;
        std::size_t start, length;
        std::string clearEnd, clearOpen;
    };
    static constexpr int MostLevels = 1024;

    static bool isSpace(char byte) { return byte != '\0' && std::strchr("\t\n\r ", byte) != nullptr; }
    char byteAt(std::size_t place) const { return place < text.size() ? text[place] : '\0'; }
    bool fail(int error, std::size_t place) { return (Error = error, ErrorAt = place, false); }
    bool endOfText(const SXml& node) { return !node.isDeclaration && !node.isDocument && fail(1, text.size()); }

    std::size_t step(std::size_t place) const
    {
        const auto byte = static_cast<unsigned char>(byteAt(place));
        const std::size_t size = byte == 0 ? 0 : byte < 0xC2 || byte > 0xF4 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
        return place + size <= text.size() ? place + size : place + 1;
    }

    SToken token()
    {
        while (isSpace(byteAt(at)))
            ++at;
        const std::size_t start = at;
        const char first = byteAt(start);
        if (first == '\0')
            return {'\0', start, 0, {}, {}};
        at = step(start);
        static const std::pair<std::string, std::string> clears[] = {
            {"<![CDATA[", "]]>"}, {"<PRE>", "</PRE>"}, {"<Script>", "</Script>"}, {"<!--", "-->"}, {"<!DOCTYPE", ">"}};
        for (const auto& [open, close] : clears)
            if (IsSame(text.substr(start, open.size()), open))
                return (at = start + open.size(), SToken{'!', start, open.size(), close, open});
        if (first == '"' || first == '\'')
        {
            while (byteAt(at) != first && byteAt(at) != '<' && byteAt(at) != '\0')
                at = step(at);
            if (byteAt(at) == first)
                return {'q', start, ++at - start, {}, {}};
            at = start + 1;
        }
        const auto sign = [&](char kind, std::size_t length) {
            return (at = start + length, SToken{kind, start, length, {}, {}});
        };
        if (first == '/' && byteAt(at) == '>')
            return sign('e', 2);
        if (first == '<')
            return byteAt(at) == '/' ? sign('/', 2) : byteAt(at) == '?' ? sign('?', 2) : sign('<', 1);
        if (first == '=' || first == '>')
            return sign(first == '=' ? '=' : '>', 1);
        const auto isEnd = [&](char byte)
        {
            return byte == '\0' || isSpace(byte) || std::strchr("<=>", byte) != nullptr ||
                   (byte == '/' && byteAt(at + 1) == '>');
        };
        while (!isEnd(byteAt(at)))
            at = step(at);
        const std::size_t length = at - start;
        if (isSpace(byteAt(at)))
            ++at;
        return {' ', start, length, {}, {}};
    }

    // The attributes. `isOpen` tells whether there is content behind the tag.
    bool tag(SXml& node, bool& isOpen)
    {
        const auto add = [&](const std::string& attribute) { node.entries.push_back({'@' + attribute, nullptr}); };
        const auto withoutMark = [&](const std::string& raw)
        { return node.isDeclaration && raw.ends_with('?') ? raw.substr(0, raw.size() - 1) : raw; };
        std::string name;
        char expected = 'n'; // a name, an equals sign or another name, a value
        for (;;)
        {
            const SToken found = token();
            if (found.kind == '\0')
                return endOfText(node);
            std::string raw = text.substr(found.start, found.length), decoded;
            if (expected != 'v' && (found.kind == '>' || found.kind == 'e'))
            {
                if (expected == '=' && !withoutMark(name).empty())
                    add(withoutMark(name));
                return (isOpen = found.kind == '>', true);
            }
            if (found.kind == ' ' && expected != 'v')
            {
                if (expected == '=')
                    add(name);
                name = raw;
                expected = '=';
            }
            else if (found.kind == '=' && expected == '=')
                expected = 'v';
            else if ((found.kind == ' ' || found.kind == 'q') && expected == 'v')
            {
                const std::size_t quote = found.kind == 'q' ? 1 : 0;
                raw = quote == 0 ? withoutMark(raw) : raw.substr(1, raw.size() - 2);
                if (!decode(raw, decoded, found.start + quote))
                    return false;
                add(name + '=' + UpToNul(decoded));
                expected = 'n';
            }
            else
                return fail(9, found.start);
        }
    }

    bool element(SXml& node)
    {
        bool isOpen = true;
        if (!node.isDocument && (!tag(node, isOpen) || !isOpen))
            return !isOpen;
        std::size_t pending = std::string::npos;
        for (;;)
        {
            const SToken found = token();
            const std::size_t from = std::exchange(pending, std::string::npos);
            if (found.kind == '\0')
                return endOfText(node);
            if (found.kind != '<' && found.kind != '?' && found.kind != '/' && found.kind != '!')
            {
                pending = from == std::string::npos ? found.start : from;
                continue;
            }
            if (from != std::string::npos)
            {
                std::string raw = text.substr(from, found.start - from), decoded;
                while (isSpace(raw.back()))
                    raw.pop_back();
                if (found.kind != '!' && !decode(raw, decoded, from))
                    return false;
                node.texts.push_back(UpToNul(found.kind == '!' ? raw : decoded));
                node.entries.push_back({"'" + node.texts.back() + "'", nullptr});
            }
            if (found.kind == '!')
            {
                const std::size_t end = text.find(found.clearEnd, at);
                if (end == std::string::npos)
                    return fail(8, found.start);
                node.clears.push_back(text.substr(at, end - at));
                node.entries.push_back({found.clearOpen + '{' + node.clears.back() + '}', nullptr});
                at = end + found.clearEnd.size();
            }
            else if (found.kind == '/')
                return endTag(node);
            else if (!child(node, found.kind == '?'))
                return false;
            else if (endTagAt != std::string::npos)
            {
                if (node.isDocument)
                    return fail(7, endTagAt);
                if (fits(node))
                    endTagAt = std::string::npos;
                return true;
            }
        }
    }

    bool child(SXml& node, bool isDeclaration)
    {
        const SToken name = token();
        if (name.kind != ' ')
            return fail(4, name.start);
        int& level = isDeclaration ? declarations : elements;
        if (++level > MostLevels)
            return fail(15, name.start);
        node.children.push_back(std::make_shared<SXml>());
        node.children.back()->name = text.substr(name.start, name.length);
        node.children.back()->isDeclaration = isDeclaration;
        node.entries.push_back({"", node.children.back()});
        const bool isDone = element(*node.children.back());
        --level;
        return isDone;
    }

    bool endTag(SXml& node)
    {
        const SToken name = token();
        if (name.kind != ' ')
            return fail(5, name.start);
        if (const SToken close = token(); close.kind != '>')
            return fail(5, close.start);
        endTagAt = name.start;
        if (!node.isDocument && fits(node))
            endTagAt = std::string::npos;
        else
            fail(1, endTagAt);
        return true;
    }

    bool fits(const SXml& node) const
    {
        const char behind = byteAt(endTagAt + node.name.size());
        return IsSame(text.substr(endTagAt, node.name.size()), node.name) &&
               (isSpace(behind) || (behind != '\0' && std::strchr("/<=>", behind) != nullptr));
    }

    bool decode(const std::string& raw, std::string& decoded, std::size_t start)
    {
        static const std::pair<std::string, char> entities[] = {
            {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
        for (std::size_t from = 0; from < raw.size();)
        {
            std::size_t size = 0;
            if (raw[from] != '&')
            {
                // A lead byte takes those behind it along, an ampersand too.
                const std::string rest = raw.substr(from);
                const auto byte = static_cast<unsigned char>(rest[0]);
                size = std::min<std::size_t>(rest.size(), byte < 0xC2 || byte > 0xF4 ? 1
                                                          : byte < 0xE0              ? 2
                                                          : byte < 0xF0              ? 3
                                                                                     : 4);
                decoded += rest.substr(0, size);
            }
            for (const auto& [entity, character] : entities)
                if (IsSame(raw.substr(from, entity.size()), entity))
                    (decoded += character, size = entity.size());
            if (size == 0 && raw.size() - from > 2 && raw[from + 1] == '#')
            {
                const bool isHexadecimal = raw[from + 2] == 'x' || raw[from + 2] == 'X';
                const std::size_t digits = from + (isHexadecimal ? 3 : 2), end = raw.find(';', digits);
                unsigned number = 0;
                for (std::size_t place = digits; end != std::string::npos && place < end; ++place)
                {
                    const auto digit =
                        std::string_view("0123456789abcdef")
                            .find(static_cast<char>(std::tolower(static_cast<unsigned char>(raw[place]))));
                    if (digit >= (isHexadecimal ? 16 : 10))
                        return fail(14, start + from);
                    number = number * (isHexadecimal ? 16 : 10) + static_cast<unsigned>(digit);
                }
                if (end != std::string::npos)
                    (decoded += static_cast<char>(number), size = end + 1 - from);
            }
            if (size == 0)
                return fail(14, start + from);
            from += size;
        }
        return true;
    }

    std::string text;
    std::size_t at = 0, endTagAt = std::string::npos;
    int elements = 0, declarations = 0;
};

class CXmlReader
{
public:
    explicit CXmlReader(const SXml* node) : children(node == nullptr ? std::vector<Element>() : node->children) {}

    std::uint32_t GetKeyCount() const { return static_cast<std::uint32_t>(children.size()); }
    const char* GetKey(std::uint32_t at) const { return children[at]->name.c_str(); }

    const SXml* Find(const std::string& key) const
    {
        for (const Element& child : children)
            if (IsSame(child->name, key))
                return child.get();
        return nullptr;
    }
    const SXml* Find(std::uint32_t at) const { return at < children.size() ? children[at].get() : nullptr; }

    template <class Name, class T>
    bool Read(const Name& name, T& value) const
    {
        const SXml* found = Find(name);
        return found != nullptr && convert(*found, std::is_same_v<Name, std::uint32_t>, value);
    }
    template <class Name, bool IsSequence>
    bool Read(const Name& name, CVisitor::SNested<IsSequence> value) const
    {
        const SXml* found = Find(name);
        if (found == nullptr)
            return false;
        CXmlReader reader(found);
        value.Visit(reader);
        return true;
    }
    template <class Name>
    std::pair<const char*, const char*> GetBlob(const Name& name)
    {
        const SXml* found = Find(name);
        std::string bytes;
        if (found != nullptr)
            bytes = trimmed(textOf(*found, std::is_same_v<Name, std::uint32_t>));
        if (bytes.empty())
            return {};
        const std::string& kept = blobs.emplace(found, FromBase64(bytes)).first->second;
        return {kept.data(), kept.data() + kept.size()};
    }

private:
    static std::string trimmed(const std::string& text)
    {
        const std::size_t first = text.find_first_not_of("\t\n\v\f\r ");
        return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of("\t\n\v\f\r ") + 1 - first);
    }

    static std::string textOf(const SXml& node, bool isElement)
    {
        if (isElement && node.name != "elt")
            throw SRaised{Exception, "Vellum::CContainerReaderXml::readValue"};
        const std::string text = !node.texts.empty() ? node.texts[0] : !node.clears.empty() ? node.clears[0] : "";
        return isElement ? text : trimmed(text);
    }

    template <class T>
    static bool convert(const SXml& node, bool isElement, T& value)
    {
        constexpr bool isExact = std::is_same_v<T, bool> || std::is_same_v<T, SDate>; // a field's first text alone
        const std::string first = node.texts.empty() ? "" : node.texts[0];
        const std::string text = isExact && !isElement ? first : textOf(node, isElement);
        if constexpr (std::is_same_v<T, bool>)
            value = text == "true" || (value && text != "false");
        else if constexpr (std::is_same_v<T, SDate>)
            value = ToDate(text, "CbDateTime::CbDateTime");
        else
            Convert(text, value);
        return !std::is_same_v<T, bool> || text == "true" || text == "false";
    }

    std::vector<Element> children;
    std::map<const SXml*, std::string> blobs;
};

} // namespace

std::string ShowXml(const std::string& document)
{
    CXmlParser parser(document);
    const Element tree = parser.Parse();
    return "error " + std::to_string(parser.Error) + " at " + std::to_string(parser.ErrorAt) + ": " +
           (tree == nullptr ? "-" : Show(*tree));
}

int ReadXml(const std::string& document, bool isSequence, CVisitor& visitor)
{
    CXmlParser parser(document);
    const Element tree = parser.Parse();
    CXmlReader reader(CXmlReader(tree.get()).Find(ElementName(visitor.GetTypeName())));
    visitor.Run([&] { isSequence ? visitor.VisitSequence(reader) : visitor.VisitObject(reader); });
    return parser.Error;
}

} // namespace Model
