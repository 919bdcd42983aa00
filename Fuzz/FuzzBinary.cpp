// Binary documents. The input is read as a document, and it is taken as the plan of a tree of client objects, which
// must come back from a document as it was and give the same bytes when it is written once more.

#include <algorithm>

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"
#include "Groundwork/IException.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/CWriterBinary.h"

#include "Support/Check.h"
#include "Support/ClientTree.h"
#include "Support/Visitor.h"

namespace
{

constexpr Fuzzing::STreeShape Shape{.maxYear = 30827}; // everything else as a binary document can carry it

void ReadDocument(const std::uint8_t* data, std::size_t size)
{
    try
    {
        CbStreamReadBinaryBuffer stream(data, size);
        const Vellum::CReaderBinary reader(stream);
        Fuzzing::VisitAll(reader);
    }
    catch (const IException&)
    {
    }
}

template <class Root>
void WriteReadWrite(const Root& written)
{
    CbStreamWriteBinaryBuffer first;
    Vellum::CWriterBinary(first).Write(written);

    const auto read = Fuzzing::MakeBlank(written);
    CbStreamReadBinaryBuffer stream(first.GetData(), first.GetSize());
    Vellum::CReaderBinary(stream).Read(*read);
    FUZZ_CHECK_NONE(Fuzzing::FirstDifference(written, *read));

    CbStreamWriteBinaryBuffer second;
    Vellum::CWriterBinary(second).Write(*read);
    FUZZ_CHECK(std::equal(first.GetData(), first.GetData() + first.GetSize(), second.GetData(),
                          second.GetData() + second.GetSize()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ReadDocument(data, size);

    Fuzzing::CByteSource source(data, size);
    if (source.Below(2) == 0)
        WriteReadWrite(*Fuzzing::MakeObject(source, Shape));
    else
        WriteReadWrite(*Fuzzing::MakeSequence(source, Shape));
    return 0;
}
