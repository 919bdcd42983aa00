#include "Vellum/CReaderBinary.h"
#include "Vellum/CReaderJson.h"

#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/CJsonScanner.h"
#include "Vellum/src/TextPosition.h"

// The Check of the readers of binary and JSON documents. They stand beside their readers and take what these take.

namespace Vellum
{

SOutcome CReaderBinary::Check(CbStreamReadBinary& stream)
{
    const auto damage = CBinaryWalker(stream).Walk();
    return damage ? SOutcome{false, damage->offset, 0, 0, damage->reason, damage->path} : SOutcome();
}

SOutcome CReaderJson::Check() const
{
    if (text == nullptr)
        return {false, 0, 0, 0, "Expected a text, found a null pointer."};
    try
    {
        CJsonScanner(text, false).CheckDocument(EJsonRoot::Either);
        return {};
    }
    catch (const SFault& fault)
    {
        const STextPosition position = GetTextPosition(text, static_cast<std::size_t>(fault.offset));
        return {false, fault.offset, position.line, position.column, fault.reason, fault.path};
    }
}

} // namespace Vellum
