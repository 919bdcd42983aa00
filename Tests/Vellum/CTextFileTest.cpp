#include "Vellum/CTextFile.h"

#include "Platform/Utf8.h"

#include "Vellum/CException.h"

#include "Support/CTempFolder.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;
using namespace std::string_literals;

constexpr const char* ReadOfFile =
    "Vellum::CBinaryFile<class std::vector<unsigned char,class std::allocator<unsigned char> > >::Read";

// A text of these bytes, with nothing behind them but the zero byte that SetText gives it.
CTextFile Holding(const std::string& bytes) { return CTextFile().SetText(bytes); }

// What a text that was read from a file of these bytes has in its buffer: the guesser sees it.
std::string BufferOfFile(const std::string& bytes)
{
    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "file", bytes);
    std::string buffer;
    CTextFile([&](const std::vector<unsigned char>& seen) { return buffer.assign(seen.begin(), seen.end()), 1252u; })
        .Read(folder.GetName("file"))
        .GuessCodePage();
    return buffer;
}

TEST(CTextFile, HasItsBytesAndOneZeroByteBehindThem)
{
    EXPECT_EQ(CTextFile().GetTextRaw(), "");
    EXPECT_EQ(CTextFile().GetText(65001), L"");
    EXPECT_EQ(BufferOfFile(""), "\0"s);
    EXPECT_EQ(BufferOfFile("ab"), "ab\0"s);
    EXPECT_EQ(BufferOfFile("ab\0"s), "ab\0"s);
    EXPECT_EQ(BufferOfFile("a\0b"s), "a\0b\0"s);
    EXPECT_EQ(Holding("a\0b"s).GetTextRaw(), "a");
    EXPECT_EQ(CTextFile().SetText("ab\0c").GetTextRaw(), "ab");
    EXPECT_EQ(Holding("old").SetText(static_cast<const char*>(nullptr)).GetTextRaw(), "");
}

TEST(CTextFile, WideTextIsStoredAsUtf8OrInTheCodePageGiven)
{
    const std::wstring text = L"ä€\0x"s;
    EXPECT_EQ(CTextFile().SetText(text).GetTextRaw(), "\xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(CTextFile().SetText(text.c_str()).GetTextRaw(), "\xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(CTextFile().SetText(text, 1252).GetTextRaw(), "\xE4\x80");
    EXPECT_EQ(CTextFile().SetText(text.c_str(), 28591).GetTextRaw(), "\xE4?");
    EXPECT_EQ(CTextFile().SetText(text, 1200).GetTextRaw(), "");
    EXPECT_EQ(CTextFile().SetText(text, 1252).GetText(1252), L"ä€");
}

TEST(CTextFile, WrittenAndReadBackItIsTheSame)
{
    const CTempFolder folder;
    const std::wstring name = folder.GetName("new/folder/text");
    Holding("a\0b"s).Write(name);
    EXPECT_EQ(ReadWhole(folder.GetPath() / "new/folder/text"), "a\0b"s);
    CTextFile().Write(name.c_str());
    EXPECT_EQ(ReadWhole(folder.GetPath() / "new/folder/text"), "");
    CTextFile text = Holding("old");
    Holding("new").Write(name);
    EXPECT_EQ(&text.Read(name), &text);
    EXPECT_EQ(text.GetTextRaw(), "new");
    EXPECT_RAISES(CException, ReadOfFile, text.Read(folder.GetName("missing")));
    EXPECT_EQ(text.GetTextRaw(), "");
}

TEST(CTextFile, OneThatWasMovedFromCannotBeWritten)
{
    const CTempFolder folder;
    CTextFile source([](const std::vector<unsigned char>&) { return 1252u; });
    source.SetText("\x80"s);
    const CTextFile copy(source);
    CTextFile moved(std::move(source));
    source = copy; // and assigned to it is whole again
    CTextFile assigned;
    assigned = std::move(source);
    for (const CTextFile* const text : {&copy, &std::as_const(moved), &std::as_const(assigned)})
        EXPECT_EQ(text->GetText(), L"€");
    EXPECT_RAISES(CException, "Vellum::CTextFile::Write", source.Write(folder.GetName("file")));
    EXPECT_FALSE(std::filesystem::exists(folder.GetPath() / "file"));
    EXPECT_EQ(source.GetTextRaw() + Vellum::Platform::Utf16ToUtf8(source.GetText(1252)), "");
    EXPECT_EQ(source.GetText(1200), L"");
    EXPECT_EQ(source.SetText("new").GetText(1252), L"new");
}

TEST(CTextFile, MarksTellTheCodePage)
{
    const struct
    {
        std::string bytes;
        unsigned int codePage;
    } cases[] = {
        {"+/v", 65000},
        {"+/v is no mark in this text", 65000},
        {"\xEF\xBB\xBF", 65001},
        {"\xFF\xFE", 1200},
        {"\xFF\xFE\x41\0"s, 1200},
        {"\xFF\xFE\0"s, 12000}, // with the zero byte behind the text
        {"\xFF\xFE\0\0"s, 12000},
        {"\xFE\xFF", 1201},
        {"\0\0\xFE\xFF"s, 12001},
        {"\x84\x31\x95\x33", 54936},
        {"+/", VELLUM_DETECTOR ? 20127u : 0u}, // a guess, as the bytes have no mark
    };
    for (const auto& [bytes, codePage] : cases)
        EXPECT_EQ(Holding(bytes).GuessCodePage(), codePage) << Hex(bytes);
    EXPECT_EQ(Holding("\xEF\xBB\xBF\xC3\xA4").GetText(), L"\uFEFFä");

    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "file", "\xFF\xFE\0"s); // a file's own zero byte is the one behind the text
    EXPECT_EQ(CTextFile().Read(folder.GetName("file")).GuessCodePage(), 1200u);
}

// Whatever the build has for a detector.
TEST(CTextFile, OneLetterBeyondAsciiIsEnoughToTellUtf8)
{
    for (const char* const text : {"ä", "Señor", "café", "😀", "The price of it is €"})
        EXPECT_EQ(Holding(text).GuessCodePage(), 65001u) << text;
    EXPECT_EQ(Holding(std::string(5000, 'a') + "ä").GuessCodePage(), 65001u);
    EXPECT_EQ(CTextFile().SetText(L"ä").GetText(), L"ä");
    EXPECT_EQ(Holding("Gr\xC3\xB6\xC3\x9F"
                      "e caf\xC3")
                  .GuessCodePage(),
              65001u); // cut off
    for (const char* const latin : {"caf\xE9",
                                    "Gr\xF6\xDF"
                                    "e",
                                    "\xEF"})
        EXPECT_NE(Holding(latin).GuessCodePage(), 65001u) << latin;
}

TEST(CTextFile, TheGuesserIsAskedFirst)
{
    unsigned int answer = 1252;
    CTextFile text([&](const std::vector<unsigned char>&) { return answer; });
    text.SetText("\xEF\xBB\xBF"s);
    EXPECT_EQ(text.GuessCodePage(), 1252u);
    EXPECT_EQ(text.GetText(), L"ï»¿");
    answer = 0;
    EXPECT_EQ(text.GuessCodePage(), 65001u);
    EXPECT_EQ(text.SetText("").GuessCodePage(), 0u);
    EXPECT_EQ(CTextFile(nullptr).GetText(), L"");
}

TEST(CTextFile, Utf16AndUtf32AreDecodedInWholeUnits)
{
    const auto hex = [](const char* bytes) { return Holding(Bytes(bytes)); };
    const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(hex("FF FE 41 00 3D D8 00 DE").GetText(), L"\uFEFFA" + pair);
    EXPECT_EQ(hex("00 41 D8 3D DE 00").GetText(1201), L"A" + pair);
    EXPECT_EQ(hex("FF FE 00 00 41 00 00 00 00 F6 01 00").GetText(), L"\uFEFFA" + pair);
    EXPECT_EQ(hex("00 00 FE FF 00 01 F6 00 00 00 00 41").GetText(), L"\uFEFF" + pair + L"A");

    EXPECT_EQ(hex("41 00 00 00 42 00").GetText(1200), L"A");  // up to the first zero unit
    EXPECT_EQ(hex("00 41 01").GetText(1201), L"A\u0100");     // the last unit is made whole by the zero byte
    EXPECT_EQ(hex("41 00 00 00 42 00").GetText(12000), L"A"); // what is left over is none
    EXPECT_EQ(hex("3D D8 41 00").GetText(1200), (std::wstring{wchar_t(0xD83D), L'A'}));
    EXPECT_EQ(hex("00 00 D8 3D 00 11 00 00 FF FF FF FF").GetText(12001), L"\uFFFD\uFFFD\uFFFD");

    const CTempFolder folder;
    WriteWhole(folder.GetPath() / "file", Bytes("FF FE 41 00")); // its zero byte is half a unit and the end as well
    EXPECT_EQ(CTextFile().Read(folder.GetName("file")).GetText(), L"\uFEFFA");
}

// Each file of the folder is named after its language and code page; 65001 is the one to compare with.
TEST(CTextFile, RealTextsAreDetectedAndDecoded)
{
    int count = 0;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(VELLUM_TEXTS))
    {
        SCOPED_TRACE(entry.path());
        ++count;
        const std::filesystem::path language = entry.path().stem().stem();
        const auto codePage = static_cast<unsigned int>(std::stoul(entry.path().stem().extension().string().substr(1)));
        const CTextFile text = CTextFile().Read(entry.path().wstring());
        const std::string expected =
            ReadWhole(std::filesystem::path(VELLUM_TEXTS) / (language.string() + ".65001.txt"));
        const bool hasMark = codePage >= 1200 && codePage <= 12001 && codePage % 400 <= 1;
        EXPECT_EQ(text.GuessCodePage(), hasMark || VELLUM_DETECTOR || codePage == 65001 ? codePage : 0);
        if (LacksCodePage(codePage))
            continue;
        EXPECT_EQ(Vellum::Platform::Utf16ToUtf8(text.GetText(codePage)), (hasMark ? "\xEF\xBB\xBF" : "") + expected);
    }
    EXPECT_GE(count, 20);
    EXPECT_EQ(Holding("plain text").GuessCodePage(), VELLUM_DETECTOR ? 20127u : 0u);
}

TEST(CTextFile, ResourcesAreTexts)
{
    CTextFile text = Holding("old");
    EXPECT_EQ(&text.Read(nullptr, 1, L"TEXT"), &text);
    EXPECT_EQ(text.GetTextRaw(), ReadWhole(VELLUM_TEXTS "/Greek.65001.txt"));
    EXPECT_EQ(text.Read(nullptr, 0x10001, L"TEXT"s).GuessCodePage(), 65001u);
    EXPECT_RAISES(CException, "Vellum::CTextFile::Read", text.Read(nullptr, 2, L"TEXT"));
    EXPECT_EQ(text.GetTextRaw(), "");
    if (ResourceTypesHaveCase)
        EXPECT_RAISES(CException, "Vellum::CTextFile::Read", text.Read(nullptr, 1, L"text"s));
    EXPECT_RAISES(CException, "Vellum::CTextFile::Read", text.Read(nullptr, 1, L"texts"s));
    EXPECT_RAISES(CException, "Vellum::CTextFile::Read", text.Read(nullptr, 1, static_cast<const wchar_t*>(nullptr)));
}

} // namespace
