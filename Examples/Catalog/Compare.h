#pragma once

#include <iosfwd>

#include "CCatalogFolder.h"

// Compares two catalogs field by field, writes a line for each difference, with the path of the field, and returns how
// many there were.
std::size_t Compare(const CCatalogFolder& expected, const CCatalogFolder& actual, std::ostream& out);
