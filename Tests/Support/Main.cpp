#include <cstdlib>
#include <locale>

#include <gtest/gtest.h>

// Runs the tests, in the locale that VELLUM_TEST_LOCALE names if it is set.
int main(int argc, char** argv)
{
    if (const char* const locale = std::getenv("VELLUM_TEST_LOCALE"))
        std::locale::global(std::locale(locale)); // the C library's as well
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
