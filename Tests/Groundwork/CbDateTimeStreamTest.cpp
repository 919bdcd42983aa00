#include "Groundwork/CbDateTimeStream.h"

#include "Groundwork/CbStreamReadBinaryBuffer.h"
#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Support/Clients.h"
#include "Support/Testing.h"

namespace
{

std::string Written(const IDateTime& date)
{
    CbStreamWriteBinaryBuffer stream;
    EXPECT_EQ(&(stream << date), &stream);
    return {reinterpret_cast<const char*>(stream.GetData()), stream.GetSize()};
}

std::string Noted(const std::string& bytes)
{
    CbStreamReadBinaryBuffer stream(bytes.data(), bytes.size());
    CNotedDate date;
    EXPECT_EQ(&(stream >> date), &stream);
    return date.noted;
}

TEST(CbDateTimeStream, DateIsAVersionAndATickCountAndSetsTheSevenFieldsInOrder)
{
    CbDateTime date("2024-03-01 10:20:30");
    date.SetMilliseconds(7);
    EXPECT_EQ(Written(date), Bytes("00 00 00 00"                // version
                                   "70 FC 22 16 C2 6B DA 01")); // 133,537,620,300,070,000
    EXPECT_EQ(Noted(Written(date)), "Y2024 m3 d1 H10 i20 s30 v7 ");

    EXPECT_EQ(Written(CbDateTime("2024-13-45T99:99:99")), std::string(12, '\0')); // what is invalid is the first day
    EXPECT_EQ(Noted(std::string(12, '\0')), "Y1601 m1 d1 H0 i0 s0 v0 ");
    EXPECT_EQ(Noted(Bytes("00 00 00 00 FF FF FF FF FF FF FF FF")), "Y1601 m1 d1 H0 i0 s0 v0 ");
}

} // namespace
