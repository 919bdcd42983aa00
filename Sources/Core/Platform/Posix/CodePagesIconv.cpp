#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/CodePages.h"
#include "Platform/Posix/Encoding.h"
#include "Platform/Posix/UserLocale.h"
#include "Platform/Utf16.h"
#include "Platform/Utf8.h"

namespace Vellum::Platform
{

namespace
{

// The converter's own form of wide text: one code point in each element. Opening it costs less than opening any form of
// UTF-16, and what lies between the surrogates and the supplementary planes is the same in both.
constexpr const char* CodePoints = "WCHAR_T";
static_assert(sizeof(wchar_t) == 4);

// Those that aren't like the others.
constexpr std::string_view Utf8 = "UTF-8";
constexpr std::string_view Iso2022Jp = "ISO-2022-JP";

struct SCodePage
{
    unsigned int number;
    const char* converter;
};

constexpr SCodePage KnownCodePages[] = {
    {437, "CP437"},          {737, "CP737"},
    {775, "CP775"},          {850, "CP850"},
    {852, "CP852"},          {855, "CP855"},
    {857, "CP857"},          {858, "CP858"},
    {860, "CP860"},          {861, "CP861"},
    {862, "CP862"},          {863, "CP863"},
    {864, "CP864"},          {865, "CP865"},
    {866, "CP866"},          {869, "CP869"},
    {874, "CP874"},          {932, "CP932"},
    {936, "CP936"},          {949, "CP949"},
    {950, "CP950"},          {1250, "CP1250"},
    {1251, "CP1251"},        {1252, "CP1252"},
    {1253, "CP1253"},        {1254, "CP1254"},
    {1255, "CP1255"},        {1256, "CP1256"},
    {1257, "CP1257"},        {1258, "CP1258"},
    {1361, "JOHAB"},         {10000, "MACINTOSH"},
    {10007, "MAC-CYRILLIC"}, {10029, "MAC-CENTRALEUROPE"},
    {20127, "US-ASCII"},     {20866, "KOI8-R"},
    {21866, "KOI8-U"},       {28591, "ISO-8859-1"},
    {28592, "ISO-8859-2"},   {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},   {28595, "ISO-8859-5"},
    {28596, "ISO-8859-6"},   {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},   {28599, "ISO-8859-9"},
    {28600, "ISO-8859-10"},  {28601, "ISO-8859-11"},
    {28603, "ISO-8859-13"},  {28604, "ISO-8859-14"},
    {28605, "ISO-8859-15"},  {28606, "ISO-8859-16"},
    {50220, "ISO-2022-JP"},  {50225, "ISO-2022-KR"},
    {51932, "EUC-JP-MS"},    {51936, "EUC-CN"},
    {51949, "EUC-KR"},       {51950, "EUC-TW"},
    {54936, "GB18030"},      {65000, "UTF-7"},
    {CodePageUtf8, "UTF-8"},
};
static_assert(std::ranges::is_sorted(KnownCodePages, {}, &SCodePage::number));

// Plain ASCII is what a program gets whose environment names no locale, or one that isn't installed: nobody means that
// as the encoding of his files.
std::optional<std::string> ReadConverterOfLocale(const char* localeName)
{
    const CLocale locale(LC_CTYPE_MASK, localeName);
    if (locale.IsInDoubt())
        return std::nullopt;
    const std::string_view name = locale.IsOpen() ? locale.GetInfo(CODESET) : "ASCII";
    const bool isAscii = name == "ANSI_X3.4-1968" || name == "US-ASCII" || name == "ASCII";
    return std::string(isAscii ? Utf8 : name);
}

// Empty for a number that isn't known.
const char* GetConverter(unsigned int codePage)
{
    static constinit CByLocale<std::string> ofUsers;
    if (codePage == CodePageOfUser)
        return ofUsers.Get(GetUserLocaleName("LC_CTYPE"), ReadConverterOfLocale).c_str();
    const auto* const known = std::ranges::lower_bound(KnownCodePages, codePage, {}, &SCodePage::number);
    return known != std::end(KnownCodePages) && known->number == codePage ? known->converter : "";
}

bool IsBasicCharacter(wchar_t unit)
{
    const auto value = static_cast<std::uint32_t>(unit);
    return value < 0xD800 || (value > 0xDFFF && value <= 0xFFFF);
}

// A piece of output joins the text. UTF-7 can spell half a pair.
void Append(std::string& text, std::string_view bytes) { text += bytes; }
void Append(std::wstring& text, std::wstring_view codePoints)
{
    if (std::ranges::all_of(codePoints, IsBasicCharacter))
        text += codePoints;
    else
        while (!codePoints.empty())
            AppendUnits(text, TakeCodePoint(codePoints));
}

// CConverter: one direction of one encoding, from `Source` to `Target` elements.
template <class Source, class Target>
class CConverter
{
public:
    enum class EStop
    {
        AtEnd,
        AtInvalid,   // what stands in front can't be converted
        AtIncomplete // what stands in front is cut off by the end
    };

    // An encoding without a name isn't open, nor is one that the system doesn't have.
    CConverter(const char* to, const char* from)
    {
        if (*to == '\0' || *from == '\0')
            return;
        handle = ::iconv_open(to, from);
        if (IsOpen())
            return;
        RequireMemory();
        handle = ::iconv_open(to, from);
    }
    ~CConverter()
    {
        if (IsOpen())
            ::iconv_close(handle);
    }
    CConverter(const CConverter&) = delete;
    CConverter& operator=(const CConverter&) = delete;

    bool IsOpen() const { return handle != NotOpen(); }

    // Converts from the front of the source, appends to the text and removes what is done.
    EStop Convert(std::basic_string_view<Source>& source, std::basic_string<Target>& text)
    {
        char* from = reinterpret_cast<char*>(const_cast<Source*>(source.data())); // iconv only reads it
        std::size_t left = source.size() * sizeof(Source);
        const int error = convert(&from, &left, text);
        source.remove_prefix(source.size() - left / sizeof(Source));
        return error == 0 ? EStop::AtEnd : error == EINVAL ? EStop::AtIncomplete : EStop::AtInvalid;
    }

    // Appends what the converter still holds back, a base letter that an accent could have followed for instance, and
    // returns to the first shift state.
    void Reset(std::basic_string<Target>& text) { convert(nullptr, nullptr, text); }

private:
    static iconv_t NotOpen() { return reinterpret_cast<iconv_t>(-1); }

    int convert(char** from, std::size_t* left, std::basic_string<Target>& text)
    {
        Target piece[1024];
        for (;;)
        {
            char* to = reinterpret_cast<char*>(piece);
            std::size_t room = sizeof piece;
            const bool stopped = ::iconv(handle, from, left, &to, &room) == static_cast<std::size_t>(-1);
            const int error = stopped ? errno : 0;
            Append(text, std::basic_string_view<Target>(piece, (sizeof piece - room) / sizeof(Target)));
            if (error != E2BIG || room == sizeof piece)
                return error;
        }
    }

    iconv_t handle = NotOpen();
};

// CEncoder: code points to the bytes of a code page, with `?` for each that it lacks.
class CEncoder
{
public:
    CEncoder(std::string& text, const char* name) : text(text), converter(name, CodePoints) {}

    bool IsOpen() const { return converter.IsOpen(); }
    void Finish() { converter.Reset(text); }

    void Append(std::wstring_view run)
    {
        while (converter.Convert(run, text) != Converter::EStop::AtEnd)
        {
            run.remove_prefix(1);
            appendReplacement();
        }
    }

    // One character from the supplementary planes, or what is none. Some converters drop the tag characters U+E0000 to
    // U+E007F without a word: what gives no bytes is lacking as well.
    void AppendSupplementary(std::uint32_t codePoint)
    {
        const wchar_t character = static_cast<wchar_t>(codePoint);
        std::wstring_view run(&character, 1);
        const std::size_t before = text.size();
        if (codePoint == ReplacementCharacter || converter.Convert(run, text) != Converter::EStop::AtEnd ||
            text.size() == before)
            appendReplacement();
    }

private:
    using Converter = CConverter<wchar_t, char>;

    // Through the converter, since a shift may have to go before it.
    void appendReplacement()
    {
        std::wstring_view replacement = L"?";
        converter.Convert(replacement, text);
    }

    std::string& text;
    Converter converter;
};

} // namespace

bool AppendFromEncoding(std::wstring& text, std::string_view bytes, const char* encoding)
{
    if (encoding == Utf8)
    {
        AppendUtf16(text, bytes);
        return true;
    }
    using Converter = CConverter<char, wchar_t>;
    Converter converter(CodePoints, encoding);
    if (!converter.IsOpen())
        return false;
    for (Converter::EStop stop; (stop = converter.Convert(bytes, text)) != Converter::EStop::AtEnd;)
    {
        // What is held back comes before the replacement. The shift state of ISO 2022 outlives a bad byte.
        if (encoding != Iso2022Jp)
            converter.Reset(text);
        text += static_cast<wchar_t>(ReplacementCharacter);
        bytes.remove_prefix(stop == Converter::EStop::AtIncomplete ? bytes.size() : 1);
    }
    converter.Reset(text);
    return true;
}

bool AppendFromCodePage(std::wstring& text, std::string_view bytes, unsigned int codePage)
{
    return AppendFromEncoding(text, bytes, GetConverter(codePage));
}

bool AppendToCodePage(std::string& text, std::wstring_view units, unsigned int codePage)
{
    const char* const name = GetConverter(codePage);
    if (name == Utf8)
    {
        AppendUtf8(text, units);
        return true;
    }
    CEncoder encoder(text, name);
    if (!encoder.IsOpen())
        return false;
    while (!units.empty())
    {
        const auto run = static_cast<std::size_t>(std::ranges::find_if_not(units, IsBasicCharacter) - units.begin());
        encoder.Append(units.substr(0, run));
        units.remove_prefix(run);
        if (!units.empty())
            encoder.AppendSupplementary(TakeCodePoint(units));
    }
    encoder.Finish();
    return true;
}

} // namespace Vellum::Platform
