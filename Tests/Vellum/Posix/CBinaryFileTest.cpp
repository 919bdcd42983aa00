#include <cerrno>
#include <sys/stat.h>

#include "Vellum/CBinaryFileFixture.h"

#include "Support/Posix/CSystemCalls.h"

namespace
{

using namespace Vellum;

template <class T>
using CBinaryFileOfPosix = CBinaryFileOf<T>;
TYPED_TEST_SUITE(CBinaryFileOfPosix, Containers);

TYPED_TEST(CBinaryFileOfPosix, FailuresOfTheSystemAreFailures)
{
    using File = CBinaryFile<TypeParam>;
    const TypeParam data = this->Make("data");
    for (const CSystemCalls::ECall call :
         {CSystemCalls::Open, CSystemCalls::Status, CSystemCalls::Truncate, CSystemCalls::Write, CSystemCalls::Close})
    {
        CSystemCalls calls;
        calls.fates[call] = {{ENOSPC}};
        EXPECT_RAISES(CException, this->write.c_str(), File::Write(this->name, data));
    }
    File::Write(this->name, data);
    CSystemCalls calls;
    for (const CSystemCalls::SFate& fate : {CSystemCalls::SFate{EIO}, CSystemCalls::SFate{0, 0}}) // or the file shrinks
    {
        calls.fates[CSystemCalls::Read] = {fate};
        EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->name));
        calls.fates[CSystemCalls::Read] = {fate};
        EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->name, 2));
    }
    calls.fates[CSystemCalls::Status] = {{}, {EIO}}; // no size
    EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->name));

    calls.made = {};
    EXPECT_EQ(this->Text(File::Read(this->name)), "data");
    EXPECT_EQ(calls.made[CSystemCalls::Open], 1); // size and bytes are those of one file, under one lock
}

TYPED_TEST(CBinaryFileOfPosix, PipesAreRefusedAtOnceAndDevicesAreNot)
{
    using File = CBinaryFile<TypeParam>;
    ASSERT_EQ(::mkfifo((this->folder.GetPath() / "file").c_str(), 0600), 0);
    EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->name));
    EXPECT_RAISES(CException, this->read.c_str(), File::Read(this->name, 1));
    EXPECT_RAISES(CException, this->write.c_str(), File::Write(this->name, this->Make("x")));
    EXPECT_EQ(this->Text(File::Read(L"/proc/self/status", 5)), "Name:");
}

} // namespace
