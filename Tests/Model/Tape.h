#pragma once

#include <cstdint>
#include <rapidcheck.h>
#include <vector>

#include "Support/CTape.h"

namespace Model
{

using Support::CTape;

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
