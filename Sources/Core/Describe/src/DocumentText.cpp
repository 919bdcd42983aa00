#include "Describe/src/DocumentText.h"

#include <algorithm>
#include <string_view>

#include "Vellum/CReaderXml.h"

#include "Describe/CDocumentException.h"
#include "Describe/src/CJsonScanner.h"

namespace Vellum::Describing
{
namespace
{

STextPosition GetPosition(const char* text, const char* at)
{
    const std::string_view before(text, static_cast<std::size_t>(at - text));
    return {static_cast<std::uint32_t>(std::ranges::count(before, '\n')) + 1,
            static_cast<std::uint32_t>(before.size() - (before.rfind('\n') + 1)) + 1}; // npos + 1 is 0
}

[[noreturn]] void RaiseIn(const SDocument& document, std::string reason, STextPosition position, std::string path = {})
{
    throw CDocumentException(__FILE__, __LINE__, document.function,
                             {std::move(reason), std::move(path), {}, position.line, position.column});
}

void CheckJson(const SDocument& document, bool isSequence, bool isStrict)
{
    try
    {
        CJsonScanner(document.text, isStrict).CheckDocument(isSequence);
    }
    catch (const CJsonScanner::SFault& fault)
    {
        RaiseIn(document, fault.reason, GetPosition(document.text, fault.at), fault.path);
    }
}

const char* DescribeXmlError(std::int32_t error)
{
    switch (error)
    {
    case 1:
        return "An element isn't closed.";
    case 4:
        return "An element has no name.";
    case 5:
        return "An end tag is malformed.";
    case 7:
        return "An end tag has no element.";
    case 8:
        return "A comment or another section isn't closed.";
    case 9:
        return "Something in a tag doesn't belong there.";
    case 14:
        return "A reference is malformed or unknown.";
    case 15:
        return "The elements are nested too deep.";
    default:
        return "The text is too long.";
    }
}

// Answers whether the root is there, by being called with a reader that has something, or by the way of its name.
bool HasRoot(std::string_view text, std::string_view typeName)
{
    std::string tag = "<";
    for (; !typeName.empty(); typeName.remove_prefix(1))
    {
        const bool isSeparator = typeName.starts_with("::");
        tag += isSeparator ? '-' : typeName.front();
        typeName.remove_prefix(isSeparator ? 1 : 0);
    }
    const auto areEqual = [](char first, char second)
    {
        const auto lower = [](char byte) { return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte; };
        return lower(first) == lower(second);
    };
    return std::search(text.begin(), text.end(), tag.begin(), tag.end(), areEqual) != text.end();
}

void CheckXml(const SDocument& document, const char* typeName)
{
    const SXmlOutcome outcome = CReaderXml(document.text).Check();
    if (outcome.error != 0)
        RaiseIn(document, DescribeXmlError(outcome.error), {outcome.line, outcome.column});
    if (!HasRoot(document.text, typeName))
        RaiseIn(document, std::string("The document has no root for the type ") + typeName + ".", {});
}

// The value of a place in a JSON text, or the innermost one around it that is there.
const char* FindInJson(const SPlace& place)
{
    if (place.outer == nullptr)
        return CJsonScanner::SkipSpace(place.document->text);
    const char* const outer = FindInJson(*place.outer);
    const char* const found = place.key != nullptr ? CJsonScanner::FindMember(outer, place.key)
                                                   : CJsonScanner::FindElement(outer, place.index);
    return found != nullptr ? found : outer;
}

} // namespace

void CheckText(const SDocument& document, const char* typeName, bool isSequence, bool isStrict)
{
    if (document.format == EFormat::Json)
        CheckJson(document, isSequence, isStrict);
    else
        CheckXml(document, typeName);
}

STextPosition FindPosition(const SPlace& place)
{
    if (place.document->format != EFormat::Json || place.document->text == nullptr)
        return {};
    return GetPosition(place.document->text, FindInJson(place));
}

std::string DescribeRefusal(const IException& exception)
{
    return std::string("What stands here can't be read: ") + exception.GetFunctionName() + " refuses it.";
}

} // namespace Vellum::Describing
