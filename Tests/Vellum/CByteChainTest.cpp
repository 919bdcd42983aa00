#include "Vellum/src/CByteChain.h"

#include "Groundwork/CbStreamWriteBinaryBuffer.h"

#include "Support/Clients.h"
#include "Support/Testing.h"

namespace
{

using Vellum::CByteChain;

std::string ContentOf(CByteChain& chain)
{
    CClientWriter stream;
    chain.PassOn(stream);
    return stream.bytes;
}

// Chains and texts that undergo the same.
class CPlay
{
public:
    void Go(int level)
    {
        CByteChain chain;
        std::string expected;
        fill(chain, expected, level);
        EXPECT_EQ(ContentOf(chain), expected);
        EXPECT_EQ(chain.GetSize(), 0u);
        fill(chain, expected = "", level); // goes on after it has been emptied
        chain.Clear();
        fill(chain, expected = "", level);
        EXPECT_EQ(ContentOf(chain), expected);
    }

private:
    std::size_t pick(std::size_t below) { return random() % below; }

    void fill(CByteChain& chain, std::string& expected, int level)
    {
        static constexpr std::size_t Sizes[] = {0, 1, 5, 60, 70, 500, 3000, 70000};
        for (std::size_t left = pick(12); left != 0; --left)
        {
            const std::size_t action = pick(level == 0 ? 6 : 10);
            if (action < 5)
            {
                const std::string piece(Sizes[pick(std::size(Sizes))], static_cast<char>('a' + pick(26)));
                chain.Write(piece.data(), piece.size());
                expected += piece;
            }
            else if (action == 5)
            {
                expected.resize(pick(expected.size() + 1));
                chain.Truncate(static_cast<std::uint32_t>(expected.size()));
            }
            else
            {
                CByteChain inner;
                std::string content;
                fill(inner, content, level - 1);
                chain.Take(inner);
                inner.Clear();
                EXPECT_EQ(inner.GetSize(), 0u);
                expected += content;
            }
            ASSERT_EQ(chain.GetSize(), expected.size());
        }
    }

    std::mt19937 random{7};
};

TEST(CByteChain, HoldsWhatWasWrittenTakenAndNotTakenBack)
{
    CPlay play;
    for (int i = 0; i < 400; ++i)
        play.Go(i % 6);
    CByteChain chain;
    chain.Write(std::uint16_t{0x6261}).Write(std::string("c")).Write(true);
    EXPECT_EQ(Hex(ContentOf(chain)), Hex(Bytes("61 62 01 00 00 00 63 01")));
}

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

// A failure leaves the bytes that were there, and what came of the new ones can be taken back.
TEST(CByteChain, SurvivesEveryFailedAllocation)
{
    const std::string text(3000, 't');
    std::string expected;
    expected.reserve(0x2000);
    const auto body = [&]
    {
        CByteChain chain;
        expected.clear();
        for (const std::size_t size : {10u, 100u, 1000u, 3000u, 10u})
        {
            CByteChain inner;
            const bool isWritten = GetsThrough(
                [&]
                {
                    inner.Write(text.data(), size);
                    chain.Write(true).Take(inner);
                });
            if (isWritten)
                expected.append(1, '\1').append(text, 0, size);
            chain.Truncate(static_cast<std::uint32_t>(expected.size()));
        }
        std::string content;
        const bool isOut = GetsThrough([&] { content = ContentOf(chain); });
        EXPECT_EQ(isOut ? content : expected, expected);
    };
    EXPECT_GT(FailEachAllocation(body), 5u);
}

} // namespace
