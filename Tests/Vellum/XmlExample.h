#pragma once

#include <fstream>
#include <iterator>
#include <string>

#include "Support/Texts.h"

namespace Support
{

// The worked example of Docs/XmlFormat.md: its first block of code.
inline std::string XmlExample()
{
    std::ifstream file(VELLUM_DOCS "/XmlFormat.md", std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::size_t begin = page.find("```xml\n") + 7;
    return Lines(page.substr(begin, page.find("\n```", begin) - begin));
}

} // namespace Support
