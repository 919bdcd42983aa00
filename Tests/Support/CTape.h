#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace Support
{

// The choices that make a tree, a document or a mutation. It is played once from its start; behind its end each choice
// is 0, the plainest. RapidCheck makes tapes and shortens those of a failure, so whatever is made of one needs no
// shrinking of its own.
class CTape
{
public:
    explicit CTape(std::vector<std::uint16_t> choices) : choices(std::move(choices)) {}

    std::uint16_t Next() { return at < choices.size() ? choices[at++] : std::uint16_t{0}; }

    // A choice of 0 up to count - 1.
    std::size_t Below(std::size_t count)
    {
        const std::size_t high = count > 0x10000 ? std::size_t{Next()} << 16 : 0;
        return (high | Next()) % count;
    }

    bool OneIn(std::size_t count) { return Below(count) == count - 1; }

    template <class List>
    const auto& From(const List& list)
    {
        return list[Below(std::size(list))];
    }

    std::uint64_t Bits()
    {
        std::uint64_t bits = 0;
        for (int i = 0; i < 4; ++i)
            bits = bits << 16 | Next();
        return bits;
    }

private:
    std::vector<std::uint16_t> choices;
    std::size_t at = 0;
};

} // namespace Support
