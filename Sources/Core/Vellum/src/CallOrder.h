#pragma once

#include <cstdint>
#include <vector>

namespace Vellum
{

// The order in which the fields of one kind may have been written, from the keys of a record's section in the order of
// the document: positions in the section. Keys are indices of the string table, each there once.
//
// Written in this order, they stand as they stood, if a writer of ours has ordered them. Where that can be, it is the
// order of the indices: texts get them when they are used for the first time.
std::vector<std::uint32_t> FindCallOrder(const std::vector<std::uint32_t>& keys);

} // namespace Vellum
