#include "Platform/ModuleResource.h"

#include <dlfcn.h>

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
    void* const handle = ::dlopen(RESOURCE_MODULE, RTLD_NOW | RTLD_GLOBAL); // seen by a lookup in the program, too
    ASSERT_NE(handle, nullptr) << ::dlerror();
    const auto module = static_cast<HINSTANCE>(handle);
    EXPECT_EQ(Find(nullptr, 1, L"TEXT"), "of the program");
    EXPECT_EQ(FindModuleResource(nullptr, 1, L"TEXT")->data(), FindModuleResource(nullptr, 1, L"TEXT")->data());
    EXPECT_EQ(Find(module, 1, L"TEXT"), "of the module");
    EXPECT_EQ(Find(nullptr, 3, L"TEXT"), std::nullopt);
    EXPECT_EQ(Find(module, 3, L"TEXT"), "of the program"); // the same file
    ::dlclose(handle);
}

TEST(ModuleResource, IdAndTypeDecide)
{
    EXPECT_EQ(Find(nullptr, 0x10001, L"TEXT"), "of the program"); // the low 16 bits count
    EXPECT_EQ(Find(nullptr, -1, L"TEXT"), "of the program");
    EXPECT_EQ(Find(nullptr, 2, L"Empty"), "");
    for (const wchar_t* const type : {L"Text", L"TEX", L"TEXT_", L"", L"T\u00C4XT", L"TE\nXT"})
        EXPECT_EQ(Find(nullptr, 1, type), std::nullopt);
    for (const int id : {0, 2, 4711})
        EXPECT_EQ(Find(nullptr, id, L"TEXT"), std::nullopt);
}

} // namespace
