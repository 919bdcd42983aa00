// Base64 against a decoder that does one byte after the other. The input is used twice: as bytes that must come back,
// and as text up to its first NUL.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Vellum/Base64.h"
#include "Vellum/CException.h"

#include "Support/Check.h"

namespace
{

using namespace Vellum;

bool IsSkipped(char byte) { return byte != '\0' && std::strchr("\t\n\r ", byte) != nullptr; }

int SixBits(char byte)
{
    if (byte >= 'A' && byte <= 'Z')
        return byte - 'A';
    if (byte >= 'a' && byte <= 'z')
        return byte - 'a' + 26;
    if (byte >= '0' && byte <= '9')
        return byte - '0' + 52;
    return byte == '+' ? 62 : byte == '/' ? 63 : -1;
}

std::size_t ModelSize(const std::string& text)
{
    std::size_t end = 0;
    std::size_t count = 0;
    for (; end < text.size() && (IsSkipped(text[end]) || text[end] == '=' || SixBits(text[end]) >= 0); ++end)
        count += IsSkipped(text[end]) ? 0 : 1;
    while (count != 0 && text[end - 1] == '=')
        --end, --count;
    return count * 3 / 4;
}

std::string ModelDecode(const std::string& text)
{
    std::string bytes;
    unsigned int bits = 0;
    int bitCount = 0;
    for (const char byte : text)
    {
        if (IsSkipped(byte))
            continue;
        if (SixBits(byte) < 0)
            break;
        bits = (bits << 6 | static_cast<unsigned int>(SixBits(byte))) & 0xFFFF;
        bitCount += 6;
        if (bitCount < 8)
            continue;
        bitCount -= 8;
        bytes += static_cast<char>(bits >> bitCount);
    }
    bytes.resize(ModelSize(text), '\0');
    return bytes;
}

void CheckDecoding(const std::string& text)
{
    const std::string expected = ModelDecode(text);
    std::vector<char> out(expected.size());
    FUZZ_CHECK(Base64::GetDecodedSize(text.c_str()) == expected.size());
    try
    {
        FUZZ_CHECK(Base64::Decode(text.c_str(), out.data(), out.size()) == expected.size());
        FUZZ_CHECK(std::string(out.begin(), out.end()) == expected);
    }
    catch (const CException& exception)
    {
        FUZZ_CHECK(expected.empty());
        FUZZ_CHECK(std::strcmp(exception.GetFunctionName(), "Vellum::Base64::Decode") == 0);
    }
}

void CheckRoundTrip(const std::string& data)
{
    const std::string plain = Base64::Encode(data, false);
    std::string joined;
    for (const char byte : Base64::Encode(data, true))
        if (byte != '\n')
            joined += byte;
    FUZZ_CHECK(joined == plain);
    FUZZ_CHECK(plain.size() == (data.size() + 2) / 3 * 4);
    FUZZ_CHECK(ModelDecode(plain) == data);
    CheckDecoding(Base64::Encode(data, true));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    CheckRoundTrip(input);
    CheckDecoding(input.c_str());
    return 0;
}
