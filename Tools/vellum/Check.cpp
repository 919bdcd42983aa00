#include <iostream>
#include <memory>
#include <string>
#include <vector>
#include <Vellum/Vellum.h>

#include "Vellum/src/CheckWholeBinary.h"

#include "Commands.h"
#include "Input.h"
#include "Text.h"
#include "Values.h"

namespace
{

using Vellum::EFormat;
using Vellum::SOutcome;

struct SCheckOptions
{
    std::vector<std::string> files;
    std::string typeName;
};

// A root is found by its type name. Without one that is asked for it is the name of the root that is there.
SOutcome CheckXml(const std::string& document, const std::string& typeName)
try
{
    const std::string root = typeName.empty() ? Vellum::CValue::FromXml(document).GetTypeName() : typeName;
    return Vellum::CReaderXml(document).Check(root.c_str());
}
catch (const Vellum::CDocumentException& exception)
{
    const Vellum::SDocumentFailure& failure = exception.GetFailure();
    return {false, failure.offset, failure.line, failure.column, failure.reason, failure.path};
}

SOutcome CheckDocument(const std::string& document, EFormat format, const std::string& typeName)
{
    switch (format)
    {
    case EFormat::Binary:
        return Vellum::CheckWholeBinary(document.data(), document.size());
    case EFormat::Json:
        return Vellum::CReaderJson(document).Check();
    case EFormat::Xml:
        return CheckXml(document, typeName);
    default:
        return {false, 0, 0, 0, "Expected the beginning of a binary, JSON or XML document, found something else."};
    }
}

EStatus Check(const SCheckOptions& options)
{
    EStatus status = EStatus::Done;
    for (const std::string& file : options.files)
    {
        const std::string document = ReadInput(file);
        const EFormat format = Recognize(document);
        const SOutcome outcome = CheckDocument(document, format, options.typeName);
        std::cout << GetShownName(file) << ": ";
        if (outcome.isAccepted)
            std::cout << "accepted, " << GetName(format) << '\n';
        else
            std::cout << ShowPlace(outcome.line, outcome.column, outcome.offset, outcome.path) << ": "
                      << ShowText(outcome.reason, std::string::npos) << '\n';
        if (!outcome.isAccepted)
            status = EStatus::Differs;
    }
    return status;
}

} // namespace

SCommand MakeCheck()
{
    const auto options = std::make_shared<SCheckOptions>();
    return {
        .name = "check",
        .summary = "Tells whether documents are in order, or else what is wrong and where",
        .details = "A document is in order if the library reads it. A line for each tells that, or the place, the path "
                   "that leads there, and what is expected in place of what there is.",
        .options =
            {
                {"", "FILE", "The documents, each of any format", &options->files, true},
                {"--type", "NAME", "The type name that the root of an XML document has to have", &options->typeName},
            },
        .run = [options] { return Check(*options); },
    };
}
