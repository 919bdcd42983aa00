#pragma once

#include <string>

#include "Support/CTape.h"

// Documents that no writer of ours has made.
namespace Model
{

using Support::CTape;

// A text with brackets, lenient in every way that a reader takes, and now and then beyond.
std::string AnyJson(CTape& tape, int depth = 0);

// The same for elements, below one of the given name.
std::string AnyXml(CTape& tape, const std::string& root);

// In capitals.
std::string Folded(std::string name);

// A few changes of a document, or none: bytes, pieces gone, twice, exchanged or put in.
std::string Mutated(std::string document, CTape& tape, bool isBinary);

} // namespace Model
