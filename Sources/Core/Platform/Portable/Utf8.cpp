#include "Platform/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "Platform/Utf16.h"

namespace Vellum::Platform
{

namespace
{

// Number of bytes in front that are ASCII, eight at a time.
std::size_t CountAscii(std::string_view bytes)
{
    std::size_t count = 0;
    for (std::uint64_t block = 0; count + sizeof block <= bytes.size(); count += sizeof block)
    {
        std::memcpy(&block, bytes.data() + count, sizeof block);
        if ((block & 0x8080808080808080u) != 0)
            break;
    }
    while (count < bytes.size() && static_cast<unsigned char>(bytes[count]) < 0x80)
        ++count;
    return count;
}

// What a lead byte announces (table 3-7 of the Unicode standard): how many bytes follow it, and the range of the first
// of them. All later ones are 80..BF. A byte that can't lead has no following bytes and no bits.
struct SLead
{
    std::uint32_t following;
    std::uint32_t bits; // of the code point, from the lead byte
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
};

SLead ClassifyLead(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, lead & 0x1Fu};
    if (lead == 0xE0)
        return {2, 0, 0xA0, 0xBF};
    if (lead == 0xED) // no surrogates
        return {2, 0xD, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF)
        return {2, lead & 0xFu};
    if (lead == 0xF0)
        return {3, 0, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3)
        return {3, lead & 0x7u};
    if (lead == 0xF4)
        return {3, 4, 0x80, 0x8F};
    return {0, 0};
}

enum class EForm
{
    Whole,
    CutOff, // by the end of the bytes
    IllFormed
};

// One character that isn't ASCII, or one maximal ill-formed subsequence.
struct SSequence
{
    EForm form;
    std::size_t size;        // in bytes
    std::uint32_t codePoint; // of a whole one
};

// The sequence in front.
SSequence FindSequence(std::string_view bytes)
{
    const SLead lead = ClassifyLead(static_cast<unsigned char>(bytes.front()));
    std::uint32_t codePoint = lead.bits;
    std::size_t size = 1;
    unsigned char lowest = lead.lowest;
    unsigned char highest = lead.highest;
    for (; size <= lead.following && size < bytes.size(); ++size)
    {
        const auto byte = static_cast<unsigned char>(bytes[size]);
        if (byte < lowest || byte > highest)
            return {EForm::IllFormed, size, 0};
        codePoint = (codePoint << 6) | (byte & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
    }
    const bool isWhole = size == lead.following + 1;
    return {lead.following == 0 ? EForm::IllFormed : isWhole ? EForm::Whole : EForm::CutOff, size, codePoint};
}

std::uint32_t TakeCodePoint(std::string_view& bytes)
{
    const SSequence sequence = FindSequence(bytes);
    bytes.remove_prefix(sequence.size);
    return sequence.form == EForm::Whole ? sequence.codePoint : ReplacementCharacter;
}

constexpr std::size_t LongestCharacter = 4;

// Returns the number of bytes.
std::size_t Encode(char* to, char32_t codePoint)
{
    const auto continuation = [&](int shift) { return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80)
    {
        to[0] = static_cast<char>(codePoint);
        return 1;
    }
    if (codePoint < 0x800)
    {
        to[0] = static_cast<char>(0xC0 | (codePoint >> 6));
        to[1] = continuation(0);
        return 2;
    }
    if (codePoint < 0x10000)
    {
        to[0] = static_cast<char>(0xE0 | (codePoint >> 12));
        to[1] = continuation(6);
        to[2] = continuation(0);
        return 3;
    }
    to[0] = static_cast<char>(0xF0 | (codePoint >> 18));
    to[1] = continuation(12);
    to[2] = continuation(6);
    to[3] = continuation(0);
    return 4;
}

} // namespace

bool IsUtf8(std::string_view bytes)
{
    bool isBeyondAscii = false;
    for (bytes.remove_prefix(CountAscii(bytes)); !bytes.empty(); bytes.remove_prefix(CountAscii(bytes)))
    {
        const SSequence sequence = FindSequence(bytes);
        if (sequence.form != EForm::Whole)
            return isBeyondAscii && sequence.form == EForm::CutOff;
        isBeyondAscii = true;
        bytes.remove_prefix(sequence.size);
    }
    return isBeyondAscii;
}

void AppendUtf16(std::wstring& text, std::string_view utf8)
{
    text.reserve(text.size() + utf8.size()); // never fewer bytes than units
    while (!utf8.empty())
    {
        const std::size_t ascii = CountAscii(utf8);
        text.append(utf8.begin(), utf8.begin() + static_cast<std::ptrdiff_t>(ascii));
        utf8.remove_prefix(ascii);
        while (!utf8.empty() && static_cast<unsigned char>(utf8.front()) >= 0x80)
            AppendUnits(text, TakeCodePoint(utf8));
    }
}

void AppendUtf8(std::string& text, char32_t codePoint)
{
    std::array<char, LongestCharacter> bytes;
    text.append(bytes.data(), Encode(bytes.data(), codePoint));
}

void AppendUtf8(std::string& text, std::wstring_view units)
{
    text.reserve(text.size() + units.size());
    while (!units.empty())
    {
        std::size_t ascii = 0;
        while (ascii < units.size() && static_cast<std::uint32_t>(units[ascii]) < 0x80)
            ++ascii;
        text.resize(text.size() + ascii);
        char* to = text.data() + text.size() - ascii;
        for (const wchar_t unit : units.substr(0, ascii))
            *to++ = static_cast<char>(unit);
        units.remove_prefix(ascii);
        while (!units.empty() && static_cast<std::uint32_t>(units.front()) >= 0x80)
            AppendUtf8(text, static_cast<char32_t>(TakeCodePoint(units)));
    }
}

std::size_t CopyUtf8(std::span<char> to, std::wstring_view units) noexcept
{
    std::size_t size = 0;
    while (!units.empty())
    {
        std::array<char, LongestCharacter> bytes;
        const std::size_t count = Encode(bytes.data(), static_cast<char32_t>(TakeCodePoint(units)));
        if (count > to.size() - size)
            break;
        std::copy_n(bytes.begin(), count, to.data() + size);
        size += count;
    }
    return size;
}

} // namespace Vellum::Platform
