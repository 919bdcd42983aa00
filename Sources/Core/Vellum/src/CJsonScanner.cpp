#include "Vellum/src/CJsonScanner.h"

#include <algorithm>
#include <cstring>

#include "Vellum/src/JsonWords.h"
#include "Vellum/src/Limits.h"
#include "Vellum/src/TextPosition.h"
#include "Vellum/src/WhiteSpace.h"

namespace Vellum
{

const char* CJsonScanner::SkipSpace(const char* text)
{
    while (IsWhiteSpace(*text))
        ++text;
    return text;
}

void CJsonScanner::raise(const char* place, const std::string& expected) const
{
    throw SFault{static_cast<std::uint64_t>(place - text),
                 "Expected " + expected + ", found " + ShowFound(place) + '.'};
}

void CJsonScanner::toNext(const char* expected)
{
    at = SkipSpace(at);
    if (*at == '\0')
        raise(at, expected);
}

void CJsonScanner::enter()
{
    if (++depth > MaxDepth)
        raise(at, "no more than " + std::to_string(MaxDepth) + " open brackets");
    ++at;
}

std::string_view CJsonScanner::TakeString()
{
    const char* const begin = ++at;
    for (; *at != '"'; ++at)
    {
        if (*at == '\\')
            ++at;
        if (*at == '\0')
            throw SFault{static_cast<std::uint64_t>(begin - 1 - text),
                         "Expected a closing quote for the text that begins here, found the end of the text."};
    }
    return {begin, static_cast<std::size_t>(at++ - begin)};
}

std::string_view CJsonScanner::TakeWord(char terminator)
{
    const char* const begin = at;
    while (*at != '\0' && *at != ',' && *at != terminator && !IsWhiteSpace(*at))
        ++at;
    const std::string_view word(begin, static_cast<std::size_t>(at - begin));
    if (isStrict && word != "true" && word != "false" && word != "null" && !IsJsonNumber(word))
        raise(begin, "a value of JSON");
    return word;
}

void CJsonScanner::SkipValue(char terminator)
{
    switch (*at)
    {
    case '{':
        ForEachMember([&](std::string_view) { SkipValue('}'); });
        break;
    case '[':
        ForEachElement([&](std::uint32_t) { SkipValue(']'); });
        break;
    case '"':
        TakeString();
        break;
    default:
        TakeWord(terminator);
    }
}

// To the value of a member.
void CJsonScanner::takeKey(std::string_view& key)
{
    if (*at != '"')
        raise(at, "a key in quotes or \"}\"");
    key = TakeString();
    toNext("a colon behind the key");
    if (*at != ':')
        raise(at, "a colon behind the key");
    ++at;
    toNext("a value");
}

// Behind a value. A comma may be missing, and one may stand behind the last member of an object, unless Strict.
void CJsonScanner::takeComma(char terminator)
{
    at = SkipSpace(at);
    if (*at == '\0' || (isStrict && *at != ',' && *at != terminator))
        raise(at, std::string("a comma or \"") + terminator + '"');
    if (*at != ',')
        return;
    ++at;
    toNext("a value behind the comma");
    if (*at == terminator && (isStrict || terminator == ']'))
        raise(at, "a value behind the comma");
}

bool CJsonScanner::BeginDocument(EJsonRoot root)
{
    const bool mayBeNothing = !isStrict && root != EJsonRoot::Object;
    const bool mayBeNull = !isStrict && root != EJsonRoot::Sequence;
    if ((mayBeNothing && *at == '\0') || (mayBeNull && std::strcmp(at, "null") == 0))
        return false;
    at = SkipSpace(at);
    if (root != EJsonRoot::Sequence && *at == '{')
        return true;
    if (root != EJsonRoot::Object && *at == '[')
        return true;
    raise(at, root == EJsonRoot::Object     ? "an object"
              : root == EJsonRoot::Sequence ? "a sequence"
                                            : "an object or a sequence");
}

void CJsonScanner::CheckDocument(EJsonRoot root)
{
    if (!BeginDocument(root))
        return;
    SkipValue('\0');
    at = SkipSpace(at);
    if (isStrict && *at != '\0')
        raise(at, "the end of the document");
}

const char* CJsonScanner::FindMember(const char* object, std::string_view key)
{
    if (*object != '{')
        return nullptr;
    CJsonScanner scanner(object, false);
    const char* found = nullptr;
    scanner.ForEachMember(
        [&](std::string_view other)
        {
            const char* const value = scanner.at;
            scanner.SkipValue('}');
            if (other == key && std::string_view(value, static_cast<std::size_t>(scanner.at - value)) != "null")
                found = value;
        });
    return found;
}

const char* CJsonScanner::FindElement(const char* sequence, std::uint32_t index)
{
    if (*sequence != '[')
        return nullptr;
    CJsonScanner scanner(sequence, false);
    const char* found = nullptr;
    scanner.ForEachElement(
        [&](std::uint32_t other)
        {
            if (other == index)
                found = scanner.at;
            scanner.SkipValue(']');
        });
    return found;
}

} // namespace Vellum
