#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>
#include <uchardet.h>

#include "Platform/CodePageDetector.h"

namespace Vellum::Platform
{

namespace
{

// uchardet counts in 32 bits, whatever its interface says.
constexpr std::size_t MostAtOnce = std::size_t{1} << 30;

struct SCharset
{
    std::string_view name;
    unsigned int codePage;
};

// Where a code page of the usual numbering extends a charset, it stands for it: 949 for EUC-KR. What CodePages.h has no
// converter for isn't here.
constexpr SCharset KnownCharsets[] = {
    {"ASCII", 20127},        {"UTF-8", 65001},
    {"BIG5", 950},           {"EUC-JP", 51932},
    {"EUC-KR", 949},         {"GB18030", 54936},
    {"IBM852", 852},         {"IBM855", 855},
    {"IBM866", 866},         {"ISO-2022-JP", 50220},
    {"ISO-8859-1", 28591},   {"ISO-8859-2", 28592},
    {"ISO-8859-3", 28593},   {"ISO-8859-4", 28594},
    {"ISO-8859-5", 28595},   {"ISO-8859-6", 28596},
    {"ISO-8859-7", 28597},   {"ISO-8859-8", 28598},
    {"ISO-8859-9", 28599},   {"ISO-8859-10", 28600},
    {"ISO-8859-11", 28601},  {"ISO-8859-13", 28603},
    {"ISO-8859-15", 28605},  {"ISO-8859-16", 28606},
    {"KOI8-R", 20866},       {"SHIFT_JIS", 932},
    {"TIS-620", 874},        {"UHC", 949},
    {"WINDOWS-1250", 1250},  {"WINDOWS-1251", 1251},
    {"WINDOWS-1252", 1252},  {"WINDOWS-1253", 1253},
    {"WINDOWS-1255", 1255},  {"WINDOWS-1256", 1256},
    {"WINDOWS-1257", 1257},  {"WINDOWS-1258", 1258},
    {"MAC-CYRILLIC", 10007}, {"MAC-CENTRALEUROPE", 10029},
    {"ISO-2022-KR", 50225},  {"EUC-TW", 51950},
};

struct SDelete
{
    void operator()(uchardet_t detector) const noexcept { ::uchardet_delete(detector); }
};

unsigned int FindCodePage(std::string_view name)
{
    const auto* const found = std::ranges::find(KnownCharsets, name, &SCharset::name);
    return found == std::end(KnownCharsets) ? 0 : found->codePage;
}

} // namespace

unsigned int DetectCodePage(std::span<const unsigned char> text)
{
    const std::unique_ptr<std::remove_pointer_t<uchardet_t>, SDelete> detector(::uchardet_new());
    if (detector == nullptr)
        return 0;
    while (!text.empty())
    {
        const auto piece = text.first(std::min(text.size(), MostAtOnce));
        if (::uchardet_handle_data(detector.get(), reinterpret_cast<const char*>(piece.data()), piece.size()) != 0)
            return 0;
        text = text.subspan(piece.size());
    }
    ::uchardet_data_end(detector.get());
    return FindCodePage(::uchardet_get_charset(detector.get()));
}

} // namespace Vellum::Platform
