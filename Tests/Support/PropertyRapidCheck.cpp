#include <algorithm>
#include <cstdint>
#include <rapidcheck.h>
#include <sstream>
#include <vector>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "Support/Property.h"

namespace Support
{

namespace
{

// Tapes of up to twenty choices for each step of RapidCheck's size.
rc::Gen<std::vector<std::uint16_t>> AnyTape()
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

} // namespace

bool CheckProperty(const std::function<void(CTape&)>& property, int cases, unsigned int round)
{
    const auto play = [&]
    {
        CTape tape(*AnyTape());
        testing::TestPartResultArray failures;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
            property(tape);
        }
        if (failures.size() != 0)
            RC_FAIL(std::string(failures.GetTestPartResult(0).message()));
    };
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    rc::detail::TestParams params = rc::detail::configuration().testParams;
    params.maxSuccess = std::max(params.maxSuccess, cases);
    params.seed += round;
    const auto result = rc::detail::checkTestable(play, rc::detail::TestMetadata{name, name}, params);
    if (result.template is<rc::detail::SuccessResult>())
        return true;
    std::ostringstream message;
    rc::detail::printResultMessage(result, message);
    ADD_FAILURE() << message.str();
    return false;
}

} // namespace Support
