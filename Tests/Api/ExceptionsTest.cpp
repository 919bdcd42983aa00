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

// A class of the client's own: what it derives from comes from the module.
class CShopException : public CbExceptionBase<CShopException>
{
public:
    CShopException() : CbExceptionBase("Shop.cpp", 7, "Shop::Open", L"The shop is closed") {}
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

TEST_F(Exceptions, AreStandardOnesAsWellThoseOfClientsToo)
{
    const auto tell = [](const auto& raise) -> std::string
    {
        try
        {
            raise();
        }
        catch (const std::exception& exception)
        {
            EXPECT_NE(dynamic_cast<const IException&>(exception).Clone(), nullptr);
            return exception.what();
        }
        return "nothing";
    };
    EXPECT_EQ(tell([] { Read("00 00 00 00 0F 00 00 00 00"); }), "Vellum::CReaderBinary::CReaderBinary: Exception");
    EXPECT_EQ(tell([] { throw CShopException(); }), "Shop::Open: The shop is closed");
}
