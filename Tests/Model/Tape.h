#pragma once

#include <cstdint>
#include <rapidcheck.h>
#include <string>
#include <vector>

namespace Model
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

// Tapes of up to twenty choices for each step of RapidCheck's size.
inline rc::Gen<std::vector<std::uint16_t>> AnyTape()
{
    using Choices = std::vector<std::uint16_t>;
    return [](const rc::Random& given, int size)
    {
        rc::Random random = given;
        Choices choices(static_cast<std::size_t>(size) * 20);
        for (std::uint16_t& choice : choices)
            choice = static_cast<std::uint16_t>(random.next());
        return rc::shrinkable::shrinkRecur(
            std::move(choices),
            [](const Choices& all)
            {
                const auto smaller = [](std::uint16_t choice)
                {
                    const std::uint16_t half = choice / 2;
                    return choice == 0 ? rc::Seq<std::uint16_t>() : rc::seq::just(std::uint16_t{0}, half);
                };
                return rc::seq::concat(rc::shrink::removeChunks(all), rc::shrink::eachElement(all, smaller));
            });
    };
}

} // namespace Model
