#include "Vellum/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include "Vellum/CException.h"

#include "Vellum/src/Base64Text.h"

namespace Vellum::Base64
{
namespace
{

constexpr std::string_view Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char Fill = '=';
constexpr std::size_t GroupsPerLine = 18;

// The two characters of each twelve bits.
constexpr auto CharacterPairs = []
{
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {Alphabet[bits >> 6], Alphabet[bits & 63]};
    return pairs;
}();

// What a byte is to the decoder: below 64 the six bits of a data character, otherwise one of the classes, which share
// the bit 64.
enum EClass : std::uint8_t
{
    ClassNoData = 64,
    ClassFill = 96,
    ClassSkip = 97,
    ClassIllegal = 98,
    ClassEnd = 99
};

constexpr auto Classes = []
{
    std::array<std::uint8_t, 256> classes{};
    classes.fill(ClassIllegal);
    for (std::size_t bits = 0; bits < Alphabet.size(); ++bits)
        classes[static_cast<unsigned char>(Alphabet[bits])] = static_cast<std::uint8_t>(bits);
    for (const char skip : {'\t', '\n', '\r', ' '})
        classes[static_cast<unsigned char>(skip)] = ClassSkip;
    classes[static_cast<unsigned char>(Fill)] = ClassFill;
    classes[0] = ClassEnd;
    return classes;
}();

std::uint32_t ClassOf(char byte) { return Classes[static_cast<unsigned char>(byte)]; }

// Three bytes to four characters.
void EncodeGroup(const unsigned char* from, char* to)
{
    const std::uint32_t bits = (std::uint32_t{from[0]} << 16) | (std::uint32_t{from[1]} << 8) | from[2];
    std::memcpy(to, CharacterPairs[bits >> 12].data(), 2);
    std::memcpy(to + 2, CharacterPairs[bits & 0xFFF].data(), 2);
}

// The last one or two bytes.
void EncodeRest(const unsigned char* from, std::size_t size, char* to)
{
    const unsigned char group[3] = {from[0], size == 2 ? from[1] : static_cast<unsigned char>(0), 0};
    EncodeGroup(group, to);
    std::memset(to + 1 + size, Fill, 3 - size);
}

std::size_t GetEncodedSize(std::size_t size, bool lineBreaks)
{
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw CException(__FILE__, __LINE__, "Vellum::Base64::Encode");
    return (size + 2) / 3 * 4 + (lineBreaks ? size / 3 / GroupsPerLine : 0);
}

// Writes as many characters as GetEncodedSize tells.
void EncodeTo(char* to, const void* data, std::size_t size, bool lineBreaks)
{
    const auto* from = static_cast<const unsigned char*>(data);
    const std::size_t groups = size / 3;
    for (std::size_t done = 0; done < groups;)
    {
        const std::size_t line = std::min(lineBreaks ? GroupsPerLine : groups, groups - done);
        for (std::size_t group = 0; group < line; ++group, from += 3, to += 4)
            EncodeGroup(from, to);
        done += line;
        if (lineBreaks && line == GroupsPerLine)
            *to++ = '\n';
    }
    if (size % 3 != 0)
        EncodeRest(from, size % 3, to);
}

bool IsData(char byte) { return ClassOf(byte) < ClassNoData; }
bool IsPassed(char byte) { return ClassOf(byte) <= ClassSkip; } // doesn't end the text

// A run of decoding: four data characters at a time, which may have skipped bytes between them.
class CDecoder
{
public:
    CDecoder(std::string_view text, unsigned char* out, std::size_t size)
        : from(text.data()), end(from + text.size()), to(out), toEnd(out + size)
    {
    }

    void Run()
    {
        do
            decodeWholeGroups();
        while (decodeGatheredGroup());
        std::fill(to, toEnd, static_cast<unsigned char>(0));
    }

private:
    // Groups without anything between their characters.
    void decodeWholeGroups()
    {
        for (; end - from >= 4 && toEnd - to >= 3; from += 4, to += 3)
        {
            const std::uint32_t a = ClassOf(from[0]), b = ClassOf(from[1]), c = ClassOf(from[2]), d = ClassOf(from[3]);
            if (((a | b | c | d) & ClassNoData) != 0)
                return;
            store((a << 18) | (b << 12) | (c << 6) | d, 3);
        }
    }

    // One group, character by character. False when decoding ends with it.
    bool decodeGatheredGroup()
    {
        std::uint32_t bits = 0;
        std::uint32_t count = 0;
        for (; count < 4 && from != end; ++from)
        {
            const std::uint32_t value = ClassOf(*from);
            if (IsData(*from))
                bits |= value << (18 - 6 * count++);
            else if (value != ClassSkip)
                break;
        }
        const std::ptrdiff_t bytes = std::min<std::ptrdiff_t>(count == 0 ? 0 : count - 1, toEnd - to);
        store(bits, bytes);
        to += bytes;
        return count == 4 && to != toEnd;
    }

    void store(std::uint32_t bits, std::ptrdiff_t bytes)
    {
        for (std::ptrdiff_t i = 0; i < bytes; ++i)
            to[i] = static_cast<unsigned char>(bits >> (16 - 8 * i));
    }

    const char* from;
    const char* end;
    unsigned char* to;
    unsigned char* toEnd; // of what the size promises
};

std::string_view ToView(const char* text) { return text == nullptr ? std::string_view() : std::string_view(text); }

std::size_t GetDecodedSizeOf(std::string_view text)
{
    std::size_t count = 0; // of data and fill characters
    const char* at = text.data();
    for (const char* const end = at + text.size(); at != end && IsPassed(*at);)
    {
        count += ClassOf(*at++) != ClassSkip;
        for (;
             end - at >= 4 && ((ClassOf(at[0]) | ClassOf(at[1]) | ClassOf(at[2]) | ClassOf(at[3])) & ClassNoData) == 0;
             at += 4)
            count += 4;
    }
    std::size_t fills = 0;
    while (fills < count && *(at - 1 - fills) == Fill)
        ++fills;
    return static_cast<std::uint32_t>((count - fills) * 3 / 4);
}

std::size_t GetSizeToDecode(std::string_view text, std::size_t most)
{
    const std::size_t size = GetDecodedSizeOf(text);
    if (size == 0 || size > most)
        throw CException(__FILE__, __LINE__, "Vellum::Base64::Decode");
    return size;
}

} // namespace

CBase64Text::CBase64Text(const void* data, std::size_t size, bool lineBreaks)
{
    const std::size_t encodedSize = GetEncodedSize(size, lineBreaks);
    if (encodedSize <= shortText.size())
    {
        EncodeTo(shortText.data(), data, size, lineBreaks);
        text = {shortText.data(), encodedSize};
    }
    else
        text = longText = Encode(data, size, lineBreaks);
}

CbArray<unsigned char> DecodeText(std::string_view text)
{
    CbArray<unsigned char> bytes(GetSizeToDecode(text, std::numeric_limits<std::size_t>::max()));
    CDecoder(text, bytes.GetData(), bytes.GetSize()).Run();
    return bytes;
}

std::string Encode(const void* data, std::size_t size, bool lineBreaks)
{
    const std::size_t encodedSize = GetEncodedSize(size, lineBreaks);
    std::string text;
    try
    {
        text.resize(encodedSize);
    }
    catch (const std::exception&) // bad_alloc or length_error
    {
        throw CException(__FILE__, __LINE__, "Vellum::Base64::Encode");
    }
    EncodeTo(text.data(), data, size, lineBreaks);
    return text;
}

std::string Encode(const std::string& data, bool lineBreaks) { return Encode(data.data(), data.size(), lineBreaks); }

std::size_t GetDecodedSize(const char* text) { return GetDecodedSizeOf(ToView(text)); }

std::size_t Decode(const char* text, void* out, std::size_t outSize)
{
    const std::string_view view = ToView(text);
    const std::size_t size = GetSizeToDecode(view, outSize);
    CDecoder(view, static_cast<unsigned char*>(out), size).Run();
    return size;
}

} // namespace Vellum::Base64
