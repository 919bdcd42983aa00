#include "Vellum/CBinaryFile.h"

#include "Vellum/CBinaryFileFixture.h"
#include "Vellum/CException.h"

namespace
{

using namespace Vellum;

TYPED_TEST_SUITE(CBinaryFileOf, Containers);

TYPED_TEST(CBinaryFileOf, FilesComeBackWholeOrFromTheirStart)
{
    using File = CBinaryFile<TypeParam>;
    const std::string bytes("a\0\xFF\n\r\n", 6);
    File::Write(this->name, this->Make(bytes));
    EXPECT_EQ(this->Text(File::Read(this->name)), bytes);
    EXPECT_EQ(this->Text(File::Read(this->name.c_str(), 2)), bytes.substr(0, 2));
    EXPECT_EQ(this->Text(File::Read(this->name, 6)), bytes);
    EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->name, 7));

    File::Write(this->name.c_str(), this->Make("xyz"), 2);
    EXPECT_EQ(this->Content("file"), "xy");
    EXPECT_RAISES(CException, this->write.c_str(), File::Write(this->name, this->Make("xyz"), 4));
    EXPECT_EQ(this->Content("file"), "xy");
    File::Write(this->name, this->Make("xyz"), 0);
    EXPECT_EQ(this->Content("file"), "");
    EXPECT_EQ(this->Text(File::Read(this->name)) + this->Text(File::Read(this->name, 0)), "");
}

TYPED_TEST(CBinaryFileOf, WhatCannotBeReadFails)
{
    using File = CBinaryFile<TypeParam>;
    const std::wstring missing = this->folder.GetName("missing");
    for (const std::wstring& unreadable : {missing, this->folder.GetName(""), std::wstring()})
    {
        EXPECT_RAISES(CException, this->read.c_str(), File::Read(unreadable));
        EXPECT_RAISES(CException, this->read.c_str(), File::Read(unreadable, 0));
    }
    EXPECT_RAISES(CException, this->read.c_str(), File::Read(static_cast<const wchar_t*>(nullptr)));

    WriteWhole(this->folder.GetPath() / "sparse", "x");
    for (const std::uintmax_t size : {0x100000000u, 0x100000001u})
    {
        std::filesystem::resize_file(this->folder.GetPath() / "sparse", size);
        const CAllocationCounter allocations;
        EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->folder.GetName("sparse")));
        EXPECT_LT(allocations.GetBytes(), 10000u);
    }
    EXPECT_EQ(this->Text(File::Read(this->folder.GetName("sparse"), 1)), "x");
    std::filesystem::resize_file(this->folder.GetPath() / "sparse", 3);
    const CAllocationCounter allocations; // looks before it allocates
    EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->folder.GetName("sparse"), 3900000000));
    EXPECT_LT(allocations.GetBytes(), 10000u);
}

TYPED_TEST(CBinaryFileOf, MissingFoldersAreMade)
{
    using File = CBinaryFile<TypeParam>;
    for (int times = 0; times < 2; ++times) // the second time they exist
        File::Write(this->folder.GetName("one/tw\xC3\xB6/three/file"), this->Make("x"));
    EXPECT_EQ(this->Content("one/tw\xC3\xB6/three/file"), "x");

    File::Write(this->name, this->Make("x"));
    for (const char* const below : {"file/x", "file/folder/x"})
        EXPECT_THROW(File::Write(this->folder.GetName(below), this->Make("y")), std::filesystem::filesystem_error);
    EXPECT_RAISES(CException, this->write.c_str(), File::Write(this->folder.GetName("one"), this->Make("y")));
    EXPECT_RAISES(CException, this->write.c_str(), File::Write(L"", this->Make("y")));

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(this->folder.GetPath());
    File::Write(L"bare", this->Make("bare"));
    std::filesystem::current_path(before);
    EXPECT_EQ(this->Content("bare"), "bare");
}

TEST(CBinaryFile, FailedAllocationsLeaveNoFileOpen)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("folder/file");
    const std::ptrdiff_t openBefore = CountOpenFiles();
    std::optional<Vector> data;
    const auto writeAndRead = [&]
    {
        try
        {
            CBinaryFile<Vector>::Write(name, {1, 2});
            data = CBinaryFile<Vector>::Read(name);
        }
        catch (const std::filesystem::filesystem_error& error) // of create_directories
        {
            EXPECT_EQ(error.code(), std::errc::not_enough_memory);
        }
    };
    EXPECT_GT(FailEachAllocation([&] { GetsThrough(writeAndRead); }), 3u);
    EXPECT_EQ(CountOpenFiles(), openBefore);
    EXPECT_EQ(data, (Vector{1, 2}));
}

} // namespace
