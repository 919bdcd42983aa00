#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Platform/CodePages.h"

// Those that the tests expect of the system that they run on; its folder has the list.
extern const std::vector<unsigned int> KnownCodePages;

inline std::wstring Decode(unsigned int codePage, std::string_view bytes)
{
    std::wstring text;
    EXPECT_TRUE(Vellum::Platform::AppendFromCodePage(text, bytes, codePage)) << codePage;
    return text;
}

inline std::string Encode(unsigned int codePage, std::wstring_view units)
{
    std::string text;
    EXPECT_TRUE(Vellum::Platform::AppendToCodePage(text, units, codePage)) << codePage;
    return text;
}
