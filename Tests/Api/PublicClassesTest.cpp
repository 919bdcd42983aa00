// The utilities are used through the shared module alone; what the other tests of this program use is, too.

#include <Vellum/Vellum.h>

#include <gtest/gtest.h>

// Names that stay the client's own.
class CFile;
struct SSystemTime;
enum class ThreadLocale;

TEST(Module, ExportsItsUtilities)
{
    char bytes[7] = "";
    EXPECT_EQ(Vellum::Base64::Encode("Vellum", 6, false), "VmVsbHVt");
    EXPECT_EQ(Vellum::Base64::GetDecodedSize("VmVsbHVt"), 6u);
    Vellum::Base64::Decode("VmVsbHVt", bytes, 6);
    EXPECT_STREQ(bytes, "Vellum");
    EXPECT_EQ(Vellum::Conversion::StringToInt("0x10"), 16);
    EXPECT_EQ(Vellum::Conversion::StringToDouble("15e-1"), 1.5);
    std::uint16_t number = 0;
    Vellum::Conversion::FromString("12abc", number);
    EXPECT_EQ(number, 12);

    EXPECT_EQ(Vellum::Encodings::ToUTF8(L"\u00E4"), "\xC3\xA4");
    EXPECT_EQ(Vellum::Encodings::FromUTF8("\xC3\xA4"), L"\u00E4");
    EXPECT_EQ(Vellum::Encodings::FromCodePage("\xE4", 1252), L"\u00E4");
    EXPECT_EQ(Vellum::Encodings::ToCodePage(L"\u00E4", 1252), "\xE4");

    EXPECT_STREQ(CbDateTime("2024-03-07 09:05:01").ToString("d.n.y", false).c_str(), "07.3.24");
}
