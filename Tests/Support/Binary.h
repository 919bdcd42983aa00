#pragma once

#include <string>
#include <string_view>

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/CWriterBinary.h"

#include "Support/Clients.h"
#include "Support/Texts.h"

namespace Support
{

// The document of a root, as bytes.
template <class Root>
std::string WriteBinary(const Root& root)
{
    CbStreamWriteBinaryBuffer stream;
    Vellum::CWriterBinary(stream).Write(root);
    return std::string(reinterpret_cast<const char*>(stream.GetData()), stream.GetSize());
}

// Fills a root from a document that lies in a block of exactly its size.
template <class Root>
void ReadBinary(std::string_view document, Root&& root)
{
    const auto block = std::make_unique<char[]>(document.size());
    document.copy(block.get(), document.size());
    CbStreamReadBinaryBuffer stream(block.get(), document.size());
    Vellum::CReaderBinary(stream).Read(root);
}

} // namespace Support
