#include "Vellum/src/XmlParser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

#include "Platform/TextCompare.h"

#include "Vellum/src/Limits.h"

namespace Vellum
{
namespace
{

// Searched from the top.
constexpr SXmlClearKind ClearKinds[] = {
    {"<![CDATA[", 9, "]]>"}, {"<PRE>", 5, "</PRE>"}, {"<Script>", 8, "</Script>"},
    {"<!--", 4, "-->"},      {"<!DOCTYPE", 9, ">"},
};

struct SXmlEntity
{
    const char* text;
    std::int32_t length;
    char character;
};

constexpr SXmlEntity Entities[] = {
    {"&amp;", 5, '&'}, {"&lt;", 4, '<'}, {"&gt;", 4, '>'}, {"&quot;", 6, '"'}, {"&apos;", 6, '\''},
};

constexpr bool IsSpace(char byte) { return byte == '\t' || byte == '\n' || byte == '\r' || byte == ' '; }

// Bytes from a lead byte of UTF-8 to the next character; 1 for every other byte. What stands between isn't looked at.
constexpr std::uint8_t StepOf(unsigned byte)
{
    if (byte < 0xC2 || byte > 0xF4)
        return 1;
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// Steps by byte, with 0 for the bytes that `stops` names and for the terminator.
template <std::size_t Size>
constexpr std::array<std::uint8_t, 256> MakeSteps(const char (&stops)[Size])
{
    std::array<std::uint8_t, 256> steps{};
    for (unsigned byte = 0; byte < steps.size(); ++byte)
        steps[byte] = StepOf(byte);
    for (const char stop : stops)
        steps[static_cast<unsigned char>(stop)] = 0;
    return steps;
}

constexpr auto ContentSteps = MakeSteps("<");
constexpr auto WordSteps = MakeSteps("\t\n\r <=>/");
constexpr auto DoubleQuotedSteps = MakeSteps("\"<");
constexpr auto SingleQuotedSteps = MakeSteps("'<");

// The first place at or behind `at` whose byte has no step in the table. A step that would pass the terminator goes to
// the next byte. Steps of 1 are told apart so that the next byte can be looked at before this one's step is known.
const char* Walk(const std::array<std::uint8_t, 256>& steps, const char* at, const char* end)
{
    for (;;)
    {
        const std::uint8_t step = steps[static_cast<unsigned char>(*at)];
        if (step == 1)
            ++at;
        else if (step != 0)
            at += step <= end - at ? step : 1;
        else
            return at;
    }
}

const char* StepOver(const char* at, const char* end)
{
    const std::uint8_t step = StepOf(static_cast<unsigned char>(*at));
    return at + (step <= end - at ? step : 1);
}

const char* SkipSpace(const char* at)
{
    while (IsSpace(*at))
        ++at;
    return at;
}

bool SetError(SXmlParseContext& context, EXmlParseError error, const char* where)
{
    context.error = error;
    context.errorPosition = static_cast<std::int32_t>((where == nullptr ? context.end : where) - context.text);
    return false;
}

void MoveTo(SXmlParseContext& context, const char* at)
{
    context.position = static_cast<std::int32_t>(at - context.text);
}

const char* GetPlace(const SXmlParseContext& context) { return context.text + context.position; }

const SXmlClearKind* FindClearKind(const char* start)
{
    for (const SXmlClearKind& kind : ClearKinds)
        if (Platform::FoldCase(start[1]) == Platform::FoldCase(kind.openTag[1]) &&
            Platform::CompareWithoutCase(start, kind.openTag, static_cast<std::size_t>(kind.openLength)) == 0)
            return &kind;
    return nullptr;
}

SXmlToken MakeToken(SXmlParseContext& context, EXmlTokenKind kind, const char* start, std::ptrdiff_t length,
                    const SXmlClearKind* clearKind = nullptr)
{
    MoveTo(context, start + length);
    return {kind, static_cast<std::int32_t>(length), clearKind, start};
}

// A run of other characters. One byte of white space behind it is consumed with it.
SXmlToken TakeWord(SXmlParseContext& context, const char* start)
{
    const char* at = Walk(WordSteps, StepOver(start, context.end), context.end);
    while (*at == '/' && at[1] != '>')
        at = Walk(WordSteps, at + 1, context.end);
    const SXmlToken token = MakeToken(context, TokenText, start, at - start);
    if (IsSpace(*at))
        ++context.position;
    return token;
}

// A quote that isn't closed before the next "<" is an ordinary character.
SXmlToken TakeQuoted(SXmlParseContext& context, const char* start)
{
    const auto& steps = *start == '"' ? DoubleQuotedSteps : SingleQuotedSteps;
    const char* const at = Walk(steps, start + 1, context.end);
    return *at == *start ? MakeToken(context, TokenQuoted, start, at + 1 - start) : TakeWord(context, start);
}

SXmlToken TakeOpen(SXmlParseContext& context, const char* start)
{
    if (const SXmlClearKind* const kind = FindClearKind(start))
        return MakeToken(context, TokenClear, start, kind->openLength, kind);
    if (start[1] == '/')
        return MakeToken(context, TokenEndOpen, start, 2);
    return start[1] == '?' ? MakeToken(context, TokenDeclaration, start, 2) : MakeToken(context, TokenOpen, start, 1);
}

// Reads digits up to ";". Of the number only the low 8 bits are kept. Null for anything but digits.
const char* DecodeNumber(const char* at, const char* end, unsigned base, char& character)
{
    unsigned value = 0;
    for (; at != end && *at != ';'; ++at)
    {
        const char folded = Platform::FoldCase(*at);
        unsigned digit = base;
        if (folded >= '0' && folded <= '9')
            digit = static_cast<unsigned>(folded - '0');
        else if (folded >= 'a' && folded <= 'f')
            digit = static_cast<unsigned>(folded - 'a') + 10;
        if (digit >= base)
            return nullptr;
        value = (value * base + digit) & 0xFF;
    }
    character = static_cast<char>(value);
    return at == end ? nullptr : at + 1;
}

// Decodes the reference at an ampersand. The place behind it, or null if it isn't one.
const char* DecodeReference(const char* at, const char* end, char& character)
{
    if (end - at > 2 && at[1] == '#')
    {
        const bool isHexadecimal = Platform::FoldCase(at[2]) == 'x';
        return DecodeNumber(at + (isHexadecimal ? 3 : 2), end, isHexadecimal ? 16 : 10, character);
    }
    for (const SXmlEntity& entity : Entities)
        if (entity.length <= end - at &&
            Platform::CompareWithoutCase(at, entity.text, static_cast<std::size_t>(entity.length)) == 0)
        {
            character = entity.character;
            return at + entity.length;
        }
    return nullptr;
}

// The end of the characters that stand for themselves. The last one may be cut by the end of the piece.
const char* SkipPlain(const char* at, const char* end, const char* textEnd)
{
    while (at < end && *at != '&')
        at = StepOver(at, textEnd);
    return std::min(at, end);
}

// Hands the decoded text to `take(bytes, count)` piece by piece. Null, or the reference that is wrong.
template <class Take>
const char* DecodePieces(const char* at, const char* end, const char* textEnd, Take take)
{
    while (at != end)
    {
        const char* const plainEnd = SkipPlain(at, end, textEnd);
        take(at, plainEnd - at);
        at = plainEnd;
        if (at == end)
            break;
        char character = 0;
        const char* const behind = DecodeReference(at, end, character);
        if (behind == nullptr)
            return at;
        take(&character, 1);
        at = behind;
    }
    return nullptr;
}

// How an element stands after each of its parts.
enum class EProgress
{
    GoesOn,
    IsClosed,
    IsOver // the whole parse
};

EProgress Fail(SXmlParseContext& context, EXmlParseError error, const SXmlToken& token)
{
    SetError(context, error, token.start);
    return EProgress::IsOver;
}

// The end of the text. Declarations and the top have no end tag to miss.
EProgress EndOfText(const CXmlNode& node, SXmlParseContext& context)
{
    if (!node.IsDeclaration() && node.HasParent())
        SetError(context, XmlElementNotClosed, context.end);
    return EProgress::IsOver;
}

// Length of a name or value without the "?" that ends a declaration.
std::int32_t DropQuestionMark(const CXmlNode& node, const SXmlToken& token)
{
    const bool drops = node.IsDeclaration() && token.length > 0 && token.start[token.length - 1] == '?';
    return token.length - (drops ? 1 : 0);
}

// The name in front of the end of a tag.
void FinishAttribute(CXmlNode& node, SXmlToken name, SXmlParseContext& context)
{
    name.length = DropQuestionMark(node, name);
    if (name.length > 0)
        node.AddAttribute(ShareName(name, context), nullptr);
}

bool StoreValue(CXmlNode& node, const SXmlToken& name, const SXmlToken& token, SXmlParseContext& context)
{
    const char* const value = token.kind == TokenQuoted
                                  ? DecodeXmlText(token.start + 1, token.length - 2, context)
                                  : DecodeXmlText(token.start, DropQuestionMark(node, token), context);
    if (value == nullptr)
        return false;
    node.AddAttribute(ShareName(name, context), value);
    return true;
}

// From behind the name of an element to the end of its start tag.
EProgress ParseTag(CXmlNode& node, SXmlParseContext& context)
{
    SXmlToken name{}; // of an attribute that may still get a value
    for (;;)
    {
        SXmlToken token = NextXmlToken(context);
        switch (token.kind)
        {
        case TokenText:
            if (name.start != nullptr)
                node.AddAttribute(ShareName(name, context), nullptr);
            name = token;
            break;
        case TokenEquals:
            if (name.start == nullptr)
                return Fail(context, XmlUnexpectedToken, token);
            token = NextXmlToken(context);
            if (token.kind == TokenEnd)
                return EndOfText(node, context);
            if (token.kind != TokenText && token.kind != TokenQuoted)
                return Fail(context, XmlUnexpectedToken, token);
            if (!StoreValue(node, name, token, context))
                return EProgress::IsOver;
            name = {};
            break;
        case TokenClose:
        case TokenEmptyClose:
            if (name.start != nullptr)
                FinishAttribute(node, name, context);
            return token.kind == TokenClose ? EProgress::GoesOn : EProgress::IsClosed;
        case TokenEnd:
            return EndOfText(node, context);
        default:
            return Fail(context, XmlUnexpectedToken, token);
        }
    }
}

// Moves to the next "<" or the end of the text, and returns where text begins on the way; null if there is none. In
// content every token that is no tag is text, so tokens needn't be told apart.
const char* SkipText(SXmlParseContext& context)
{
    const char* const start = SkipSpace(GetPlace(context));
    const char* const stop = Walk(ContentSteps, start, context.end);
    MoveTo(context, stop);
    return start == stop ? nullptr : start;
}

// Without the white space at its end.
std::int32_t GetTextLength(const char* start, const char* end)
{
    while (end != start && IsSpace(end[-1]))
        --end;
    return static_cast<std::int32_t>(end - start);
}

bool StoreText(CXmlNode& node, const char* start, const char* end, SXmlParseContext& context)
{
    if (start == nullptr)
        return true;
    const char* const text = DecodeXmlText(start, GetTextLength(start, end), context);
    if (text == nullptr)
        return false;
    node.AddText(text);
    return true;
}

EProgress ParseClearSection(CXmlNode& node, const SXmlToken& open, const char* pendingText, SXmlParseContext& context)
{
    node.AddText(
        DuplicateText(pendingText, pendingText == nullptr ? 0 : GetTextLength(pendingText, open.start), context));
    const char* const start = GetPlace(context);
    const char* const close = std::strstr(start, open.clearKind->closeTag);
    if (close == nullptr)
        return Fail(context, XmlClearNotClosed, open);
    node.AddClear(DuplicateText(start, static_cast<std::int32_t>(close - start), context), open.clearKind->openTag,
                  open.clearKind->closeTag);
    MoveTo(context, close + std::strlen(open.clearKind->closeTag));
    return EProgress::GoesOn;
}

EProgress ParseEndTag(const CXmlNode& node, SXmlParseContext& context)
{
    const SXmlToken name = NextXmlToken(context);
    if (name.kind != TokenText)
        return Fail(context, XmlBadEndTag, name);
    const SXmlToken close = NextXmlToken(context);
    if (close.kind != TokenClose)
        return Fail(context, XmlBadEndTag, close);
    if (XmlTagNamesDiffer(node.GetName(), name.start))
    {
        SetError(context, XmlElementNotClosed, name.start);
        context.endTag = name.start;
        context.endTagLength = name.length;
    }
    return EProgress::IsClosed;
}

// An end tag has closed a child without being the child's own: it closes this node too, and goes on upwards unless it
// is this node's.
EProgress TakePendingEndTag(const CXmlNode& node, SXmlParseContext& context)
{
    if (node.GetName() == nullptr)
    {
        SetError(context, XmlStrayEndTag, context.endTag);
        return EProgress::IsOver;
    }
    if (!XmlTagNamesDiffer(node.GetName(), context.endTag))
        context.endTagLength = 0;
    return EProgress::IsClosed;
}

EProgress ParseChild(CXmlNode& node, bool isDeclaration, SXmlParseContext& context)
{
    const SXmlToken name = NextXmlToken(context);
    if (name.kind != TokenText)
        return Fail(context, XmlNoElementName, name);
    std::uint32_t& open = isDeclaration ? context.openDeclarations : context.openElements;
    if (open == MaxDepth)
        return Fail(context, XmlTooDeep, name);
    CXmlNode child = node.AddChild(ShareName(name, context), isDeclaration);
    ++open;
    if (!child.IsEmpty() && !ParseXmlElement(child, context))
        return EProgress::IsOver;
    --open;
    return context.endTagLength == 0 ? EProgress::GoesOn : TakePendingEndTag(node, context);
}

// Text, if there is any, and the tag behind it.
EProgress ParseContent(CXmlNode& node, SXmlParseContext& context)
{
    const char* const pendingText = SkipText(context);
    const SXmlToken token = NextXmlToken(context);
    if (token.kind == TokenEnd)
        return EndOfText(node, context);
    if (token.kind == TokenClear)
        return ParseClearSection(node, token, pendingText, context);
    if (!StoreText(node, pendingText, token.start, context))
        return EProgress::IsOver;
    return token.kind == TokenEndOpen ? ParseEndTag(node, context)
                                      : ParseChild(node, token.kind == TokenDeclaration, context);
}

CXmlNode TakeTree(CXmlNode document)
{
    return document.GetChildCount() == 1 && document.GetEntryCount() == 1 ? document.GetChild(0u) : document;
}

} // namespace

SXmlParseContext::SXmlParseContext(const char* text, CXmlMemory& memory)
    : text(text), end(text + std::strlen(text)), memory(memory)
{
}

const char* GetXmlErrorName(std::int32_t error)
{
    switch (error)
    {
    case XmlOk:
        return "XmlOk";
    case XmlElementNotClosed:
        return "XmlElementNotClosed";
    case XmlNoElementName:
        return "XmlNoElementName";
    case XmlBadEndTag:
        return "XmlBadEndTag";
    case XmlStrayEndTag:
        return "XmlStrayEndTag";
    case XmlClearNotClosed:
        return "XmlClearNotClosed";
    case XmlUnexpectedToken:
        return "XmlUnexpectedToken";
    case XmlBadReference:
        return "XmlBadReference";
    case XmlTooDeep:
        return "XmlTooDeep";
    case XmlTextTooLong:
        return "XmlTextTooLong";
    default:
        return "";
    }
}

const char* DuplicateText(const char* text, std::int32_t length, SXmlParseContext& context)
{
    if (text == nullptr)
        return nullptr;
    char* const copy = context.memory.AllocateText(static_cast<std::size_t>(length));
    if (copy != nullptr)
        std::memcpy(copy, text, static_cast<std::size_t>(length));
    return copy;
}

const char* ShareName(const SXmlToken& name, SXmlParseContext& context)
{
    const auto length = static_cast<std::size_t>(name.length);
    const auto last = static_cast<unsigned char>(name.start[length - 1]);
    const auto middle = static_cast<unsigned char>(name.start[length / 2]);
    const char*& recent = context.recentNames[(length * 5 + last * 3u + middle) % context.recentNames.size()];
    if (recent == nullptr || std::strncmp(recent, name.start, length) != 0 || recent[length] != 0)
        recent = DuplicateText(name.start, name.length, context);
    return recent;
}

const char* DecodeXmlText(const char* text, std::int32_t length, SXmlParseContext& context)
{
    if (text == nullptr)
        return nullptr;
    const char* const end = text + std::min<std::ptrdiff_t>(length, context.end - text);
    if (std::memchr(text, '&', static_cast<std::size_t>(end - text)) == nullptr)
        return DuplicateText(text, static_cast<std::int32_t>(end - text), context);

    std::ptrdiff_t size = 0;
    const char* const wrong =
        DecodePieces(text, end, context.end, [&](const char*, std::ptrdiff_t count) { size += count; });
    if (wrong != nullptr)
    {
        SetError(context, XmlBadReference, wrong);
        return nullptr;
    }
    char* const decoded = context.memory.AllocateText(static_cast<std::size_t>(size));
    if (decoded != nullptr)
        DecodePieces(text, end, context.end,
                     [to = decoded](const char* bytes, std::ptrdiff_t count) mutable
                     { to = std::copy_n(bytes, count, to); });
    return decoded;
}

bool XmlTagNamesDiffer(const char* name, const char* endTag)
{
    if (name == nullptr)
        return true;
    const std::size_t length = std::strlen(name);
    if (Platform::CompareWithoutCase(name, endTag, length) != 0)
        return true;
    const char behind = endTag[length];
    return !(IsSpace(behind) || behind == '/' || behind == '<' || behind == '=' || behind == '>');
}

SXmlToken NextXmlToken(SXmlParseContext& context)
{
    const char* const start = SkipSpace(GetPlace(context));
    switch (*start)
    {
    case 0:
        MoveTo(context, start);
        return {TokenEnd, 0, nullptr, nullptr};
    case '<':
        return TakeOpen(context, start);
    case '=':
        return MakeToken(context, TokenEquals, start, 1);
    case '>':
        return MakeToken(context, TokenClose, start, 1);
    case '"':
    case '\'':
        return TakeQuoted(context, start);
    case '/':
        if (start[1] == '>')
            return MakeToken(context, TokenEmptyClose, start, 2);
        return TakeWord(context, start);
    default:
        return TakeWord(context, start);
    }
}

bool ParseXmlElement(CXmlNode& node, SXmlParseContext& context)
{
    EProgress progress = EProgress::GoesOn;
    if (!std::exchange(context.isFirstCall, false))
        progress = ParseTag(node, context);
    while (progress == EProgress::GoesOn)
        progress = ParseContent(node, context);
    return progress == EProgress::IsClosed;
}

CXmlNode ParseXmlText(const char* text, SXmlParseOutcome* outcome)
{
    if (outcome != nullptr)
        *outcome = {XmlOk, 0};
    if (text == nullptr)
        return CXmlNode();
    CXmlNode document = CXmlNode::MakeDocument();
    SXmlParseContext context(text, document.GetMemory());
    if (context.end - context.text > std::numeric_limits<std::int32_t>::max())
        context.error = XmlTextTooLong;
    else
        ParseXmlElement(document, context);
    if (outcome != nullptr)
        *outcome = {context.error, context.errorPosition};
    return context.error > XmlElementNotClosed ? CXmlNode() : TakeTree(std::move(document));
}

} // namespace Vellum
