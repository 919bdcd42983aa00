#include <sstream>

#include "Handwritten.h"

using Handwritten::SShop;

// What a program does with its classes: out and in, in each format.
SShop ThroughAll(const SShop& shop)
{
    CbStreamWriteBinaryBuffer bytes;
    Vellum::CWriterBinary(bytes).Write(shop);
    SShop first;
    CbStreamReadBinaryBuffer stream(bytes.GetData(), bytes.GetSize());
    Vellum::CReaderBinary(stream).Read(first);

    std::ostringstream json;
    Vellum::CWriterJson(json).Write(first);
    SShop second;
    Vellum::CReaderJson(json.str()).Read(second);

    std::ostringstream xml;
    Vellum::CWriterXml(xml).Write(second);
    SShop third;
    Vellum::CReaderXml(xml.str()).Read(third);
    return third;
}
