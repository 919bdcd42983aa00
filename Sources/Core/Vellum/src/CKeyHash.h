#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Groundwork/CbKeyedHash.h"

namespace Vellum
{

// CKeyHash: a hash of keys that can't be chosen against, since it hangs on a secret that is drawn anew for each object.
// Nothing that is stored or handed out may depend on it.
//
// Up to sixteen bytes, as nearly all keys have, it is the sum of their four halves of words, each times a secret
// number: whatever two keys, one in 2^32 secrets gives them the same upper half (Carter and Wegman 1979; Lemire and
// Kaser, "Strongly universal string hashing is fast", 2014). Longer ones are hashed by CbKeyedHash.
class CKeyHash
{
public:
    CKeyHash()
    {
        for (std::uint32_t index = 0; index < secrets.size(); ++index)
            secrets[index] = longHash(&index, sizeof index);
    }

    // The upper half of the number is what counts, its highest bits first.
    std::uint64_t operator()(std::string_view key) const
    {
        const std::size_t size = key.size();
        const char* const end = key.data() + size;
        if (size > 16)
            return longHash(key.data(), size);
        if (size >= 8)
            return mix(size, load<std::uint64_t>(key.data()), load<std::uint64_t>(end - 8)); // they may overlap
        if (size >= 4)
            return mix(size, load<std::uint32_t>(key.data()), load<std::uint32_t>(end - 4));
        if (size >= 2)
            return mix(size, load<std::uint16_t>(key.data()), load<std::uint16_t>(end - 2));
        return mix(size, size == 0 ? 0 : static_cast<unsigned char>(key.front()), 0);
    }

private:
    template <class Word>
    static std::uint64_t load(const char* bytes)
    {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    std::uint64_t mix(std::size_t size, std::uint64_t front, std::uint64_t back) const
    {
        constexpr std::uint64_t Half = 0xFFFFFFFF;
        return secrets[0] * size + secrets[1] * (front & Half) + secrets[2] * (front >> 32) +
               secrets[3] * (back & Half) + secrets[4] * (back >> 32);
    }

    CbKeyedHash longHash;
    std::array<std::uint64_t, 5> secrets;
};

} // namespace Vellum
