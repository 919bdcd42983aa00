#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Workload.h"

// Values of the workload for which a peer has no form of its own. All peers share these, so that they are no
// difference between any two.
namespace Measured
{

// A date as a number, for binary peers.
std::uint64_t PackDate(const CbDateTime& date);
CbDateTime UnpackDate(std::uint64_t packed);

// A date as "2024-03-01T10:20:30", for text peers.
using DateText = std::array<char, 20>; // the last one is NUL
DateText FormatDate(const CbDateTime& date);
CbDateTime ParseDate(std::string_view text);

// A signature as Base64, for text peers.
std::string EncodeSignature(const Signature& signature);
void DecodeSignature(std::string_view text, Signature& signature);

// Where a peer's documents can't be searched, their fields are read into a table that can.
using FieldTable = std::unordered_map<std::string, std::int32_t>;
void TakeFields(const FieldTable& table, SFields& fields);

} // namespace Measured
