#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Vellum/src/EightBytes.h"

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

inline bool HasEight(const char* at, const char* end) { return end - at >= 8; }

// The first place that has one of these bytes, or a byte from 0x80 up, or is the end.
template <char... Stops>
const char* SkipOthers(const char* at, const char* end)
{
    for (; HasEight(at, end); at += 8)
    {
        const std::uint64_t bytes = LoadEight(at);
        if (const std::uint64_t marks = (MarkBytes(bytes, Stops) | ...) | (bytes & ByteMarks))
            return at + FirstMarked(marks);
    }
    while (at != end && ((*at != Stops) && ...) && static_cast<unsigned char>(*at) < 0x80)
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

// Behind the run of the byte that stands there. Most runs are short, some are very long.
inline const char* SkipRun(const char* at, const char* end)
{
    const char byte = *at;
    const std::uint64_t run = RepeatByte(static_cast<unsigned char>(byte));
    const auto difference = [&](std::ptrdiff_t offset) { return LoadEight(at + offset) ^ run; };
    while (HasEight(at, end))
    {
        if (const std::uint64_t different = difference(0))
            return at + FirstMarked(different); // the first byte that has a bit
        for (at += 8; end - at >= 32 && (difference(0) | difference(8) | difference(16) | difference(24)) == 0;)
            at += 32;
    }
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

// Whether the text goes on with a name, from which seven bytes more may be read.
inline bool StartsWith(const char* at, const char* end, const char* name, std::size_t length)
{
    const auto left = static_cast<std::size_t>(end - at);
    return left < length + 7 ? left >= length && std::memcmp(at, name, length) == 0 : BeginAlike(at, name, length);
}

} // namespace Vellum::XmlScan
