#include <memory>
#include <ostream>
#include <stdexcept>
#include <Vellum/Vellum.h>

#include "Commands.h"
#include "Input.h"
#include "Text.h"
#include "Values.h"

namespace
{

using Vellum::CValue;

struct SConvertOptions
{
    std::string file;
    std::string format;
    std::string output = "-";
    std::string typeName;
};

void Write(const CValue& value, const std::string& format, std::ostream& stream)
{
    if (format == "json")
        return value.ToJson(stream);
    if (format == "xml")
        return value.ToXml(stream);
    CbStreamWriteBinaryBuffer bytes;
    value.ToBinary(bytes);
    stream.write(reinterpret_cast<const char*>(bytes.GetData()), static_cast<std::streamsize>(bytes.GetSize()));
}

EStatus Convert(const SConvertOptions& options)
{
    CValue value = LoadValue(options.file);
    if (!options.typeName.empty())
        value.SetTypeName(options.typeName);
    try
    {
        WriteOutput(options.output, [&](std::ostream& stream) { Write(value, options.format, stream); });
    }
    catch (const Vellum::CDocumentException& exception)
    {
        const std::string path = ShowText(exception.GetPath(), 200);
        throw std::runtime_error(GetShownName(options.file) + (path.empty() ? "" : ", " + path) + ": " +
                                 ShowText(exception.GetReason(), std::string::npos));
    }
    return EStatus::Done;
}

} // namespace

SCommand MakeConvert()
{
    const auto options = std::make_shared<SConvertOptions>();
    return {
        .name = "convert",
        .summary = "Writes the content of a document in another format",
        .details =
            "A binary document has the kinds of its values, JSON tells texts from numbers, and XML has texts alone: "
            "what becomes of them in binary are int64, uint64 and double, bool, and texts. What a format can't hold, "
            "such as a sequence of mixed kinds in binary, is refused, and nothing is written.",
        .options =
            {
                {"", "FILE", "The document, of any format", &options->file, true},
                {"-t,--to", "json|xml|binary", "The format to write", &options->format, true},
                {"-o,--output", "OUTPUT", "The file to write; standard output without it", &options->output},
                {"--type", "NAME", "The type name of the root, by which XML is found again", &options->typeName},
            },
        .run = [options] { return Convert(*options); },
    };
}
