#include "Vellum/CTextFile.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "Platform/CodePageDetector.h"
#include "Platform/CodePages.h"
#include "Platform/ModuleResource.h"
#include "Platform/Utf16.h"
#include "Platform/Utf8.h"

#include "Vellum/CBinaryFile.h"
#include "Vellum/CException.h"
#include "Vellum/Encodings.h"

namespace Vellum
{
namespace
{

using namespace std::string_view_literals;

using TextFile = CBinaryFile<std::vector<unsigned char>>;

enum ECodePage : unsigned int
{
    PageUtf16LittleEndian = 1200,
    PageUtf16BigEndian = 1201,
    PageUtf32LittleEndian = 12000,
    PageUtf32BigEndian = 12001,
    PageGb18030 = 54936,
    PageUtf7 = 65000,
    PageUtf8 = Platform::CodePageUtf8
};

struct SMark
{
    std::string_view bytes;
    ECodePage codePage;
};

// The first that fits counts. The zero byte behind the text may be a part of one.
constexpr SMark Marks[] = {
    {"+/v"sv, PageUtf7},
    {"\xEF\xBB\xBF"sv, PageUtf8},
    {"\xFF\xFE\0\0"sv, PageUtf32LittleEndian},
    {"\xFF\xFE"sv, PageUtf16LittleEndian},
    {"\xFE\xFF"sv, PageUtf16BigEndian},
    {"\0\0\xFE\xFF"sv, PageUtf32BigEndian},
    {"\x84\x31\x95\x33"sv, PageGb18030},
};

// Nothing for an object that was moved from.
const char* GetNarrowText(const std::vector<unsigned char>& buffer)
{
    return buffer.empty() ? nullptr : reinterpret_cast<const char*>(buffer.data());
}

unsigned int FindMark(const std::vector<unsigned char>& buffer)
{
    const std::string_view bytes(GetNarrowText(buffer), buffer.size());
    for (const SMark& mark : Marks)
        if (bytes.starts_with(mark.bytes))
            return mark.codePage;
    return 0;
}

template <std::size_t UnitSize>
std::uint32_t ReadUnit(const unsigned char* bytes, std::endian order)
{
    std::uint32_t unit = 0;
    for (std::size_t index = 0; index < UnitSize; ++index)
        unit = unit << 8 | bytes[order == std::endian::big ? index : UnitSize - 1 - index];
    return unit;
}

// Up to the first unit that is zero. An incomplete one at the end is left over.
template <std::size_t UnitSize, class Append>
std::wstring DecodeUnits(const std::vector<unsigned char>& buffer, std::endian order, const Append& append)
{
    std::wstring text;
    for (std::size_t at = 0; buffer.size() - at >= UnitSize; at += UnitSize)
    {
        const std::uint32_t unit = ReadUnit<UnitSize>(buffer.data() + at, order);
        if (unit == 0)
            break;
        append(text, unit);
    }
    return text;
}

std::wstring DecodeUtf16(const std::vector<unsigned char>& buffer, std::endian order)
{
    return DecodeUnits<2>(buffer, order,
                          [](std::wstring& text, std::uint32_t unit) { text += static_cast<wchar_t>(unit); });
}

std::wstring DecodeUtf32(const std::vector<unsigned char>& buffer, std::endian order)
{
    return DecodeUnits<4>(buffer, order,
                          [](std::wstring& text, std::uint32_t unit)
                          { Platform::AppendUnits(text, Platform::ToCodePoint(unit)); });
}

} // namespace

CTextFile::CTextFile() { initBuffer(); }

CTextFile::CTextFile(std::function<unsigned int(const std::vector<unsigned char>&)> codePageGuesser)
    : codePageGuesser(std::move(codePageGuesser))
{
    initBuffer();
}

CTextFile::CTextFile(const CTextFile& other) = default;
CTextFile::CTextFile(CTextFile&& other) noexcept = default;
CTextFile& CTextFile::operator=(const CTextFile& other) = default;
CTextFile& CTextFile::operator=(CTextFile&& other) noexcept = default;
CTextFile::~CTextFile() = default;

CTextFile& CTextFile::Read(const wchar_t* fileName)
{
    initBuffer(); // what holds if the rest fails
    std::vector<unsigned char> bytes = TextFile::Read(fileName);
    if (bytes.empty() || bytes.back() != 0)
        bytes.push_back(0);
    buffer = std::move(bytes);
    return *this;
}

CTextFile& CTextFile::Read(const std::wstring& fileName) { return Read(fileName.c_str()); }

CTextFile& CTextFile::Read(HINSTANCE module, int resourceId, const wchar_t* resourceType)
{
    initBuffer();
    const std::optional<std::span<const unsigned char>> resource =
        resourceType == nullptr ? std::nullopt : Platform::FindModuleResource(module, resourceId, resourceType);
    if (!resource)
        throw CException(__FILE__, __LINE__, "Vellum::CTextFile::Read");
    buffer.reserve(resource->size() + 1);
    buffer.insert(buffer.begin(), resource->begin(), resource->end());
    return *this;
}

CTextFile& CTextFile::Read(HINSTANCE module, int resourceId, const std::wstring& resourceType)
{
    return Read(module, resourceId, resourceType.c_str());
}

void CTextFile::Write(const wchar_t* fileName) const
{
    if (buffer.empty() || buffer.back() != 0 || buffer.size() - 1 > std::numeric_limits<std::uint32_t>::max())
        throw CException(__FILE__, __LINE__, "Vellum::CTextFile::Write");
    TextFile::Write(fileName, buffer, buffer.size() - 1);
}

void CTextFile::Write(const std::wstring& fileName) const { Write(fileName.c_str()); }

CTextFile& CTextFile::SetText(const char* text)
{
    return setBytes(text == nullptr ? std::string_view() : std::string_view(text));
}

CTextFile& CTextFile::SetText(const std::string& text) { return setBytes(text); }

CTextFile& CTextFile::SetText(const wchar_t* text) { return SetText(text, PageUtf8); }
CTextFile& CTextFile::SetText(const std::wstring& text) { return SetText(text.c_str(), PageUtf8); }

CTextFile& CTextFile::SetText(const wchar_t* text, unsigned int codePage)
{
    return setBytes(Encodings::ToCodePage(text, codePage));
}

CTextFile& CTextFile::SetText(const std::wstring& text, unsigned int codePage)
{
    return SetText(text.c_str(), codePage);
}

std::wstring CTextFile::GetText() const { return GetText(GuessCodePage()); }

std::wstring CTextFile::GetText(unsigned int codePage) const
{
    switch (codePage)
    {
    case PageUtf16LittleEndian:
        return DecodeUtf16(buffer, std::endian::little);
    case PageUtf16BigEndian:
        return DecodeUtf16(buffer, std::endian::big);
    case PageUtf32LittleEndian:
        return DecodeUtf32(buffer, std::endian::little);
    case PageUtf32BigEndian:
        return DecodeUtf32(buffer, std::endian::big);
    default:
        return Encodings::FromCodePage(GetNarrowText(buffer), codePage);
    }
}

std::string CTextFile::GetTextRaw() const { return buffer.empty() ? std::string() : GetNarrowText(buffer); }

unsigned int CTextFile::GuessCodePage() const
{
    if (codePageGuesser)
        if (const unsigned int guessed = codePageGuesser(buffer); guessed != 0)
            return guessed;
    if (const unsigned int marked = FindMark(buffer); marked != 0)
        return marked;
    const auto text = std::span(buffer).first(buffer.empty() ? 0 : buffer.size() - 1);
    // A detector needs more text than a name has to tell the one encoding that can be told from the bytes.
    const bool isUtf8 = Platform::IsUtf8({reinterpret_cast<const char*>(text.data()), text.size()});
    return isUtf8 ? PageUtf8 : Platform::DetectCodePage(text);
}

void CTextFile::initBuffer()
{
    buffer.clear();
    buffer.push_back(0);
}

CTextFile& CTextFile::setBytes(std::string_view bytes)
{
    buffer.resize(bytes.size() + 1);
    *std::ranges::copy(bytes, buffer.begin()).out = 0;
    return *this;
}

} // namespace Vellum
