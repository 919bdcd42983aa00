#pragma once

#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Support/Texts.h"

namespace Support
{

// The block of code on a page of Docs whose first line begins so.
inline std::string CodeBlock(const std::string& pageName, const std::string& begin)
{
    std::ifstream file(VELLUM_DOCS "/" + pageName, std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::size_t at = page.find("\n" + begin);
    EXPECT_NE(at, std::string::npos) << pageName;
    return at == std::string::npos ? "" : page.substr(at + 1, page.find("\n```", at) - at - 1);
}

// The worked example of each page: what the writer makes of its object, and what the reader takes.
inline std::string XmlExample() { return Lines(CodeBlock("XmlFormat.md", "<?xml ")); }
inline std::string JsonExample() { return Lines(CodeBlock("JsonFormat.md", "{→")); }

// An offset, if there is one, stands in the first three columns of a line, and words behind the bytes.
inline std::string BinaryExample()
{
    std::string bytes;
    std::istringstream lines(CodeBlock("BinaryFormat.md", "  0  "));
    for (std::string line; std::getline(lines, line);)
    {
        const auto isHex = [](char character) { return std::isxdigit(static_cast<unsigned char>(character)) != 0; };
        EXPECT_TRUE(!isHex(line[2]) || std::stoul(line) == bytes.size()) << line;
        std::istringstream words(line.substr(3));
        for (std::string word; words >> word && word.size() == 2 && isHex(word[0]) && isHex(word[1]);)
            bytes += Bytes(word);
    }
    return bytes;
}

} // namespace Support
