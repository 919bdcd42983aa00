#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Fuzzing
{

// CByteSource: turns the bytes of a fuzz input into decisions and numbers. When they have run out it gives zeros, so
// whoever builds something from it stops when IsEmpty says so.
class CByteSource
{
public:
    CByteSource(const std::uint8_t* data, std::size_t size) : next(data), left(size) {}

    bool IsEmpty() const { return left == 0; }

    std::uint8_t Byte()
    {
        if (left == 0)
            return 0;
        --left;
        return *next++;
    }

    // A number below the bound, which is 1 to 256.
    std::uint32_t Below(std::uint32_t bound) { return Byte() % bound; }

    // A number of any bit pattern, from as many bytes as it has.
    template <class Number>
    Number Any()
    {
        std::uint8_t bytes[sizeof(Number)];
        for (std::uint8_t& byte : bytes)
            byte = Byte();
        Number value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

private:
    const std::uint8_t* next; // owned by the fuzzer
    std::size_t left;
};

} // namespace Fuzzing
