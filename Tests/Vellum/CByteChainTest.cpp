#include "Vellum/src/CByteChain.h"

#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Support/Clients.h"
#include "Support/Testing.h"

namespace
{

using Vellum::CByteChain;

// At every level a few bytes, then a chain that is too large to be copied.
TEST(CByteChain, WastesNoMemoryOnWhatIsTakenOver)
{
    const std::string payload(0x8000, 'p');
    const CAllocationCounter counter;
    std::uint64_t size = 0;
    {
        std::vector<std::unique_ptr<CByteChain>> chains;
        chains.push_back(std::make_unique<CByteChain>());
        chains.back()->Write(payload.data(), payload.size());
        for (int level = 0; level < 100; ++level)
        {
            auto outer = std::make_unique<CByteChain>();
            outer->Write(payload.data(), payload.size()).Write(true);
            outer->Take(*chains.back());
            chains.push_back(std::move(outer));
        }
        size = chains.back()->GetSize();
        EXPECT_LT(counter.GetBytes(), 2 * size + (size >> 1));
        EXPECT_LT(counter.GetPeak(), 2 * size);
    }
    EXPECT_GT(size, 100 * payload.size());
}

TEST(CByteChain, GivesMemoryBackAsItGoesOutAndKeepsALittleForWhatComesNext)
{
    const std::string piece(0x10000, 'p');
    CByteChain chain;
    for (int i = 0; i < 64; ++i)
        chain.Write(piece.data(), piece.size());
    CbStreamWriteBinaryBuffer stream;
    const CAllocationCounter counter;
    chain.PassOn(stream);
    EXPECT_LT(counter.GetPeak(), 5u << 20); // the stream's, less what was given back

    for (const std::size_t size : {std::size_t{1}, std::size_t{300}, std::size_t{1000}})
    {
        CByteChain again;
        for (int i = 0; i < 3; ++i)
        {
            const CAllocationCounter each;
            for (std::size_t at = 0; at < size; ++at)
                again.Write(piece.data(), 1);
            EXPECT_EQ(each.GetCount(), i < 2 ? each.GetCount() : 0) << size;
            again.Clear();
        }
    }
}

} // namespace
