#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Text as it can be shown: what isn't UTF-8, and what would do something to a terminal, becomes \n, \t, \x1B and so on.
// Of a longer text than `most` code points the rest is left out, with "..." in its place.
std::string ShowText(std::string_view text, std::size_t most);

// The same between quotation marks; one inside gets a backslash.
std::string Quote(std::string_view text, std::size_t most);

// "1 field", "2 fields".
std::string Count(std::uint64_t count, std::string noun);
