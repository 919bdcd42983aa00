#pragma once

#include <cstdint>
#include <string>

#include "Groundwork/IException.h"

#include "Describe/Places.h"

namespace Vellum::Describing
{

// A place in a text: lines end with LF, columns are bytes, both count from 1. 0 if it isn't known.
struct STextPosition
{
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

// Where the value of a place stands, or what it should stand in. Known for JSON.
STextPosition FindPosition(const SPlace& place);

// Raises CDocumentException, with line and column, for a text that is no document of its format with such a root.
// Strict also refuses JSON that CReaderJson is lenient about.
void CheckText(const SDocument& document, const char* typeName, bool isSequence, bool isStrict);

// One sentence about what a reader has raised.
std::string DescribeRefusal(const IException& exception);

} // namespace Vellum::Describing
