#include "Vellum/src/CKeyHash.h"

#include <set>

#include "Support/Testing.h"

namespace
{

// Each byte of a key counts, and so does the secret.
TEST(CKeyHash, TellsKeysApartThatDifferInOneByte)
{
    const Vellum::CKeyHash hash, other;
    for (std::size_t size = 1; size <= 20; ++size)
    {
        const std::string key(size, 'k');
        std::set<std::uint64_t> hashes{hash(key) >> 32, other(key) >> 32, hash(key + 'k') >> 32};
        for (std::size_t at = 0; at < size; ++at)
            hashes.insert(hash(key.substr(0, at) + 'K' + key.substr(at + 1)) >> 32);
        EXPECT_EQ(hashes.size(), size + 3) << size;
    }
}

} // namespace
