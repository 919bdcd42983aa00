#pragma once

#include <string>
#include <vector>

#include "Support/CTape.h"

namespace Support
{

// Up to a dozen pieces of a text that hardly repeats. `anySize` gives sizes below 256 KiB.
template <class AnySize>
std::vector<std::string> AnyPieces(CTape& tape, const AnySize& anySize)
{
    static const std::string bytes = []
    {
        std::string text(std::size_t{1} << 18, '\0');
        for (std::size_t i = 0; i < text.size(); ++i)
            text[i] = static_cast<char>(i * 31 / 7 + i / 256);
        return text;
    }();
    std::vector<std::string> pieces;
    for (std::size_t count = tape.Below(12), at = 0; at < count; ++at)
        pieces.push_back(bytes.substr(at, anySize(tape)));
    return pieces;
}

} // namespace Support
