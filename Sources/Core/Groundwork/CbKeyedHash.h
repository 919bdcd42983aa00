#pragma once

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// CbKeyedHash: a hash that keys can't be chosen against, since it hangs on a secret: SipHash of Aumasson and
/// Bernstein, with one round for each eight bytes and three at the end. Nothing that is stored or handed out may depend
/// on it.
///
/// - **Threads** Objects are never changed; any number of threads may use one.
class CbKeyedHash
{
public:
    /// Draws a secret from the clock and from where things lie in memory.
    CbKeyedHash() noexcept
        : CbKeyedHash(static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()),
                      reinterpret_cast<std::uintptr_t>(this))
    {
    }

    /// A secret of the caller's choice.
    CbKeyedHash(std::uint64_t one, std::uint64_t other) noexcept : first(one), second(other) {}

    /// The hash of that many bytes.
    std::uint64_t operator()(const void* data, std::size_t size) const noexcept
    {
        SState state{first ^ 0x736F6D6570736575u, second ^ 0x646F72616E646F6Du, first ^ 0x6C7967656E657261u,
                     second ^ 0x7465646279746573u};
        const unsigned char* next = static_cast<const unsigned char*>(data);
        for (std::size_t left = size; left >= 8; left -= 8, next += 8)
            state.Take(load(next, 8));
        state.Take(std::uint64_t{size} << 56 | load(next, size % 8));
        state.c ^= 0xFF;
        for (int i = 0; i < 3; ++i)
            state.Mix();
        return state.a ^ state.b ^ state.c ^ state.d;
    }

private:
    struct SState
    {
        std::uint64_t a, b, c, d;

        void Take(std::uint64_t word) noexcept
        {
            d ^= word;
            Mix();
            a ^= word;
        }
        void Mix() noexcept
        {
            a += b;
            b = std::rotl(b, 13) ^ a;
            a = std::rotl(a, 32);
            c += d;
            d = std::rotl(d, 16) ^ c;
            a += d;
            d = std::rotl(d, 21) ^ a;
            c += b;
            b = std::rotl(b, 17) ^ c;
            c = std::rotl(c, 32);
        }
    };

    static std::uint64_t load(const unsigned char* bytes, std::size_t count) noexcept
    {
        std::uint64_t word = 0;
        if constexpr (std::endian::native == std::endian::little)
            std::memcpy(&word, bytes, count);
        else
            for (std::size_t at = count; at-- != 0;)
                word = word << 8 | bytes[at];
        return word;
    }

    std::uint64_t first;
    std::uint64_t second;
};
