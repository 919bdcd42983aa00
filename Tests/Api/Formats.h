#pragma once

#include <sstream>
#include <string>
#include <Vellum/Vellum.h>

#include "Support/Binary.h"

// A document in memory, in each format alike, so that one test body serves them all.
namespace Formats
{

struct SBinary
{
    static std::string Write(const auto& root) { return Support::WriteBinary(root); }
    static void Read(const std::string& document, auto& root) { Support::ReadBinary(document, root); }
};

template <class Writer, class Reader>
struct SText
{
    static std::string Write(const auto& root)
    {
        std::ostringstream stream;
        Writer(stream).Write(root);
        return stream.str();
    }
    static void Read(const std::string& document, auto& root) { Reader(document).Read(root); }
};

using SJson = SText<Vellum::CWriterJson, Vellum::CReaderJson>;
using SXml = SText<Vellum::CWriterXml, Vellum::CReaderXml>;

} // namespace Formats
