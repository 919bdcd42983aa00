#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace Vellum
{

// How a pool finds its writers, each of which has this as a base class.
template <class Writer>
struct SPooled
{
    Writer* nextSpare = nullptr;
    Writer* nextMade = nullptr;
};

// CWriterPool: the writers of one document's nested objects, or of its nested sequences. All live as long as the pool;
// one that is given back is cleared and serves again.
//
// Memory   Blocks that double, up to one of 64 writers.
// Errors   std::bad_alloc, from Take.
template <class Writer>
class CWriterPool
{
public:
    CWriterPool() = default;
    ~CWriterPool()
    {
        while (made != nullptr)
            std::exchange(made, made->nextMade)->~Writer();
    }
    CWriterPool(const CWriterPool&) = delete;
    CWriterPool& operator=(const CWriterPool&) = delete;

    // A writer as it is made of the arguments, which are the same for all.
    template <class... Arguments>
    Writer* Take(Arguments&... arguments)
    {
        if (spare != nullptr)
            return std::exchange(spare, spare->nextSpare);
        if (left == 0)
            addBlock();
        auto* const writer = new (free) Writer(arguments...);
        --left;
        ++free;
        writer->nextMade = std::exchange(made, writer);
        return writer;
    }

    // Null is ignored.
    void GiveBack(Writer* writer) noexcept
    {
        if (writer == nullptr)
            return;
        writer->Clear();
        writer->nextSpare = std::exchange(spare, writer);
    }

private:
    struct SRoom
    {
        alignas(Writer) std::byte bytes[sizeof(Writer)];
    };

    void addBlock()
    {
        const std::size_t size = std::size_t{1} << std::min<std::size_t>(blocks.size(), 6);
        blocks.push_back(std::unique_ptr<SRoom[]>(new SRoom[size]));
        free = blocks.back().get();
        left = size;
    }

    std::vector<std::unique_ptr<SRoom[]>> blocks;
    SRoom* free = nullptr; // what the newest block has left
    std::size_t left = 0;
    Writer* spare = nullptr;
    Writer* made = nullptr;
};

} // namespace Vellum
