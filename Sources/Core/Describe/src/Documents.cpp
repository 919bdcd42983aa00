#include "Describe/Documents.h"

#include <exception>
#include <ostream>
#include <sstream>

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"
#include "Groundwork/IException.h"

#include "Vellum/CException.h"
#include "Vellum/CReaderBinary.h"
#include "Vellum/CReaderJson.h"
#include "Vellum/CReaderXml.h"
#include "Vellum/CWriterBinary.h"
#include "Vellum/CWriterJson.h"
#include "Vellum/CWriterXml.h"

#include "Vellum/src/WriteThrough.h"

#include "Describe/src/DocumentText.h"

namespace Vellum::Describing
{
namespace
{

// The text writers put a CException of theirs in the place of whatever passes through them.
template <class Root>
void WriteOnto(std::ostringstream& stream, SDocument& document, const Root& root)
{
    std::exception_ptr failure;
    document.failure = &failure;
    try
    {
        if (document.format == EFormat::Json)
            CWriterJson(stream).Write(root);
        else
            CWriterXml(stream).Write(root);
    }
    catch (const CException&)
    {
        if (failure != nullptr)
            std::rethrow_exception(failure);
        throw;
    }
}

template <class Root>
std::string MakeText(SDocument& document, const Root& root)
{
    std::ostringstream stream;
    WriteOnto(stream, document, root);
    return std::move(stream).str();
}

template <class Root>
void PutText(SDocument& document, const Root& root, std::ostream& target)
{
    WriteThrough(target, [&](std::ostringstream& stream) { WriteOnto(stream, document, root); });
}

template <class Root>
std::vector<unsigned char> MakeBinary(const Root& root)
{
    CbStreamWriteBinaryBuffer stream;
    CWriterBinary(stream).Write(root);
    return {stream.GetBytes().begin(), stream.GetBytes().end()};
}

// Without Strict, what the readers raise leaves as it is.
template <class Function>
void CallReader(const SDocument& document, bool isStrict, const Function& read)
try
{
    read();
}
catch (const IException&)
{
    if (!isStrict)
        throw;
    RaiseAgainAt(SPlace{&document});
}

template <class Root>
void ReadFromText(const SDocument& document, Root& root, bool isStrict)
{
    if (isStrict)
        CheckText(document, root.GetTypeName(), std::same_as<Root, ISerializableContainer>, true);
    CallReader(document, isStrict,
               [&]
               {
                   if (document.format == EFormat::Json)
                       CReaderJson(document.text).Read(root);
                   else
                       CReaderXml(document.text).Read(root);
               });
}

template <class Root>
void ReadFromBytes(const SDocument& document, const void* data, std::size_t size, Root& root, bool isStrict)
{
    if (isStrict)
        CheckBytes(document, data, size);
    CallReader(document, isStrict,
               [&]
               {
                   CbStreamReadBinaryBuffer stream(data, size);
                   CReaderBinary(stream).Read(root);
               });
}

} // namespace

std::string WriteText(SDocument& document, const ISerializable& root) { return MakeText(document, root); }
std::string WriteText(SDocument& document, const ISerializableContainer& root) { return MakeText(document, root); }

void WriteText(SDocument& document, const ISerializable& root, std::ostream& stream)
{
    PutText(document, root, stream);
}
void WriteText(SDocument& document, const ISerializableContainer& root, std::ostream& stream)
{
    PutText(document, root, stream);
}

std::vector<unsigned char> WriteBinary(const ISerializable& root) { return MakeBinary(root); }
std::vector<unsigned char> WriteBinary(const ISerializableContainer& root) { return MakeBinary(root); }

void ReadText(const SDocument& document, ISerializable& root, bool isStrict) { ReadFromText(document, root, isStrict); }
void ReadText(const SDocument& document, ISerializableContainer& root, bool isStrict)
{
    ReadFromText(document, root, isStrict);
}

void ReadBinary(const SDocument& document, const void* data, std::size_t size, ISerializable& root, bool isStrict)
{
    ReadFromBytes(document, data, size, root, isStrict);
}
void ReadBinary(const SDocument& document, const void* data, std::size_t size, ISerializableContainer& root,
                bool isStrict)
{
    ReadFromBytes(document, data, size, root, isStrict);
}

} // namespace Vellum::Describing
