#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// The steps in which the XML parser goes over a text, eight bytes at a time where nothing stands in the way.
//
// A text is zero-terminated, and `end` is its terminator. Eight bytes are only loaded where the text has as many in
// front of its end; the rest is gone over byte by byte.
//
// Characters are those of UTF-8, whatever the text says. What the lead byte of a character has behind it isn't looked
// at, so that a byte like "<" is hidden there. Text is mostly ASCII: eight bytes without a byte from 0x80 up have no
// lead byte, and can be looked through at once.
namespace Vellum::XmlScan
{

constexpr bool IsSpace(char byte)
{
    constexpr std::uint64_t Spaces = (1u << '\t') | (1u << '\n') | (1u << '\r') | (std::uint64_t{1} << ' ');
    return static_cast<unsigned char>(byte) <= ' ' && (Spaces >> byte & 1) != 0;
}

// Bytes from a lead byte to the next character; 1 for every other byte.
constexpr std::uint8_t StepOf(unsigned byte)
{
    if (byte < 0xC2 || byte > 0xF4)
        return 1;
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// The place behind a character. A step that would pass the end goes to the next byte.
inline const char* StepOver(const char* at, const char* end)
{
    const std::uint8_t step = StepOf(static_cast<unsigned char>(*at));
    return at + (step <= end - at ? step : 1);
}

// Words of eight bytes. Where the first byte in memory isn't the lowest of a word, none are used.
constexpr bool HasWords = std::endian::native == std::endian::little;
constexpr std::ptrdiff_t WordSize = 8;
constexpr std::uint64_t HighBits = 0x8080808080808080u;

constexpr std::uint64_t Repeat(char byte) { return 0x0101010101010101u * static_cast<unsigned char>(byte); }

inline std::uint64_t LoadWord(const char* at)
{
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    return word;
}

inline bool HasWord(const char* at, const char* end) { return HasWords && end - at >= WordSize; }

// A word whose lowest high bit that is set is in the first byte that is `byte`. Other bits mean nothing.
constexpr std::uint64_t Find(std::uint64_t word, char byte)
{
    const std::uint64_t different = word ^ Repeat(byte);
    return (different - Repeat(1)) & ~different;
}

constexpr std::ptrdiff_t FirstByte(std::uint64_t found) { return std::countr_zero(found) / 8; }

// The first place that has one of these bytes, or a byte from 0x80 up, or is the end.
template <char... Stops>
const char* SkipOthers(const char* at, const char* end)
{
    for (; HasWord(at, end); at += WordSize)
    {
        const std::uint64_t word = LoadWord(at);
        if (const std::uint64_t found = ((Find(word, Stops) | ...) | word) & HighBits)
            return at + FirstByte(found);
    }
    while (at != end && ((*at != Stops) && ...) && (static_cast<unsigned char>(*at) < 0x80))
        ++at;
    return at;
}

// The same for characters: the first one that is one of these, or the end of the piece of text. The last character may
// be cut by that, but not by the end of the text.
template <char... Stops>
const char* SkipCharacters(const char* at, const char* pieceEnd, const char* end)
{
    for (;;)
    {
        at = SkipOthers<Stops...>(at, pieceEnd);
        if (at == pieceEnd || static_cast<unsigned char>(*at) < 0x80)
            return at;
        at = StepOver(at, end);
        if (at >= pieceEnd)
            return pieceEnd;
    }
}

// Behind the run of the byte that stands there.
inline const char* SkipRun(const char* at, const char* end)
{
    const char byte = *at;
    const std::uint64_t run = Repeat(byte);
    while (HasWords && end - at >= 4 * WordSize &&
           ((LoadWord(at) ^ run) | (LoadWord(at + WordSize) ^ run) | (LoadWord(at + 2 * WordSize) ^ run) |
            (LoadWord(at + 3 * WordSize) ^ run)) == 0)
        at += 4 * WordSize;
    for (; HasWord(at, end); at += WordSize)
        if (const std::uint64_t different = LoadWord(at) ^ run)
            return at + FirstByte(different);
    while (at != end && *at == byte)
        ++at;
    return at;
}

// White space is mostly a line end and a run of TABs, which may be long.
inline const char* SkipSpace(const char* at, const char* end)
{
    if (*at == '\n')
        ++at;
    while (IsSpace(*at))
        at = SkipRun(at, end);
    return at;
}

// Whether the text goes on with a name, which may be read to the next multiple of eight bytes.
inline bool StartsWith(const char* at, const char* end, const char* name, std::size_t length)
{
    if (!HasWords || end - at < static_cast<std::ptrdiff_t>(length + WordSize))
        return end - at >= static_cast<std::ptrdiff_t>(length) && std::memcmp(at, name, length) == 0;
    for (; length > WordSize; length -= WordSize, at += WordSize, name += WordSize)
        if (LoadWord(at) != LoadWord(name))
            return false;
    return length == 0 || (LoadWord(at) ^ LoadWord(name)) << (64 - 8 * length) == 0;
}

} // namespace Vellum::XmlScan
