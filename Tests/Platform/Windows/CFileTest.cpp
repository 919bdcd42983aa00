#include "Platform/CFile.h"

#include <windows.h>

#include "Platform/CNewFile.h"
#include "Platform/FilePath.h"

#include "Support/CTempFolder.h"
#include "Support/Testing.h"
#include "Support/Windows/Emulator.h"

using namespace Vellum::Platform;

namespace
{

HANDLE OpenAs(const std::wstring& name, DWORD access, DWORD sharing)
{
    return ::CreateFileW(name.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
}

TEST(CFile, SharesWithOtherProgramsWhatItSharesWithItself)
{
    constexpr DWORD Everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    CFile file;
    ASSERT_TRUE(file.OpenForWriting(name));
    EXPECT_EQ(OpenAs(name, GENERIC_READ, Everybody), INVALID_HANDLE_VALUE);
    ASSERT_TRUE(file.OpenForReading(name));
    const HANDLE reader = OpenAs(name, GENERIC_READ, Everybody);
    EXPECT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_EQ(OpenAs(name, GENERIC_WRITE, Everybody), INVALID_HANDLE_VALUE);
    ::CloseHandle(reader);
    EXPECT_TRUE(file.Close());
    const HANDLE writer = OpenAs(name, GENERIC_WRITE, Everybody);
    EXPECT_FALSE(file.OpenForReading(name) || file.OpenForWriting(name));
    ::CloseHandle(writer);
}

TEST(CFile, PipesAreRefusedOrOpenedAndReadToTheirEnd)
{
    const std::wstring name = LR"(\\.\pipe\VellumTest)" + std::to_wstring(::GetCurrentProcessId());
    for (const bool isAwaited : {false, true})
    {
        const HANDLE server = ::CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1,
                                                 4096, 4096, 0, nullptr);
        ASSERT_NE(server, INVALID_HANDLE_VALUE);
        CFile file;
        ASSERT_EQ(file.OpenForReading(name, isAwaited ? CFile::EPipes::Await : CFile::EPipes::Refuse), isAwaited);
        DWORD written = 0;
        if (isAwaited)
        {
            EXPECT_TRUE(::WriteFile(server, "abc", 3, &written, nullptr));
            char bytes[3];
            EXPECT_EQ(file.GetSize(), std::nullopt);
            EXPECT_TRUE(file.MayHold(1000) && file.Read(bytes, 2) == 2u && file.Read(bytes, 1) == 1u);
            ::CloseHandle(server);
            EXPECT_EQ(file.Read(bytes, 3), 0u);
        }
        else
            ::CloseHandle(server);
    }
    EXPECT_FALSE(CFile().OpenForReading(name, CFile::EPipes::Await)); // nobody serves it
}

TEST(CFile, DevicesAreEverybodys)
{
    CFile first;
    CFile second;
    EXPECT_TRUE(first.OpenForWriting(L"NUL") && second.OpenForWriting(L"NUL") && first.Write("x", 1));
    char byte;
    EXPECT_TRUE(first.OpenForReading(L"NUL") && first.MayHold(1) && first.Read(&byte, 1) == 0u);
}

TEST(CFile, NamesMayBeLongerThanTheSystemTakesThemPlain)
{
    const CTempFolder folder;
    std::string inside = "0123456789";
    for (int level = 0; level < 40; ++level)
        inside += (level % 2 == 0 ? "/" : "\\") + std::string("0123456789");
    const std::wstring name = folder.GetName(inside + "/./name");
    std::filesystem::create_directories(folder.GetName(inside));
    CFile file;
    ASSERT_TRUE(file.OpenForWriting(name) && file.Write("x", 1) && file.Close());
    EXPECT_TRUE(file.OpenForReading(name) && file.GetSize() == 1u && file.Close());
    CNewFile replacement;
    EXPECT_FALSE(replacement.Create(name) || replacement.Write("longer", 6) || replacement.PutInPlace());
    std::string bytes;
    EXPECT_FALSE(ReadWholeFile(name, bytes));
    EXPECT_EQ(bytes, "longer");
}

TEST(CFile, FoldersOfLongNamesAreCreatedFromTheRootOfADrive)
{
    const std::wstring drive = std::filesystem::temp_directory_path().root_path().wstring();
    const std::wstring top = drive + L"VellumTest-" + std::to_wstring(::GetCurrentProcessId());
    std::wstring name = top;
    for (int level = 0; level < 40; ++level)
        name += L"\\0123456789";
    EXPECT_FALSE(CreateFolderOf(name + L"/file"));
    EXPECT_TRUE(CFile().OpenForWriting(name + L"/file"));
    EXPECT_TRUE(CreateFolderOf(name + L"/file/file"));
    ::DeleteFileW(ToFilePath(name + L"\\file").c_str());
    for (; name.size() >= top.size(); name.resize(name.rfind(L'\\')))
        EXPECT_TRUE(::RemoveDirectoryW(ToFilePath(name).c_str()));
}

TEST(CNewFile, HandsOnWhatTheReplacedFileHadAndSparesOneThatMayNotBeWritten)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("file");
    WriteWhole(folder.GetPath() / "file", "old");
    const auto replace = [&](std::string_view bytes)
    {
        CNewFile file;
        std::error_code error = file.Create(name);
        if (!error)
            error = file.Write(bytes.data(), bytes.size());
        return error ? error : file.PutInPlace();
    };
    ::SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_FALSE(replace("new"));
    EXPECT_TRUE(::GetFileAttributesW(name.c_str()) & FILE_ATTRIBUTE_HIDDEN);
    if (!Emulator::ReplacesOpenFiles())
    {
        CFile reader;
        ASSERT_TRUE(reader.OpenForReading(name));
        EXPECT_TRUE(replace("newer")); // a file that somebody has open stays
    }
    ::SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(replace("newer"));
    ::SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(ReadWhole(folder.GetPath() / "file"), "new");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.GetPath()), {}), 1);
    EXPECT_EQ(CNewFile().Create(folder.GetPath()), std::errc::is_a_directory);
    EXPECT_EQ(CNewFile().Create(L"NUL"), std::errc::invalid_argument);
}

} // namespace
