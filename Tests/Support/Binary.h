#pragma once

#include <string>
#include <string_view>

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Vellum/CReaderBinary.h"
#include "Vellum/CValue.h"
#include "Vellum/CWriterBinary.h"

#include "Support/Clients.h"
#include "Support/Texts.h"

namespace Support
{

// Under "x" 7, under "name" a text, under "on" true, and under "tags" a sequence of the type "TagList", in hexadecimal.
inline constexpr const char* ExampleDocument = "00 00 00 00 10 05 00 00 00"          // version, object, strings:
                                               "02 00 00 00 6F 6E 02 00 00 00"       // on
                                               "04 00 00 00 6E 61 6D 65 01 00 00 00" // name
                                               "04 00 00 00 74 61 67 73 03 00 00 00" // tags
                                               "07 00 00 00 54 61 67 4C 69 73 74 04 00 00 00" // TagList
                                               "01 00 00 00 78 00 00 00 00"                   // x
                                               "04"                                           // sections
                                               "00 01 00 00 00 02 00 00 00 01"                // bool
                                               "07 01 00 00 00 00 00 00 00 07 00 00 00"       // int32
                                               "0C 01 00 00 00 01 00 00 00 02 00 00 00 61 62" // narrow text
                                               "11 01 00 00 00 03 00 00 00 04 02 00 00 00 01 00 02 00";

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

// A value's document, and the value of one.
inline std::string BinaryOf(const Vellum::CValue& value)
{
    CbStreamWriteBinaryBuffer stream;
    value.ToBinary(stream);
    return std::string(reinterpret_cast<const char*>(stream.GetData()), stream.GetSize());
}
inline Vellum::CValue ValueOf(const std::string& document)
{
    CbStreamReadBinaryBuffer stream(document.data(), document.size());
    return Vellum::CValue::FromBinary(stream);
}

} // namespace Support
