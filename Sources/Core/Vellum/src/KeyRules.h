#pragma once

#include <string>
#include <string_view>

namespace Vellum
{

// Which keys the text writers, which put them down as they are, bring back.

// Nothing may close the quotes too early, or keep them open.
bool FitsJson(std::string_view key);

// The parser takes some names for sections, and bytes that are no UTF-8 for parts of others.
bool FitsXml(const std::string& key);

// As XML compares them.
std::string FoldKey(std::string key);

} // namespace Vellum
