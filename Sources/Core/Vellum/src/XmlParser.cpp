#include "Vellum/src/XmlParser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "Platform/TextCompare.h"

#include "Vellum/src/Limits.h"
#include "Vellum/src/XmlScan.h"

namespace Vellum
{
namespace
{

using namespace XmlScan;

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

void SetError(SXmlParseContext& context, EXmlParseError error, const char* where)
{
    context.error = error;
    context.errorPlace = where == nullptr ? context.end : where;
}

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
    context.at = start + length;
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
        ++context.at;
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
    if (start[1] == '/')
        return MakeToken(context, TokenEndOpen, start, 2);
    if (start[1] == '?')
        return MakeToken(context, TokenDeclaration, start, 2);
    const SXmlClearKind* const kind = FindClearKind(start);
    return kind == nullptr ? MakeToken(context, TokenOpen, start, 1)
                           : MakeToken(context, TokenClear, start, kind->openLength, kind);
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
        if (entity.length <= end - at && Platform::FoldCase(at[1]) == entity.text[1] &&
            Platform::CompareWithoutCase(at, entity.text, static_cast<std::size_t>(entity.length)) == 0)
        {
            character = entity.character;
            return at + entity.length;
        }
    return nullptr;
}

// Hands the decoded text to `take(bytes, count)` piece by piece. Null, or the reference that is wrong.
template <class Take>
const char* DecodePieces(const char* at, const char* end, const char* textEnd, Take take)
{
    while (at != end)
    {
        const char* const plainEnd = SkipCharacters<'&'>(at, end, textEnd);
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
    HasText, // ... and the text in front of its next tag has been taken
    IsClosed,
    IsOver // the whole parse
};

EProgress Fail(SXmlParseContext& context, EXmlParseError error, const SXmlToken& token)
{
    SetError(context, error, token.start);
    return EProgress::IsOver;
}

// The end of the text. Declarations and the top have no end tag to miss.
EProgress EndOfText(CXmlElement element, SXmlParseContext& context)
{
    if (!element.IsDeclaration() && element.HasParent())
        SetError(context, XmlElementNotClosed, context.end);
    return EProgress::IsOver;
}

// Length of a name or value without the "?" that ends a declaration.
std::int32_t DropQuestionMark(CXmlElement element, const SXmlToken& token)
{
    const bool drops = element.IsDeclaration() && token.length > 0 && token.start[token.length - 1] == '?';
    return token.length - (drops ? 1 : 0);
}

void AddAttribute(CXmlElement element, const SXmlToken& name, const char* value, SXmlParseContext& context)
{
    if (const SXmlName* const shared = ShareName(name, context))
        element.AddAttribute(shared->text, value);
}

// The name in front of the end of a tag.
void FinishAttribute(CXmlElement element, SXmlToken name, SXmlParseContext& context)
{
    name.length = DropQuestionMark(element, name);
    if (name.length > 0)
        AddAttribute(element, name, nullptr, context);
}

bool StoreValue(CXmlElement element, const SXmlToken& name, const SXmlToken& token, SXmlParseContext& context)
{
    const SXmlText value = token.kind == TokenQuoted
                               ? DecodeXmlText(token.start + 1, token.length - 2, context)
                               : DecodeXmlText(token.start, DropQuestionMark(element, token), context);
    if (value.text == nullptr)
        return false;
    AddAttribute(element, name, value.text, context);
    return true;
}

// From behind the name of an element to the end of its start tag.
EProgress ParseTag(CXmlElement element, SXmlParseContext& context)
{
    if (*context.at == '>')
    {
        ++context.at;
        return EProgress::GoesOn;
    }
    SXmlToken name{}; // of an attribute that may still get a value
    for (;;)
    {
        SXmlToken token = NextXmlToken(context);
        switch (token.kind)
        {
        case TokenText:
            if (name.start != nullptr)
                AddAttribute(element, name, nullptr, context);
            name = token;
            break;
        case TokenEquals:
            if (name.start == nullptr)
                return Fail(context, XmlUnexpectedToken, token);
            token = NextXmlToken(context);
            if (token.kind == TokenEnd)
                return EndOfText(element, context);
            if (token.kind != TokenText && token.kind != TokenQuoted)
                return Fail(context, XmlUnexpectedToken, token);
            if (!StoreValue(element, name, token, context))
                return EProgress::IsOver;
            name = {};
            break;
        case TokenClose:
        case TokenEmptyClose:
            if (name.start != nullptr)
                FinishAttribute(element, name, context);
            return token.kind == TokenClose ? EProgress::GoesOn : EProgress::IsClosed;
        case TokenEnd:
            return EndOfText(element, context);
        default:
            return Fail(context, XmlUnexpectedToken, token);
        }
    }
}

// Text in front of a tag, without white space at both its ends. In content every token that is no tag is text, so
// tokens needn't be told apart.
struct SXmlPendingText
{
    const char* start;
    std::int32_t length; // 0 if there is none
    bool hasReferences;
};

// The text that begins here, up to the next "<" or the end of all text.
SXmlPendingText TakeTextFrom(const char* start, SXmlParseContext& context)
{
    const char* stop = SkipOthers<'<', '&'>(start, context.end);
    bool hasReferences = false;
    if (*stop != '<')
    {
        stop = SkipCharacters<'<', '&'>(stop, context.end, context.end);
        hasReferences = *stop == '&';
        stop = SkipCharacters<'<'>(stop, context.end, context.end);
    }
    context.at = stop;
    while (stop != start && IsSpace(stop[-1]))
        --stop;
    return {start, static_cast<std::int32_t>(stop - start), hasReferences};
}

// Moves to the next "<" or the end of the text.
inline SXmlPendingText TakeText(SXmlParseContext& context)
{
    context.at = SkipSpace(context.at, context.end);
    return *context.at == '<' ? SXmlPendingText{} : TakeTextFrom(context.at, context);
}

bool StoreSomeText(CXmlElement element, const SXmlPendingText& pending, SXmlParseContext& context)
{
    const SXmlText text = pending.hasReferences ? DecodeXmlText(pending.start, pending.length, context)
                                                : DuplicateText(pending.start, pending.length, context);
    element.AddText(text);
    return text.text != nullptr;
}

inline bool StoreText(CXmlElement element, const SXmlPendingText& pending, SXmlParseContext& context)
{
    return pending.length == 0 || StoreSomeText(element, pending, context);
}

EProgress ParseClearSection(CXmlElement element, const SXmlToken& open, const SXmlPendingText& pending,
                            SXmlParseContext& context)
{
    if (pending.length != 0)
        element.AddText(DuplicateText(pending.start, pending.length, context));
    const char* const start = context.at;
    const char* const close = std::strstr(start, open.clearKind->closeTag);
    if (close == nullptr)
        return Fail(context, XmlClearNotClosed, open);
    const SXmlText value = DuplicateText(start, static_cast<std::int32_t>(close - start), context);
    element.AddClear(value.text, open.clearKind->openTag, open.clearKind->closeTag);
    context.at = close + std::strlen(open.clearKind->closeTag);
    return EProgress::GoesOn;
}

EProgress ParseEndTag(CXmlElement element, SXmlParseContext& context)
{
    const SXmlToken name = NextXmlToken(context);
    if (name.kind != TokenText)
        return Fail(context, XmlBadEndTag, name);
    const SXmlToken close = NextXmlToken(context);
    if (close.kind != TokenClose)
        return Fail(context, XmlBadEndTag, close);
    if (XmlTagNamesDiffer(element.GetSharedName(), name.start))
    {
        SetError(context, XmlElementNotClosed, name.start);
        context.endTag = name.start;
    }
    return EProgress::IsClosed;
}

// Ends the innermost element. An end tag that isn't its own also closes the one around it, and so on, until it has
// found its element.
EProgress Close(SXmlParseContext& context)
{
    for (;;)
    {
        const bool isDeclaration = context.open.back().GetElement().IsDeclaration();
        context.open.pop_back();
        if (context.open.empty())
            return EProgress::IsOver;
        --(isDeclaration ? context.openDeclarations : context.openElements);
        if (context.endTag == nullptr)
            return EProgress::GoesOn;
        const SXmlName* const name = context.open.back().GetElement().GetSharedName();
        if (name == nullptr)
        {
            SetError(context, XmlStrayEndTag, context.endTag);
            return EProgress::IsOver;
        }
        if (!XmlTagNamesDiffer(name, context.endTag))
            context.endTag = nullptr;
    }
}

bool IsTooDeep(std::uint32_t open, const char* name, SXmlParseContext& context)
{
    if (open < MaxDepth)
        return false;
    SetError(context, XmlTooDeep, name);
    return true;
}

// Takes the end tag of that name, if there is nothing else.
bool TakeEndTag(const SXmlName* name, SXmlParseContext& context)
{
    const char* const tag = context.at;
    if (name == nullptr || tag[0] != '<' || tag[1] != '/' || !IsTagOf(*name, 2, tag, context.end))
        return false;
    context.at = tag + name->length + 3;
    return true;
}

// An element from behind its start tag. Most of them have a text and nothing else, and are never open.
EProgress Open(const CXmlOpenElement::SChild& added, SXmlPendingText& text, SXmlParseContext& context)
{
    const auto& [child, model] = added;
    text = TakeText(context);
    if (TakeEndTag(child.GetSharedName(), context))
        return StoreText(child, text, context) ? EProgress::GoesOn : EProgress::IsOver;
    context.open.emplace_back(child, model);
    ++(child.IsDeclaration() ? context.openDeclarations : context.openElements);
    return EProgress::HasText;
}

// An element, or a declaration, from behind "<" or "<?".
EProgress ParseStartTag(bool isDeclaration, SXmlPendingText& text, SXmlParseContext& context)
{
    const SXmlToken token = NextXmlToken(context);
    if (token.kind != TokenText)
        return Fail(context, XmlNoElementName, token);
    if (IsTooDeep(isDeclaration ? context.openDeclarations : context.openElements, token.start, context))
        return EProgress::IsOver;
    const SXmlName* const name = ShareName(token, context);
    if (name == nullptr)
        return EProgress::GoesOn; // as if there were no element
    const CXmlOpenElement::SChild added = context.open.back().AddChild(*name, isDeclaration);
    const EProgress progress = ParseTag(added.child, context);
    if (progress == EProgress::GoesOn)
        return Open(added, text, context);
    return progress == EProgress::IsClosed ? EProgress::GoesOn : progress;
}

// An element whose start tag was guessed.
EProgress ParseGuessed(const SXmlName& name, SXmlPendingText& text, SXmlParseContext& context)
{
    if (IsTooDeep(context.openElements, context.at + 1, context))
        return EProgress::IsOver;
    context.at += name.length + 2;
    return Open(context.open.back().AddChild(name, false), text, context);
}

// What stands behind text, token by token.
EProgress ParseMarkup(SXmlPendingText& text, SXmlParseContext& context)
{
    const CXmlElement element = context.open.back().GetElement();
    const SXmlToken token = NextXmlToken(context);
    if (token.kind == TokenEnd)
        return EndOfText(element, context);
    if (token.kind == TokenClear)
        return ParseClearSection(element, token, text, context);
    if (!StoreText(element, text, context))
        return EProgress::IsOver;
    return token.kind == TokenEndOpen ? ParseEndTag(element, context)
                                      : ParseStartTag(token.kind == TokenDeclaration, text, context);
}

// What stands behind text: most often the end tag of the innermost element, or the start tag of a child that can be
// guessed.
EProgress ParseBehindText(SXmlPendingText& text, SXmlParseContext& context)
{
    const CXmlOpenElement& innermost = context.open.back();
    const CXmlElement element = innermost.GetElement();
    if (TakeEndTag(element.GetSharedName(), context))
        return StoreText(element, text, context) ? EProgress::IsClosed : EProgress::IsOver;
    const SXmlName* const name = innermost.GuessStartTag(context.at, context.end);
    if (name == nullptr)
        return ParseMarkup(text, context);
    return StoreText(element, text, context) ? ParseGuessed(*name, text, context) : EProgress::IsOver;
}

void ParseDocument(CXmlElement document, SXmlParseContext& context)
{
    context.open.emplace_back(document, CXmlElement());
    SXmlPendingText text{};
    for (EProgress progress = EProgress::GoesOn; progress != EProgress::IsOver;)
    {
        if (progress != EProgress::HasText)
            text = TakeText(context);
        progress = ParseBehindText(text, context);
        if (progress == EProgress::IsClosed)
            progress = Close(context);
    }
}

CXmlNode TakeTree(CXmlNode document)
{
    return document.GetChildCount() == 1 && document.GetEntryCount() == 1 ? document.GetChild(0u) : document;
}

} // namespace

SXmlParseContext::SXmlParseContext(const char* text, CXmlMemory& memory)
    : text(text), end(text + std::strlen(text)), at(text), errorPlace(text), memory(memory)
{
    open.reserve(24);
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

SXmlText DuplicateText(const char* text, std::int32_t length, SXmlParseContext& context)
{
    const auto size = static_cast<std::uint32_t>(length);
    return {context.memory.CopyText(text, size, static_cast<std::size_t>(context.end - text)), size};
}

const SXmlName* ShareName(const SXmlToken& name, SXmlParseContext& context)
{
    const std::string_view text(name.start, static_cast<std::size_t>(name.length));
    const std::uint32_t hash = HashXmlName(text);
    auto& [recentHash, recent] = context.recentNames[hash % context.recentNames.size()];
    if (recentHash == hash && recent != nullptr && recent->length == text.size() &&
        StartsWith(text.data(), context.end, recent->text, text.size()))
        return recent;
    recentHash = hash;
    return recent = MakeXmlName(text, hash, static_cast<std::size_t>(context.end - name.start), context.memory);
}

SXmlText DecodeXmlText(const char* text, std::int32_t length, SXmlParseContext& context)
{
    const char* const end = text + std::min<std::ptrdiff_t>(length, context.end - text);
    char* const decoded = context.memory.AllocateText(static_cast<std::size_t>(end - text)); // no reference is shorter
    char* to = decoded;
    const auto store = [&](const char* bytes, std::ptrdiff_t count)
    {
        if (decoded != nullptr)
            to = std::copy_n(bytes, count, to);
    };
    if (const char* const wrong = DecodePieces(text, end, context.end, store))
    {
        SetError(context, XmlBadReference, wrong);
        return {};
    }
    if (decoded == nullptr)
        return {};
    *to = 0;
    return {decoded, static_cast<std::uint32_t>(std::strlen(decoded))}; // a reference may have made a NUL
}

bool XmlTagNamesDiffer(const SXmlName* name, const char* endTag)
{
    if (name == nullptr || Platform::CompareWithoutCase(name->text, endTag, name->length) != 0)
        return true;
    const char behind = endTag[name->length];
    return !(IsSpace(behind) || behind == '/' || behind == '<' || behind == '=' || behind == '>');
}

SXmlToken NextXmlToken(SXmlParseContext& context)
{
    const char* const start = SkipSpace(context.at, context.end);
    switch (*start)
    {
    case 0:
        context.at = start;
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

CXmlNode ParseXmlText(const char* text, SXmlParseOutcome* outcome)
{
    if (outcome != nullptr)
        *outcome = {XmlOk, 0};
    if (text == nullptr)
        return CXmlNode();
    CXmlNode document = CXmlNode::MakeDocument();
    SXmlParseContext context(text, document.GetMemory());
    if (static_cast<std::size_t>(context.end - context.text) > std::numeric_limits<std::int32_t>::max())
        context.error = XmlTextTooLong;
    else
        ParseDocument(document, context);
    if (outcome != nullptr)
        *outcome = {context.error, static_cast<std::int32_t>(context.errorPlace - context.text)};
    return context.error > XmlElementNotClosed ? CXmlNode() : TakeTree(std::move(document));
}

} // namespace Vellum
