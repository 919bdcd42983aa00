// Each public class is used through the shared module alone, derived from where that is what it is for.

#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include "CEverything.h"
#include "Formats.h"

namespace
{

// Streams of the client's own: one operation each.
class CStringWriteStream : public CbStreamWriteBinary
{
public:
    using CbStreamWriteBinary::Write;
    CbStreamWriteBinary& Write(const void* data, std::size_t count) override
    {
        bytes.append(static_cast<const char*>(data), count);
        return *this;
    }

    std::string bytes;
};

class CStringReadStream : public CbStreamReadBinary
{
public:
    explicit CStringReadStream(std::string bytes) : bytes(std::move(bytes)) {}

    using CbStreamReadBinary::Read;
    std::uint64_t Read(void* data, std::size_t count) override
    {
        const std::size_t delivered = bytes.copy(static_cast<char*>(data), count, position);
        position += delivered;
        return delivered;
    }

private:
    std::string bytes;
    std::size_t position = 0;
};

template <class Format>
class Module : public testing::Test
{
};
using AllFormats = testing::Types<Formats::SBinary, Formats::SJson, Formats::SXml>;
TYPED_TEST_SUITE(Module, AllFormats);

} // namespace

TYPED_TEST(Module, BringsEveryKindBack)
{
    const CEverything written = CEverything::Make(7);
    CEverything read;
    TypeParam::Read(TypeParam::Write(written), read);
    EXPECT_TRUE(read.hasAll);
    EXPECT_EQ(read, written);
}

TYPED_TEST(Module, BringsARootSequenceBack)
{
    CNumbers written;
    written.numbers = {1.5, -0.1, 1e300};
    CNumbers read;
    TypeParam::Read(TypeParam::Write(written), read);
    EXPECT_EQ(read.numbers, written.numbers);
}

TEST(Module, TakesStreamsOfTheClientsOwn)
{
    const CEverything written = CEverything::Make(1);
    CStringWriteStream out;
    Vellum::CWriterBinary(out).Write(written);
    EXPECT_EQ(out.bytes, Formats::SBinary::Write(written));

    CStringReadStream in(out.bytes);
    CEverything read;
    Vellum::CReaderBinary(in).Read(read);
    EXPECT_EQ(read, written);
}

TEST(Module, StoresDocumentsInFiles)
{
    const auto path = std::filesystem::path(testing::TempDir()) / "VellumApiTest.vellum";
    const CEverything written = CEverything::Make(2);
    {
        CbStreamWriteBinaryFile stream(path.wstring());
        Vellum::CWriterBinary(stream).Write(written);
        stream.Close();
    }
    CEverything read;
    {
        CbStreamReadBinaryFile stream(path.wstring());
        Vellum::CReaderBinary(stream).Read(read);
    }
    std::filesystem::remove(path);
    EXPECT_EQ(read, written);
}

TEST(Module, ExportsItsUtilities)
{
    const char data[] = "Vellum";
    EXPECT_EQ(Vellum::Base64::Encode(data, 6, false), "VmVsbHVt");
    unsigned char bytes[6] = {};
    ASSERT_EQ(Vellum::Base64::GetDecodedSize("VmVsbHVt"), 6u);
    Vellum::Base64::Decode("VmVsbHVt", bytes, sizeof bytes);
    EXPECT_EQ(std::memcmp(bytes, data, 6), 0);

    EXPECT_EQ(Vellum::Conversion::StringToInt("0x10"), 16);
    EXPECT_EQ(Vellum::Conversion::StringToDouble("1.5"), 1.5);
    std::uint16_t number = 0;
    Vellum::Conversion::FromString("12abc", number);
    EXPECT_EQ(number, 12);

    EXPECT_EQ(Vellum::Encodings::ToUTF8(L"\u00E4"), "\xC3\xA4");
    EXPECT_EQ(Vellum::Encodings::FromUTF8("\xC3\xA4"), L"\u00E4");
    EXPECT_EQ(Vellum::Encodings::FromCodePage("\xE4", 1252), L"\u00E4");
    EXPECT_EQ(Vellum::Encodings::ToCodePage(L"\u00E4", 1252), "\xE4");

    EXPECT_STREQ(CbDateTime("2024-03-07 09:05:01").ToString("d.n.y", false).c_str(), "07.3.24");
}
