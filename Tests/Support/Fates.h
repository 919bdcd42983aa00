#pragma once

// clang-format off
#include <gtest/gtest.h> // first: the next one needs it
#include <rapidcheck/gtest.h>
// clang-format on
#include <cerrno>
#include <string>
#include <vector>

#include "Support/CSystemCalls.h"

namespace Support
{

// Any number of interruptions, and of moves that end early.
inline CSystemCalls::Fates AnyDelays()
{
    CSystemCalls::Fates fates;
    for (const unsigned char most : *rc::gen::arbitrary<std::vector<unsigned char>>())
        most % 4 == 0 ? fates.push_back({EINTR}) : fates.push_back({0, most});
    return fates;
}

// Up to a dozen pieces of a text that hardly repeats, of `sizes` below 256 KiB.
inline std::vector<std::string> AnyPieces(const rc::Gen<std::size_t>& sizes)
{
    static const std::string bytes = []
    {
        std::string text(std::size_t{1} << 18, '\0');
        for (std::size_t i = 0; i < text.size(); ++i)
            text[i] = static_cast<char>(i * 31 / 7 + i / 256);
        return text;
    }();
    std::vector<std::string> pieces;
    std::size_t at = 0;
    for (int count = *rc::gen::inRange(0, 12); count > 0; --count)
        pieces.push_back(bytes.substr(at++, *sizes));
    return pieces;
}

} // namespace Support
