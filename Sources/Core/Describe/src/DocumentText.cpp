#include "Describe/src/DocumentText.h"

#include <string>

#include "Vellum/CDocumentException.h"
#include "Vellum/CReaderXml.h"

#include "Vellum/src/CheckWholeBinary.h"
#include "Vellum/src/CJsonScanner.h"

namespace Vellum::Describing
{
namespace
{

[[noreturn]] void RaiseIn(const SDocument& document, const SOutcome& outcome)
{
    throw CDocumentException(__FILE__, __LINE__, document.function,
                             {outcome.reason, outcome.path, {}, outcome.line, outcome.column, outcome.offset});
}

void CheckJson(const SDocument& document, bool isSequence, bool isStrict)
{
    try
    {
        CJsonScanner(document.text, isStrict).CheckDocument(isSequence ? EJsonRoot::Sequence : EJsonRoot::Object);
    }
    catch (const SFault& fault)
    {
        const STextPosition position = GetTextPosition(document.text, static_cast<std::size_t>(fault.offset));
        RaiseIn(document, {false, fault.offset, position.line, position.column, fault.reason, fault.path});
    }
}

void CheckXml(const SDocument& document, const char* typeName)
{
    const SXmlOutcome outcome = CReaderXml(document.text).Check(typeName);
    if (!outcome.isAccepted)
        RaiseIn(document, outcome);
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

void CheckBytes(const SDocument& document, const void* data, std::size_t size)
{
    const SOutcome outcome = CheckWholeBinary(data, size);
    if (!outcome.isAccepted)
        RaiseIn(document, outcome);
}

STextPosition FindPosition(const SPlace& place)
{
    if (place.document->format != EFormat::Json || place.document->text == nullptr)
        return {};
    return GetTextPosition(place.document->text, static_cast<std::size_t>(FindInJson(place) - place.document->text));
}

std::string DescribeRefusal(const IException& exception)
{
    return std::string("What stands here can't be read: ") + exception.GetFunctionName() + " refuses it.";
}

} // namespace Vellum::Describing
