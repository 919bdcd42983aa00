#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <memory>
#include <new>
#include <type_traits>

#include "Platform/CodePages.h"
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

// The same precedence as setlocale, but of the environment alone.
const char* GetUserLocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const char* name = std::getenv(variable); name != nullptr && *name != '\0')
            return name;
    return "C";
}

// Plain ASCII is what a program gets whose environment names no locale, or one that isn't installed: nobody means that
// as the encoding of his files.
std::string ReadConverterOfLocale(const std::string& localeName)
{
    const std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&::freelocale)> locale(
        ::newlocale(LC_CTYPE_MASK, localeName.c_str(), nullptr), &::freelocale);
    const std::string name = locale == nullptr ? "ASCII" : ::nl_langinfo_l(CODESET, locale.get());
    return name == "ANSI_X3.4-1968" || name == "US-ASCII" || name == "ASCII" ? "UTF-8" : name;
}

// Each thread keeps the last answer: opening a locale reads files, and glibc never frees what it makes of LOCPATH then.
const std::string& GetConverterOfUser()
{
    thread_local std::string localeName;
    thread_local std::string converter;
    if (const char* const present = GetUserLocaleName(); localeName != present)
    {
        converter = ReadConverterOfLocale(present);
        localeName = present;
    }
    return converter;
}

// Empty for a number that isn't known.
std::string GetConverter(unsigned int codePage)
{
    if (codePage == CodePageOfUser)
        return GetConverterOfUser();
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
    CConverter(const std::string& to, const std::string& from)
    {
        if (to.empty() || from.empty())
            return;
        handle = ::iconv_open(to.c_str(), from.c_str());
        if (!IsOpen() && errno == ENOMEM)
            throw std::bad_alloc();
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
    CEncoder(std::string& text, const std::string& name) : text(text), converter(name, CodePoints) {}

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

bool AppendFromCodePage(std::wstring& text, std::string_view bytes, unsigned int codePage)
{
    const std::string name = GetConverter(codePage);
    if (name == "UTF-8")
    {
        AppendUtf16(text, bytes);
        return true;
    }
    using Converter = CConverter<char, wchar_t>;
    Converter converter(CodePoints, name);
    if (!converter.IsOpen())
        return false;
    for (Converter::EStop stop; (stop = converter.Convert(bytes, text)) != Converter::EStop::AtEnd;)
    {
        // What is held back comes before the replacement. The shift state of ISO 2022 outlives a bad byte.
        if (name != "ISO-2022-JP")
            converter.Reset(text);
        text += static_cast<wchar_t>(ReplacementCharacter);
        bytes.remove_prefix(stop == Converter::EStop::AtIncomplete ? bytes.size() : 1);
    }
    converter.Reset(text);
    return true;
}

bool AppendToCodePage(std::string& text, std::wstring_view units, unsigned int codePage)
{
    const std::string name = GetConverter(codePage);
    if (name == "UTF-8")
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
