// JSON both ways. An input is a document, which is read by a client that asks for everything; or, behind a `!`, the
// making of a client tree, which is written, read back and compared.

#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include "Vellum/CReaderJson.h"
#include "Vellum/CWriterJson.h"

#include "Support/Check.h"
#include "Support/ClientTree.h"
#include "Support/Visitor.h"

namespace
{

using namespace Fuzzing;

// A block of exactly the document's size, so that the sanitizer sees one byte too far.
void ReadDocument(const std::uint8_t* data, std::size_t size)
{
    const auto document = std::make_unique<char[]>(size + 1);
    if (size != 0)
        std::memcpy(document.get(), data, size);
    VisitAll(Vellum::CReaderJson(document.get()));
}

// Keys go out as they are, so those that would end their quotes can't come back.
std::string MakeKeyLetters()
{
    std::string letters;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '"' && byte != '\\')
            letters += static_cast<char>(byte);
    return letters;
}

STreeShape MakeShape()
{
    static const std::string KeyLetters = MakeKeyLetters();
    STreeShape shape;
    shape.keyLetters = KeyLetters;
    shape.keyInManyKinds = false;
    shape.mixedSequences = true;
    shape.loneSurrogates = false;
    shape.nonFiniteNumbers = false; // the sign and the payload of a not-a-number are lost
    shape.milliseconds = false;
    shape.emptyBlobs = false; // refused by the reader
    return shape;
}

template <class Root>
void WriteAndReadBack(const Root& written, bool showPoint)
{
    std::ostringstream stream;
    Vellum::CWriterJson writer(stream);
    writer.SetShowPoint(showPoint);
    writer.Write(written);
    const std::string document = stream.str();
    ReadDocument(reinterpret_cast<const std::uint8_t*>(document.data()), document.size());

    const auto read = MakeBlank(written);
    Vellum::CReaderJson(document).Read(*read);
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
    const std::uint8_t choice = source.Byte();
    const bool showPoint = (choice & 1) != 0;
    if ((choice & 2) != 0)
        WriteAndReadBack(*MakeObject(source, MakeShape()), showPoint);
    else
        WriteAndReadBack(*MakeSequence(source, MakeShape()), showPoint);
    return 0;
}
