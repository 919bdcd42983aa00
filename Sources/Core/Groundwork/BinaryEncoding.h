#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <limits>
#include <string_view>

#include "../Platform/Export.h"

/// The encoding whose grammar CbStreamWriteBinary.h shows, written once for all streams. Each function uses the raw
/// Write of the stream that it is given and is bound to it at compile time if the stream's class is final.
namespace BinaryEncoding
{

/// The bytes of a T in memory.
template <class T>
using Image = std::array<unsigned char, sizeof(T)>;

/// The bytes of a number as they are stored, least significant first.
template <class T>
Image<T> ToImage(T value) noexcept
{
    auto image = std::bit_cast<Image<T>>(value);
    if constexpr (std::endian::native == std::endian::big)
        std::reverse(image.begin(), image.end());
    return image;
}

/// Writes a number or bool of any of the basic types. Raises what Write of the stream raises, and so do all functions
/// below.
template <class Stream, class T>
Stream& WriteNumber(Stream& stream, T value)
{
    const Image<T> image = ToImage(value);
    stream.Write(image.data(), image.size());
    return stream;
}

/// Raises the CbExceptionStream of a narrow text whose length has no encoding, "CbStreamWriteBinary::Write".
[[noreturn]] VELLUM_API void RaiseTextTooLong();

/// Writes a zero-terminated narrow text: its length in bytes, 32 bits, and the bytes without the NUL. Raises
/// RaiseTextTooLong's for 4 GiB and more.
template <class Stream>
Stream& WriteText(Stream& stream, const char* text)
{
    const std::size_t length = std::strlen(text);
    if (length > std::numeric_limits<std::uint32_t>::max())
        RaiseTextTooLong();
    WriteNumber(stream, static_cast<std::uint32_t>(length));
    stream.Write(text, length);
    return stream;
}

/// Writes the length of a wide text, in units, in the shortest form that holds it.
template <class Stream>
void WriteWideLength(Stream& stream, std::uint64_t length)
{
    if (length < 0xFF)
    {
        WriteNumber(stream, static_cast<std::uint8_t>(length));
        return;
    }
    WriteNumber(stream, std::uint8_t{0xFF});
    if (length < 0xFFFE)
    {
        WriteNumber(stream, static_cast<std::uint16_t>(length));
        return;
    }
    WriteNumber(stream, std::uint16_t{0xFFFF});
    if (length < 0xFFFFFFFF)
    {
        WriteNumber(stream, static_cast<std::uint32_t>(length));
        return;
    }
    WriteNumber(stream, std::uint32_t{0xFFFFFFFF});
    WriteNumber(stream, length);
}

/// Whether an element of wide text stands for two UTF-16 units.
constexpr bool NeedsPair(std::uint32_t codePoint) { return codePoint > 0xFFFF && codePoint <= 0x10FFFF; }

/// How many UTF-16 units the elements of a text become.
inline std::uint64_t CountUnits(std::wstring_view text)
{
    const auto pairs = std::count_if(text.begin(), text.end(),
                                     [](wchar_t element) { return NeedsPair(static_cast<std::uint32_t>(element)); });
    return std::uint64_t{text.size()} + static_cast<std::uint64_t>(pairs);
}

/// Writes the UTF-16 units of a text. An element beyond U+10FFFF becomes U+FFFD.
template <class Stream>
void WriteUnits(Stream& stream, std::wstring_view text)
{
    std::array<unsigned char, 512> chunk;
    std::size_t used = 0;
    const auto put = [&](std::uint32_t unit)
    {
        chunk[used++] = static_cast<unsigned char>(unit);
        chunk[used++] = static_cast<unsigned char>(unit >> 8);
    };
    for (const wchar_t element : text)
    {
        if (used + 4 > chunk.size())
        {
            stream.Write(chunk.data(), used);
            used = 0;
        }
        const auto codePoint = static_cast<std::uint32_t>(element);
        if (NeedsPair(codePoint))
        {
            put(0xD800 + ((codePoint - 0x10000) >> 10));
            put(0xDC00 + (codePoint & 0x3FF));
        }
        else
            put(codePoint > 0xFFFF ? 0xFFFD : codePoint);
    }
    if (used != 0)
        stream.Write(chunk.data(), used);
}

/// Writes a zero-terminated wide text: its mark, its length in units, and the units without the NUL.
template <class Stream>
Stream& WriteText(Stream& stream, const wchar_t* text)
{
    const std::wstring_view units(text);
    WriteNumber(stream, std::uint8_t{0xFF});
    WriteNumber(stream, std::uint16_t{0xFFFE});
    WriteWideLength(stream, CountUnits(units));
    WriteUnits(stream, units);
    return stream;
}

} // namespace BinaryEncoding
