#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "Vellum/CReaderXml.h"

#include "Vellum/src/PathText.h"
#include "Vellum/src/SXmlName.h"
#include "Vellum/src/TextPosition.h"
#include "Vellum/src/XmlNames.h"
#include "Vellum/src/XmlParser.h"

// The parser tells what is wrong by a number and a place. What was open there is found by going through the tokens once
// more, which costs nothing as long as nothing is wrong.

namespace Vellum
{
namespace
{

// An element that is open.
struct SOpenElement
{
    std::string_view name;
    const char* place;                           // of its name
    std::size_t index = 0;                       // among the children of the element around
    bool isRepeated = false;                     // whether another one of that name was there before
    std::size_t children = 0;                    // so far
    std::vector<std::string_view> names = {};    // of them, each once, up to MaxNames
    static constexpr std::size_t MaxNames = 256; // beyond it a path may name an element that it could number
};

// CXmlOutline: which elements are open at a place of a text, as the parser sees it.
class CXmlOutline
{
public:
    // Goes up to `stop`, or to the end.
    CXmlOutline(const char* text, const char* stop);

    // From the top on.
    const std::vector<SOpenElement>& GetOpen() const { return open; }

    // Of those below the root: the keys, or the indices, where elements are called `elt` or something that repeats.
    std::string GetPath() const;

    // The first element of all; null if there is none.
    const char* GetFirst() const { return first; }

private:
    void take(const SXmlToken& token);
    void takeTag(bool isDeclaration);
    void takeEndTag();
    void enter(const SXmlToken& name);
    SXmlToken next();

    CXmlNode memory = CXmlNode::MakeDocument(); // which no token needs
    SXmlParseContext context;
    const char* stop;
    bool isOver = false;
    const char* first = nullptr;
    std::vector<SOpenElement> open;
};

CXmlOutline::CXmlOutline(const char* text, const char* stop) : context(text, memory.GetMemory()), stop(stop)
{
    for (SXmlToken token = next(); !isOver; token = next())
        take(token);
}

// Nothing counts that begins at the place or behind it.
SXmlToken CXmlOutline::next()
{
    const SXmlToken token = NextXmlToken(context);
    isOver = isOver || token.kind == TokenEnd || token.start >= stop;
    return token;
}

void CXmlOutline::take(const SXmlToken& token)
{
    if (token.kind == TokenClear)
    {
        const char* const close = std::strstr(token.start + token.length, token.clearKind->closeTag);
        isOver = close == nullptr;
        context.at = isOver ? context.end : close + std::strlen(token.clearKind->closeTag);
    }
    else if (token.kind == TokenEndOpen)
        takeEndTag();
    else if (token.kind == TokenOpen || token.kind == TokenDeclaration)
        takeTag(token.kind == TokenDeclaration);
}

// Declarations have no end, and nothing is in them that counts.
void CXmlOutline::takeTag(bool isDeclaration)
{
    const SXmlToken name = next();
    if (isOver)
        return;
    if (!isDeclaration)
        enter(name);
    SXmlToken token = next();
    while (!isOver && token.kind != TokenClose && token.kind != TokenEmptyClose)
        token = next();
    if (!isOver && token.kind == TokenEmptyClose && !isDeclaration)
        open.pop_back();
}

void CXmlOutline::enter(const SXmlToken& token)
{
    SOpenElement element{std::string_view(token.start, static_cast<std::size_t>(token.length)), token.start};
    if (first == nullptr)
        first = token.start;
    if (!open.empty())
    {
        SOpenElement& around = open.back();
        element.index = around.children++;
        element.isRepeated = std::ranges::any_of(around.names, [&](std::string_view name)
                                                 { return AreSameXmlNames(name, element.name); });
        if (!element.isRepeated && around.names.size() < SOpenElement::MaxNames)
            around.names.push_back(element.name);
    }
    open.push_back(std::move(element));
}

// Closes the innermost element of that name and what is open in it.
void CXmlOutline::takeEndTag()
{
    const SXmlToken name = next();
    if (isOver)
        return;
    const std::string_view closed(name.start, static_cast<std::size_t>(name.length));
    const auto found = std::find_if(open.rbegin(), open.rend(),
                                    [&](const SOpenElement& element) { return AreSameXmlNames(element.name, closed); });
    if (found != open.rend())
        open.erase(found.base() - 1, open.end());
}

std::string CXmlOutline::GetPath() const
{
    std::string path;
    for (std::size_t level = 1; level < open.size(); ++level)
        if (open[level].isRepeated || open[level].name == SequenceElementName)
            AppendIndex(path, open[level].index);
        else
            AppendKey(path, open[level].name);
    return path;
}

std::string Quote(std::string_view text) { return '"' + std::string(text) + '"'; }

const char* DescribeExpected(std::int32_t error)
{
    switch (error)
    {
    case XmlNoElementName:
        return "the name of an element";
    case XmlBadEndTag:
        return "a name and \">\" in the end tag";
    case XmlStrayEndTag:
        return "the end tag of an open element";
    case XmlUnexpectedToken:
        return "an attribute or the end of the tag";
    default:
        return "a reference such as &amp; or &#65;";
    }
}

// The element that isn't closed is the innermost of those that are open.
std::string DescribeUnclosed(const CXmlOutline& outline, const char* text, const char* place)
{
    const SOpenElement& element = outline.GetOpen().back();
    const STextPosition opened = GetTextPosition(text, static_cast<std::size_t>(element.place - text));
    return "Expected the end of the element " + Quote(element.name) + ", which is opened in line " +
           std::to_string(opened.line) + ", column " + std::to_string(opened.column) + ", found " +
           (*place == '\0' ? "the end of the text" : "that of another one") + '.';
}

std::string DescribeError(std::int32_t error, const CXmlOutline& outline, const char* text, const char* place)
{
    switch (error)
    {
    case XmlElementNotClosed:
        return outline.GetOpen().empty() ? "Expected the end of an element, found another one."
                                         : DescribeUnclosed(outline, text, place);
    case XmlClearNotClosed:
        return "Expected the end of the section that begins here, found the end of the text.";
    case XmlTooDeep:
        return "Expected no more than 1024 levels of elements, found another one.";
    default:
        return std::string("Expected ") + DescribeExpected(error) + ", found " + ShowFound(place) + '.';
    }
}

SXmlOutcome MakeOutcome(const char* text, const SXmlParseOutcome& parse, bool hasTree)
{
    SXmlOutcome outcome{parse.error, GetXmlErrorName(parse.error), 0, 0, hasTree};
    outcome.isAccepted = parse.error == XmlOk;
    if (outcome.isAccepted)
        return outcome;
    outcome.offset = static_cast<std::uint64_t>(parse.position);
    const STextPosition position = GetTextPosition(text, static_cast<std::size_t>(parse.position));
    outcome.line = position.line;
    outcome.column = position.column;
    if (parse.error == XmlTextTooLong)
    {
        outcome.reason = "Expected less than 2 GiB of text, found more.";
        return outcome;
    }
    const char* const place = text + parse.position;
    const CXmlOutline outline(text, place);
    outcome.path = outline.GetPath();
    outcome.reason = DescribeError(parse.error, outline, text, place);
    return outcome;
}

// ---- Where there is no error and nothing is found. ----

// The names of the elements among which the root is looked for.
std::string ListRoots(const CXmlNode& tree)
{
    constexpr std::uint32_t MaxNames = 5;
    std::string names;
    std::uint32_t count = 0;
    for (std::uint32_t index = 0; index < tree.GetChildCount(); ++index)
        if (!tree.GetChild(index).IsDeclaration() && ++count <= MaxNames)
            names += (names.empty() ? "" : ", ") + Quote(tree.GetChild(index).GetName());
    return names.empty() ? "none" : count > MaxNames ? names + " and others" : names;
}

bool HasDeclarationInside(const CXmlNode& tree)
{
    for (std::uint32_t index = 0; index < tree.GetChildCount(); ++index)
        if (tree.GetChild(index).IsDeclaration())
            return true;
    return false;
}

std::string DescribeMissingRoot(const CXmlNode& tree, const char* text, const std::string& name)
{
    const std::string root = "Expected the root " + Quote(name);
    if (text == nullptr || tree.IsEmpty())
        return root + ", found no text.";
    if (std::string_view(text, std::min<std::size_t>(std::strlen(text), 3)) == "\xEF\xBB\xBF")
        return "Expected a declaration or an element at the beginning, found a byte order mark.";
    if (!tree.IsDeclaration() && tree.GetName() != nullptr)
        return "Expected a declaration such as <?xml version=\"1.0\"?> in front of the root, found " +
               Quote(tree.GetName()) + " standing alone.";
    if (HasDeclarationInside(tree))
        return root + " directly behind the first declaration, which has to stand at the beginning, found " +
               (tree.IsDeclaration() ? "another declaration between them." : "something in front of the declaration.");
    return root + ", found " + ListRoots(tree) + '.';
}

} // namespace

SXmlOutcome CReaderXml::Check() const
{
    SXmlParseOutcome parse{};
    const bool hasTree = !ParseXmlText(text, &parse).IsEmpty();
    return MakeOutcome(text, parse, hasTree);
}

SXmlOutcome CReaderXml::Check(const char* typeName) const
{
    SXmlParseOutcome parse{};
    const CXmlNode tree = ParseXmlText(text, &parse);
    SXmlOutcome outcome = MakeOutcome(text, parse, !tree.IsEmpty());
    const std::string name = ToElementName(typeName);
    if (!outcome.isAccepted || !tree.GetChild(name.c_str()).IsEmpty())
        return outcome;
    outcome.isAccepted = false;
    outcome.reason = DescribeMissingRoot(tree, text, name);
    const char* const first = text == nullptr ? nullptr : CXmlOutline(text, text + std::strlen(text)).GetFirst();
    outcome.offset = first == nullptr ? 0 : static_cast<std::uint64_t>(first - text);
    const STextPosition position = GetTextPosition(text, static_cast<std::size_t>(outcome.offset));
    outcome.line = position.line;
    outcome.column = position.column;
    return outcome;
}

} // namespace Vellum
