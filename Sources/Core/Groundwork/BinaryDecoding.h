#pragma once

#include <string>

#include "Groundwork/BinaryEncoding.h"
#include "Groundwork/CbArray.h"

/// The reverse of BinaryEncoding, written once for all streams. Each function uses the raw Read and ReadExact of the
/// stream that it is given and is bound to them at compile time if the stream's class is final.
namespace BinaryDecoding
{

/// Raises the CbExceptionStream of a value that isn't there.
[[noreturn]] VELLUM_API void RaiseMissing();

/// Takes a number of any of the basic types, least significant byte first. Raises what ReadExact of the stream raises,
/// and so do all functions below.
template <class Stream, class T>
Stream& ReadNumber(Stream& stream, T& value)
{
    BinaryEncoding::Image<T> image;
    stream.ReadExact(image.data(), image.size());
    if constexpr (std::endian::native == std::endian::big)
        std::reverse(image.begin(), image.end());
    value = std::bit_cast<T>(image);
    return stream;
}

/// Takes a bool: any byte but 0 is true. A byte that is no bool's is never looked at as one.
template <class Stream>
Stream& ReadNumber(Stream& stream, bool& value)
{
    unsigned char byte = 0;
    ReadNumber(stream, byte);
    value = byte != 0;
    return stream;
}

/// @name Resize
/// Gives a text or an array the size, in elements. Both return where the elements lie now.
/// @{
template <class Char>
Char* Resize(std::basic_string<Char>& text, std::size_t size)
{
    text.resize(size);
    return text.data();
}
inline unsigned char* Resize(CbArray<unsigned char>& bytes, std::size_t size)
{
    bytes.SetSize(size);
    return bytes.GetData();
}
/// @}

/// Reads up to `count` units into as many elements and returns how many there were.
template <class Stream, class Char>
std::size_t ReadUnits(Stream& stream, Char* elements, std::size_t count)
{
    return static_cast<std::size_t>(std::min<std::uint64_t>(stream.Read(elements, count), count));
}

/// Wide elements are filled in place, front to back: the units are read into the last bytes of the memory, so that no
/// element is written over a unit that is still to be taken.
template <class Stream>
std::size_t ReadUnits(Stream& stream, wchar_t* elements, std::size_t count)
{
    const std::size_t size = 2 * count;
    unsigned char* const units = reinterpret_cast<unsigned char*>(elements) + count * (sizeof(wchar_t) - 2);
    const std::size_t arrived = static_cast<std::size_t>(std::min<std::uint64_t>(stream.Read(units, size), size)) / 2;
    for (std::size_t i = 0; i < arrived; ++i)
        elements[i] = static_cast<wchar_t>(units[2 * i] | units[2 * i + 1] << 8);
    return arrived;
}

/// Replaces the content of a text or array by the next `count` units, or by as many as there are, and returns their
/// number. Memory is obtained for what has arrived, and for as much again or 64 Ki units.
template <class Stream, class Content>
std::uint64_t ReadGrowing(Stream& stream, Content& content, std::uint64_t count)
{
    constexpr std::size_t firstStep = 0x10000;
    std::size_t arrived = 0;
    Resize(content, 0);
    do
    {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count - arrived, //
                                                                             std::max(arrived, firstStep)));
        const std::size_t delivered = ReadUnits(stream, Resize(content, arrived + wanted) + arrived, wanted);
        arrived += delivered;
        if (delivered < wanted)
        {
            Resize(content, arrived);
            break;
        }
    } while (arrived < count);
    return arrived;
}

/// Takes a narrow text: its length in bytes, 32 bits, and the bytes. Raises RaiseMissing's if there are fewer.
template <class Stream>
Stream& ReadText(Stream& stream, std::string& text)
{
    std::uint32_t length = 0;
    ReadNumber(stream, length);
    if (ReadGrowing(stream, text, length) != length)
        RaiseMissing();
    return stream;
}

/// Takes the length of a wide text, in units, whose first byte is `first`: it is in the narrowest form that isn't
/// filled with ones.
template <class Stream>
std::uint64_t ReadWideLength(Stream& stream, std::uint8_t first)
{
    if (first < 0xFF)
        return first;
    std::uint16_t second = 0;
    ReadNumber(stream, second);
    if (second < 0xFFFF)
        return second;
    std::uint32_t third = 0;
    ReadNumber(stream, third);
    if (third < 0xFFFFFFFF)
        return third;
    std::uint64_t length = 0;
    ReadNumber(stream, length);
    return length;
}

/// Takes a wide text, one UTF-16 unit to each element. Raises RaiseMissing's if its mark isn't there, or if there are
/// fewer units than its length says.
template <class Stream>
Stream& ReadText(Stream& stream, std::wstring& text)
{
    std::array<unsigned char, 4> head; // the mark and the first byte of the length
    stream.ReadExact(head.data(), head.size());
    if (head[0] != 0xFF || head[1] != 0xFE || head[2] != 0xFF)
        RaiseMissing();
    const std::uint64_t length = ReadWideLength(stream, head[3]);
    if (ReadGrowing(stream, text, length) != length)
        RaiseMissing();
    return stream;
}

} // namespace BinaryDecoding
