#pragma once

#include <span>
#include <string>

class CbStreamWriteBinary;

namespace Vellum
{

class ISerializable;
class ISerializableContainer;

// CWriterBinary::Write, with a string table that has these texts from the beginning, with their places as indices.
void WriteKnown(CbStreamWriteBinary& stream, const ISerializable& root, std::span<const std::string> texts);
void WriteKnown(CbStreamWriteBinary& stream, const ISerializableContainer& root, std::span<const std::string> texts);

} // namespace Vellum
