#pragma once

#include <sstream>
#include <string>
#include <Vellum/Vellum.h>

// A document in memory, in each format alike, so that one test body serves them all.
namespace Formats
{

struct SBinary
{
    template <class Root>
    static std::string Write(const Root& root)
    {
        CbStreamWriteBinaryBuffer stream;
        Vellum::CWriterBinary(stream).Write(root);
        return std::string(stream.GetData(), stream.GetData() + stream.GetSize());
    }

    template <class Root>
    static void Read(const std::string& document, Root& root)
    {
        CbStreamReadBinaryBuffer stream(document.data(), document.size());
        Vellum::CReaderBinary(stream).Read(root);
    }
};

template <class Writer, class Reader>
struct SText
{
    template <class Root>
    static std::string Write(const Root& root)
    {
        std::ostringstream stream;
        Writer(stream).Write(root);
        return stream.str();
    }

    template <class Root>
    static void Read(const std::string& document, Root& root)
    {
        Reader(document).Read(root);
    }
};

using SJson = SText<Vellum::CWriterJson, Vellum::CReaderJson>;
using SXml = SText<Vellum::CWriterXml, Vellum::CReaderXml>;

} // namespace Formats
