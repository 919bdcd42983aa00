#include "Platform/CNewFile.h"

#include <cerrno>

#include "Support/CTempFolder.h"
#include "Support/Posix/CSystemCalls.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

std::error_code Replace(const std::filesystem::path& path)
{
    CNewFile file;
    std::error_code error = file.Create(path);
    if (!error)
        error = file.Write("new", 3);
    return error ? error : file.PutInPlace();
}

TEST(CNewFile, WhateverFailsIsToldAndLeavesTheOldFileAsItWas)
{
    const CTempFolder folder;
    const std::filesystem::path path = folder.GetPath() / "file";
    WriteWhole(path, "old");
    std::string bytes;
    CSystemCalls calls;
    for (const CSystemCalls::ECall call : {CSystemCalls::Open, CSystemCalls::Write})
    {
        calls.fates[call] = {{EIO}};
        EXPECT_EQ(Replace(path), std::errc::io_error) << call;
    }
    for (const CSystemCalls::ECall call : {CSystemCalls::Open, CSystemCalls::Status, CSystemCalls::Read})
    {
        calls.fates[call] = {{EIO}};
        EXPECT_EQ(ReadWholeFile(path, bytes), std::errc::io_error) << call;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.GetPath()), {}), 1);
    EXPECT_EQ(ReadWholeFile(path, bytes), std::error_code());
    EXPECT_EQ(bytes, "old");
}

} // namespace
