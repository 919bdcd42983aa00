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

// Bytes of any kind, in pieces of `sizes`.
inline std::vector<std::string> AnyPieces(const rc::Gen<std::size_t>& sizes)
{
    std::vector<std::string> pieces;
    unsigned int next = 0;
    for (const std::size_t size : *rc::gen::container<std::vector<std::size_t>>(sizes))
        for (std::string& piece = pieces.emplace_back(); piece.size() < size;)
            piece += static_cast<char>(next++ * 31 / 7);
    return pieces;
}

} // namespace Support
