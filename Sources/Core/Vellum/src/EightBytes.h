#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Text eight bytes at a time: they are loaded as one number, and each test marks the bytes that pass it by their
// highest bit. The tests are exact for every byte, so that the first mark is right whichever end the processor keeps
// first.
namespace Vellum
{

constexpr std::uint64_t RepeatByte(unsigned char byte) { return 0x0101010101010101u * byte; }

inline constexpr std::uint64_t ByteMarks = RepeatByte(0x80);

inline std::uint64_t LoadEight(const char* text)
{
    std::uint64_t bytes;
    std::memcpy(&bytes, text, sizeof bytes);
    return bytes;
}

constexpr std::uint64_t MarkBytes(std::uint64_t bytes, char wanted)
{
    const std::uint64_t difference = bytes ^ RepeatByte(static_cast<unsigned char>(wanted));
    return ~(((difference & ~ByteMarks) + ~ByteMarks) | difference) & ByteMarks;
}

// Marks the bytes up to `highest`, which is below 0x7F.
constexpr std::uint64_t MarkBytesUpTo(std::uint64_t bytes, char highest)
{
    return ~((bytes | ByteMarks) - RepeatByte(static_cast<unsigned char>(highest + 1))) & ~bytes & ByteMarks;
}

// The place of the first marked byte, of which there is at least one.
constexpr std::size_t FirstMarked(std::uint64_t marks)
{
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(marks) : std::countl_zero(marks);
    return static_cast<std::size_t>(bits) / 8;
}

// Whether all eight are decimal digits.
constexpr bool AreDigits(std::uint64_t bytes)
{
    const std::uint64_t carried = bytes + RepeatByte(6); // a byte behind 9 gets another upper half
    return (bytes & RepeatByte(0xF0)) == RepeatByte(0x30) && (carried & RepeatByte(0xF0)) == RepeatByte(0x30);
}

// The number that eight digits are, put together two, four and eight at a time.
constexpr std::uint32_t NumberOf(std::uint64_t digits)
{
    constexpr bool isFirstLowest = std::endian::native == std::endian::little;
    const auto join = [](std::uint64_t parts, std::uint64_t scale, int width, std::uint64_t mask)
    {
        const std::uint64_t one = parts & mask, other = (parts >> width) & mask;
        return isFirstLowest ? one * scale + other : other * scale + one;
    };
    digits = join(digits - RepeatByte('0'), 10, 8, 0x00FF00FF00FF00FFu);
    digits = join(digits, 100, 16, 0x0000FFFF0000FFFFu);
    return static_cast<std::uint32_t>(join(digits, 10000, 32, 0x00000000FFFFFFFFu));
}

// Whether two texts begin with the same bytes, of which there is at least one. Seven more can be read from each.
inline bool BeginAlike(const char* left, const char* right, std::size_t count)
{
    for (; count > 8; count -= 8, left += 8, right += 8)
        if (LoadEight(left) != LoadEight(right))
            return false;
    const std::uint64_t difference = LoadEight(left) ^ LoadEight(right);
    const std::size_t others = 8 * (8 - count);
    return (std::endian::native == std::endian::little ? difference << others : difference >> others) == 0;
}

// CTextReach: how far a zero-terminated text is known to go on, so that it may be read eight bytes at a time. It looks
// for the end a few thousand bytes ahead of who asks, and no further.
class CTextReach
{
public:
    explicit CTextReach(const char* text) : known(text) {}

    // Whether so many bytes follow, none of them the zero. They may be there even if not, when they are very many.
    // Places are asked for from the front to the back.
    bool Has(const char* text, std::size_t count)
    {
        return known - text >= static_cast<std::ptrdiff_t>(count) || extend(text, count);
    }

private:
    static constexpr std::size_t Step = 4096;

    bool extend(const char* text, std::size_t count)
    {
        if (isWhole)
            return false;
        known = std::max(known, text);
        const void* const zero = std::memchr(known, '\0', Step); // reads no further than to the zero
        isWhole = zero != nullptr;
        known = isWhole ? static_cast<const char*>(zero) : known + Step;
        return known - text >= static_cast<std::ptrdiff_t>(count);
    }

    const char* known; // no zero before it
    bool isWhole = false;
};

} // namespace Vellum
