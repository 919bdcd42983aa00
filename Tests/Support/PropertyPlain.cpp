#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Support/Property.h"

// In place of RapidCheck, where that can't be had: the same tapes, none of them made shorter.
namespace Support
{

namespace
{

unsigned int MakeSeed()
{
    const char* const asked = std::getenv("RC_PARAMS");
    const char* const given = asked == nullptr ? nullptr : std::strstr(asked, "seed=");
    const unsigned int seed =
        given == nullptr ? std::random_device()() : static_cast<unsigned int>(std::strtoul(given + 5, nullptr, 10));
    std::cout << "Using configuration: seed=" << seed << std::endl;
    return seed;
}

CTape MakeTape(std::mt19937& random, int step, int steps)
{
    std::vector<std::uint16_t> choices(static_cast<std::size_t>(step * 100 / steps) * 20);
    std::ranges::generate(choices, [&] { return static_cast<std::uint16_t>(random()); });
    return CTape(std::move(choices));
}

// What a failure is told as, or nothing.
std::string Play(const std::function<void(CTape&)>& property, CTape tape)
{
    try
    {
        property(tape);
    }
    catch (const std::exception& exception)
    {
        return exception.what();
    }
    return {};
}

} // namespace

bool CheckProperty(const std::function<void(CTape&)>& property, int cases, unsigned int round)
{
    static const unsigned int seed = MakeSeed();
    std::mt19937 random(seed + round);
    for (int step = 0; step < cases; ++step)
    {
        const std::string failure = Play(property, MakeTape(random, step, cases));
        if (!failure.empty())
            ADD_FAILURE() << failure;
        if (testing::Test::HasFailure())
        {
            ADD_FAILURE() << "on tape " << step << " of seed " << seed + round;
            return false;
        }
    }
    return true;
}

} // namespace Support
