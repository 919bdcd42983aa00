#include "Platform/StandardError.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(StandardError, TakesWholeTexts)
{
    testing::internal::CaptureStderr();
    WriteToStandardError("a line\n");
    WriteToStandardError("");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a line\n");
}

} // namespace
