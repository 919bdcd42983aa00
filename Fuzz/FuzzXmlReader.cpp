// XML both ways. An input is a document, which is read by a client that asks for everything; or, behind a `!`, the
// making of a client tree, which is written, read back and compared.

#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include "Vellum/CReaderXml.h"
#include "Vellum/CWriterXml.h"

#include "Support/Check.h"
#include "Support/ClientTree.h"
#include "Support/Visitor.h"
#include "Support/XmlShape.h"

namespace
{

using namespace Fuzzing;

// A block of exactly the document's size, so that the sanitizer sees one byte too far.
void ReadDocument(const std::uint8_t* data, std::size_t size)
{
    const auto document = std::make_unique<char[]>(size + 1);
    if (size != 0)
        std::memcpy(document.get(), data, size);
    const Vellum::CReaderXml reader(document.get());
    const Vellum::SXmlOutcome outcome = reader.Check();
    FUZZ_CHECK(outcome.hasTree == (outcome.error <= 1) && (outcome.line != 0) == (outcome.error != 0));
    VisitAll(reader);
}

template <class Root>
void WriteAndReadBack(const Root& written)
{
    std::ostringstream stream;
    Vellum::CWriterXml(stream).Write(written);
    const std::string document = stream.str();
    FUZZ_CHECK(Vellum::CReaderXml(document).Check().error == 0);
    ReadDocument(reinterpret_cast<const std::uint8_t*>(document.data()), document.size());

    const auto read = MakeBlank(written);
    Vellum::CReaderXml(document).Read(*read);
    FUZZ_CHECK(FirstDifference(written, *read) == "");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || *data != '!')
    {
        ReadDocument(data, size);
        return 0;
    }
    CByteSource source(data + 1, size - 1);
    if ((source.Byte() & 1) != 0)
        WriteAndReadBack(*MakeObject(source, MakeXmlShape()));
    else
        WriteAndReadBack(*MakeSequence(source, MakeXmlShape()));
    return 0;
}
