// One client tree through all three formats: each brings back what was written, and so they agree with each other.

#include <cstdint>
#include <sstream>

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/CReaderJson.h"
#include "Vellum/CReaderXml.h"
#include "Vellum/CWriterBinary.h"
#include "Vellum/CWriterJson.h"
#include "Vellum/CWriterXml.h"

#include "Support/Check.h"
#include "Support/ClientTree.h"
#include "Support/XmlShape.h"

namespace
{

using namespace Fuzzing;

// What all formats carry: a binary sequence has elements of one kind, and a JSON reader refuses a blob without bytes.
STreeShape MakeCommonShape()
{
    STreeShape shape = MakeXmlShape();
    shape.mixedSequences = false;
    shape.emptyBlobs = false;
    return shape;
}

template <class Root>
void ExpectBack(const Vellum::IReader& reader, const Root& written)
{
    const auto read = MakeBlank(written);
    reader.Read(*read);
    FUZZ_CHECK(FirstDifference(written, *read) == "");
}

template <class Root>
void WriteAndReadBack(const Root& written)
{
    CbStreamWriteBinaryBuffer bytes;
    Vellum::CWriterBinary(bytes).Write(written);
    CbStreamReadBinaryBuffer stream(bytes.GetData(), bytes.GetSize());
    ExpectBack(Vellum::CReaderBinary(stream), written);

    std::ostringstream json;
    Vellum::CWriterJson(json).Write(written);
    const std::string jsonText = json.str();
    ExpectBack(Vellum::CReaderJson(jsonText), written);

    std::ostringstream xml;
    Vellum::CWriterXml(xml).Write(written);
    const std::string xmlText = xml.str();
    ExpectBack(Vellum::CReaderXml(xmlText), written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CByteSource source(data, size);
    if ((source.Byte() & 1) != 0)
        WriteAndReadBack(*MakeObject(source, MakeCommonShape()));
    else
        WriteAndReadBack(*MakeSequence(source, MakeCommonShape()));
    return 0;
}
