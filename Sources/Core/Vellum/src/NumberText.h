#pragma once

#include <cstdint>
#include <string_view>

// Conversion::StringToInt and StringToDouble for a text that is a part of another one, as readers have it. They raise
// in the name of those.
namespace Vellum::Conversion
{

std::int64_t ViewToInt(std::string_view text);
double ViewToDouble(std::string_view text);

} // namespace Vellum::Conversion
