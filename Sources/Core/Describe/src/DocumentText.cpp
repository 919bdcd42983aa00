#include "Describe/src/DocumentText.h"

#include <algorithm>
#include <string_view>

#include "Vellum/CReaderXml.h"

#include "Vellum/src/XmlNames.h"
#include "Vellum/src/XmlParser.h"

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
    case XmlElementNotClosed:
        return "An element isn't closed.";
    case XmlNoElementName:
        return "An element has no name.";
    case XmlBadEndTag:
        return "An end tag is malformed.";
    case XmlStrayEndTag:
        return "An end tag has no element.";
    case XmlClearNotClosed:
        return "A comment or another section isn't closed.";
    case XmlUnexpectedToken:
        return "Something in a tag doesn't belong there.";
    case XmlBadReference:
        return "A reference is malformed or unknown.";
    case XmlTooDeep:
        return "The elements are nested too deep.";
    default:
        return "The text is too long.";
    }
}

// The root is looked for as CReaderXml does it.
void CheckXml(const SDocument& document, const char* typeName)
{
    SXmlParseOutcome parse{};
    const CXmlNode tree = ParseXmlText(document.text, &parse);
    if (parse.error != XmlOk)
    {
        const SXmlOutcome outcome = CReaderXml(document.text).Check();
        RaiseIn(document, DescribeXmlError(outcome.error), {outcome.line, outcome.column});
    }
    if (tree.GetChild(ToElementName(typeName).c_str()).IsEmpty())
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
