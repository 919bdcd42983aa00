#pragma once

#include <cstddef>
#include <string>

#include "Groundwork/IException.h"

#include "Vellum/src/TextPosition.h"

#include "Describe/Places.h"

namespace Vellum::Describing
{

// Where the value of a place stands, or what it should stand in. Known for JSON.
STextPosition FindPosition(const SPlace& place);

// Raises CDocumentException, with line and column, for a text that is no document of its format with such a root.
// Strict also refuses JSON that CReaderJson is lenient about.
void CheckText(const SDocument& document, const char* typeName, bool isSequence, bool isStrict);

// The same for bytes that are no binary document, or more than one; with the offset.
void CheckBytes(const SDocument& document, const void* data, std::size_t size);

// One sentence about what a reader has raised.
std::string DescribeRefusal(const IException& exception);

} // namespace Vellum::Describing
