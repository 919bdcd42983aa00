#pragma once

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

struct SJson
{
    template <class Root>
    static std::string Write(const Root& root)
    {
        std::ostringstream stream;
        Vellum::CWriterJson(stream).Write(root);
        return stream.str();
    }

    template <class Root>
    static void Read(const std::string& document, Root& root)
    {
        Vellum::CReaderJson(document).Read(root);
    }
};

} // namespace Formats
