#include "Platform/ModuleResource.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

std::optional<std::string> Find(HINSTANCE module, int id, std::wstring_view type)
{
    const auto found = FindModuleResource(module, id, type);
    return found ? std::optional<std::string>({found->begin(), found->end()}) : std::nullopt;
}

TEST(ModuleResource, EachModuleHasItsOwn)
{
    const HINSTANCE module = LoadModule(RESOURCE_MODULE);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(Find(nullptr, 1, L"TEXT"), "of the program");
    EXPECT_EQ(FindModuleResource(nullptr, 1, L"TEXT")->data(), FindModuleResource(nullptr, 1, L"TEXT")->data());
    EXPECT_EQ(Find(module, 1, L"TEXT"), "of the module");
    EXPECT_EQ(Find(nullptr, 3, L"TEXT"), std::nullopt);
    EXPECT_EQ(Find(module, 3, L"TEXT"), "of the program"); // the same file
    UnloadModule(module);
}

TEST(ModuleResource, IdAndTypeDecide)
{
    EXPECT_EQ(Find(nullptr, 0x10001, L"TEXT"), "of the program"); // the low 16 bits count
    EXPECT_EQ(Find(nullptr, -1, L"TEXT"), "of the program");
    EXPECT_EQ(Find(nullptr, 2, L"Empty"), "");
    EXPECT_EQ(Find(nullptr, 1, L"Text").has_value(), !ResourceTypesHaveCase);
    for (const wchar_t* const type : {L"TEX", L"TEXT_", L"", L"T\u00C4XT", L"TE\nXT"})
        EXPECT_EQ(Find(nullptr, 1, type), std::nullopt);
    for (const int id : {0, 2, 4711})
        EXPECT_EQ(Find(nullptr, id, L"TEXT"), std::nullopt);
}

} // namespace
