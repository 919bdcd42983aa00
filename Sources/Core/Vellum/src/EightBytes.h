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

// Marks what IsWhiteSpace answers for.
constexpr std::uint64_t MarkWhiteSpace(std::uint64_t bytes)
{
    return (MarkBytesUpTo(bytes, '\r') & ~MarkBytesUpTo(bytes, '\t' - 1)) | MarkBytes(bytes, ' ');
}

// The place of the first marked byte, of which there is at least one.
constexpr std::size_t FirstMarked(std::uint64_t marks)
{
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(marks) : std::countl_zero(marks);
    return static_cast<std::size_t>(bits) / 8;
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
