// Exceptions keep their class on the way across the module's border, in both directions.

#include <gtest/gtest.h>

#include "Scribe/CScribe.h"

#include "CEverything.h"
#include "Support/Clients.h"
#include "Support/Texts.h"

namespace
{

class Exceptions : public testing::Test
{
protected:
    Exceptions()
    {
        Scribing::SetSink([](const Scribing::SEntry&) {});
    }
    ~Exceptions() override { Scribing::SetSink({}); }
};

struct SClientFailure
{
};

void Read(const char* hex) { Support::ReadBinary(Support::Bytes(hex), CEverything()); }

} // namespace

TEST_F(Exceptions, AreCaughtByTheirClassAndClonedThroughTheirInterface)
{
    EXPECT_THROW(Read("00 00 00 00 0F 00 00 00 00"), Vellum::CException); // no root has tag 15
    EXPECT_THROW(Read("01 00 00 00 10"), CbExceptionWrongFileVersion);
    EXPECT_THROW(CbDateTime("never"), CbExceptionConversion);
    try
    {
        Read("");
        FAIL();
    }
    catch (const IException& exception)
    {
        const std::unique_ptr<IException> clone = exception.Clone();
        EXPECT_NE(dynamic_cast<CbExceptionStream*>(clone.get()), nullptr);
        EXPECT_STREQ(clone->GetFunctionName(), "CbStreamReadBinary::Read");
    }
}

TEST_F(Exceptions, OfClientsPassThroughWritersAndReaders)
{
    const auto raise = [](auto&) { throw CbExceptionContainer("Client.cpp", 1, "Client::Write"); };
    EXPECT_THROW(Formats::SBinary::Write(Support::CFields(raise)), CbExceptionContainer);

    Support::CFields failing = Support::ReadFields([](auto&) { throw SClientFailure(); });
    EXPECT_THROW(Formats::SBinary::Read(Formats::SBinary::Write(Support::CFields()), failing), SClientFailure);
    EXPECT_THROW(Formats::SJson::Read("{}", failing), SClientFailure);
}
