#include <fstream>
#include <map>

#include "Describe/Describe.h"
#include "Support/CTempFolder.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;

TEST(PosixFiles, LinksAndPermissionsStayWhenAFileIsReplaced)
{
    const CTempFolder folder;
    const auto path = folder.GetPath() / "a.json", link = folder.GetPath() / "link.json";
    constexpr auto Permissions = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    Save(path, std::vector{1});
    std::filesystem::permissions(path, Permissions);
    std::filesystem::create_symlink("a.json", link);
    Save(link, std::vector{2});
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(Load<std::vector<int>>(path), std::vector{2});
    EXPECT_EQ(std::filesystem::status(path).permissions(), Permissions);
}

TEST(PosixFiles, StreamsTellOfDevicesThatAreFull)
{
    std::ofstream full("/dev/full");
    ToJson(std::vector<int>{1}, full);
    full.flush();
    EXPECT_FALSE(full);
}

} // namespace
