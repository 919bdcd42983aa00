#pragma once

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

struct SJson
{
    static std::string Write(const auto& root)
    {
        std::ostringstream stream;
        Vellum::CWriterJson(stream).Write(root);
        return stream.str();
    }
    static void Read(const std::string& document, auto& root) { Vellum::CReaderJson(document).Read(root); }
};

} // namespace Formats
