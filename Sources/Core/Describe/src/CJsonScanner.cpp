#include "Describe/src/CJsonScanner.h"

#include <algorithm>
#include <cstring>

#include "Vellum/src/Limits.h"
#include "Vellum/src/WhiteSpace.h"

namespace Vellum::Describing
{
namespace
{

constexpr bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

// A number as JSON has it, or what the library's own writers make of those that JSON doesn't have.
bool IsPlainWord(std::string_view word)
{
    if (word == "true" || word == "false" || word == "null" || word.ends_with("nan") || word.ends_with("inf"))
        return true;
    return !word.empty() && (IsDigit(word.back()) || word.back() == '.') &&
           std::ranges::all_of(
               word, [](char byte)
               { return IsDigit(byte) || std::string_view("+-.eE").find(byte) != std::string_view::npos; });
}

} // namespace

const char* CJsonScanner::SkipSpace(const char* text)
{
    while (IsWhiteSpace(*text))
        ++text;
    return text;
}

void CJsonScanner::toNext()
{
    at = SkipSpace(at);
    if (*at == '\0')
        throw SFault{at, "The text ends before the document does."};
}

// From the opening quote to behind the closing one.
std::string_view CJsonScanner::takeString()
{
    const char* const begin = ++at;
    for (; *at != '"'; ++at)
    {
        if (*at == '\\')
            ++at;
        if (*at == '\0')
            throw SFault{begin - 1, "The text in quotes has no end."};
    }
    return {begin, static_cast<std::size_t>(at++ - begin)};
}

std::string_view CJsonScanner::takeWord(char terminator)
{
    const char* const begin = at;
    while (*at != '\0' && *at != ',' && *at != terminator && !IsWhiteSpace(*at))
        ++at;
    const std::string_view word(begin, static_cast<std::size_t>(at - begin));
    if (isStrict && !IsPlainWord(word))
        throw SFault{begin, "This is no value of JSON."};
    return word;
}

// `step` makes the piece of the path, for a fault alone.
template <class Step, class Function>
void CJsonScanner::under(const Step& step, const Function& function)
try
{
    function();
}
catch (SFault& fault)
{
    const bool isPlain = fault.path.empty() || fault.path.front() == '[';
    fault.path = step() + (isPlain ? "" : ".") + fault.path;
    throw;
}

void CJsonScanner::skipValue(char terminator)
{
    switch (*at)
    {
    case '{':
        forEachMember([&](std::string_view key) { under([&] { return std::string(key); }, [&] { skipValue('}'); }); });
        break;
    case '[':
        forEachElement(
            [&](std::uint32_t index)
            {
                under([&] { return '[' + std::to_string(index) + ']'; },
                      [&]
                      {
                          if (isStrict && std::strncmp(at, "null", 4) == 0)
                              throw SFault{at, "A sequence can't hold a null."};
                          skipValue(']');
                      });
            });
        break;
    case '"':
        takeString();
        break;
    default:
        takeWord(terminator);
    }
}

// Behind a value. A comma may be missing, and one may stand behind the last member of an object, unless Strict.
void CJsonScanner::takeComma(char terminator)
{
    toNext();
    if (*at == ',')
    {
        const char* const comma = at++;
        toNext();
        if (*at == terminator && (isStrict || terminator == ']'))
            throw SFault{comma, "A value is missing behind the comma."};
    }
    else if (isStrict && *at != terminator)
        throw SFault{at, "A comma or the closing bracket is missing."};
}

template <class Function>
void CJsonScanner::forEachMember(const Function& function)
{
    if (++depth > MaxDepth)
        throw SFault{at, "The brackets are nested too deep."};
    ++at;
    toNext();
    while (*at != '}')
    {
        if (*at != '"')
            throw SFault{at, "A key in quotes is missing."};
        const std::string_view key = takeString();
        toNext();
        if (*at != ':')
            throw SFault{at, "A colon is missing behind the key."};
        ++at;
        toNext();
        function(key);
        takeComma('}');
    }
    ++at;
    --depth;
}

template <class Function>
void CJsonScanner::forEachElement(const Function& function)
{
    if (++depth > MaxDepth)
        throw SFault{at, "The brackets are nested too deep."};
    ++at;
    toNext();
    if (*at == ',')
        throw SFault{at, "A value is missing in front of the comma."};
    for (std::uint32_t index = 0; *at != ']'; ++index)
    {
        function(index);
        takeComma(']');
    }
    ++at;
    --depth;
}

void CJsonScanner::CheckDocument(bool isSequence)
{
    if (!isStrict && (isSequence ? *at == '\0' : std::strcmp(at, "null") == 0))
        return;
    toNext();
    if (*at != (isSequence ? '[' : '{'))
        throw SFault{at, isSequence ? "The document is no sequence." : "The document is no object."};
    skipValue('\0');
    at = SkipSpace(at);
    if (isStrict && *at != '\0')
        throw SFault{at, "Something stands behind the document."};
}

const char* CJsonScanner::FindMember(const char* object, std::string_view key)
{
    if (*object != '{')
        return nullptr;
    CJsonScanner scanner(object, false);
    const char* found = nullptr;
    scanner.forEachMember(
        [&](std::string_view other)
        {
            const char* const value = scanner.at;
            scanner.skipValue('}');
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
    scanner.forEachElement(
        [&](std::uint32_t other)
        {
            if (other == index)
                found = scanner.at;
            scanner.skipValue(']');
        });
    return found;
}

} // namespace Vellum::Describing
