#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Vellum
{
struct SBinaryDamage;
}

// What a value of a binary document says, by the tag of its kind and its bytes: `7`, `"ab"`, `2026-11-23 08:00:00.000`.
// Of a text no more than `most` code points are shown. Objects and sequences say nothing of themselves.
std::string ShowValue(std::uint8_t tag, std::string_view bytes, std::size_t most);

// How many bytes a number of that kind has; 0 if the kind is none of numbers.
std::size_t GetWidth(std::uint8_t tag);

// "Damaged at 100, in name: Expected ..., found ..."
std::string ShowDamage(const Vellum::SBinaryDamage& damage);
