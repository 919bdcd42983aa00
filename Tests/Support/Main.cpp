#include <cstdlib>

#include <gtest/gtest.h>

#include "Support/System.h"

// Runs the tests, in the locale that VELLUM_TEST_LOCALE names if it is set.
int main(int argc, char** argv)
{
    if (const char* const locale = std::getenv("VELLUM_TEST_LOCALE"))
        Support::UseLocale(locale);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
