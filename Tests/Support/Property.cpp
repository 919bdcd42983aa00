#include "Support/Property.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "Model/Tape.h"

namespace Support
{

std::clock_t GetEndOfTest(double seconds)
{
    if (const char* const asked = std::getenv("VELLUM_MODEL_SECONDS"))
        seconds = std::atof(asked);
    return std::clock() + static_cast<std::clock_t>(seconds * CLOCKS_PER_SEC);
}

void CheckProperty(const std::function<void(CTape&)>& property, int cases)
{
    const auto play = [&]
    {
        CTape tape(*Model::AnyTape());
        testing::TestPartResultArray failures;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
            property(tape);
        }
        if (failures.size() != 0)
            RC_FAIL(std::string(failures.GetTestPartResult(0).message()));
    };
    rc::detail::TestParams params = rc::detail::configuration().testParams;
    params.maxSuccess = std::max(params.maxSuccess, cases);
    const auto result = rc::detail::checkTestable(play, rc::detail::TestMetadata(), params);
    if (result.template is<rc::detail::SuccessResult>())
        return;
    std::ostringstream message;
    rc::detail::printResultMessage(result, message);
    ADD_FAILURE() << message.str();
}

} // namespace Support
