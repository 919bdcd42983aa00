#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

#include "Platform/Compiler.h"

#include "Groundwork/BinaryEncoding.h"

namespace Vellum
{

// CByteChain: bytes that are appended and go out once. They lie in pieces of memory, and the pieces of another chain
// can be taken over as they are: what is nested deeply isn't copied at every level.
//
// Memory   A piece is as large as all before it together, from 64 bytes to 64 KiB, and larger for what is written at
//          once. At least half of each piece but the last is in use.
// Errors   std::bad_array_new_length beyond 2^32 - 1 bytes, otherwise std::bad_alloc. Part of what was to be appended
//          may be there then; Truncate takes it back.
class CByteChain
{
public:
    static constexpr std::uint32_t MaxSize = std::numeric_limits<std::uint32_t>::max();

    // Empty, without memory. The first piece will have `firstCapacity` bytes at least.
    explicit CByteChain(std::uint32_t firstCapacity = 0) : nextCapacity(firstCapacity) {}
    ~CByteChain() { freePieces(std::exchange(head, nullptr)); }
    CByteChain(const CByteChain&) = delete;
    CByteChain& operator=(const CByteChain&) = delete;

    std::uint32_t GetSize() const { return sizeBefore + used(); }

    // Appends `count` bytes. `data` may be null if there are none.
    CByteChain& Write(const void* data, std::size_t count)
    {
        if (count > static_cast<std::size_t>(end - next)) [[unlikely]]
            writeGrowing(static_cast<const unsigned char*>(data), count);
        else if (count != 0)
        {
            std::memcpy(next, data, count);
            next += count;
        }
        return *this;
    }

    // Appends the bytes if they need no more memory than there is.
    template <std::size_t Count>
    bool WriteIntoRoom(const std::array<unsigned char, Count>& data)
    {
        if (Count > static_cast<std::size_t>(end - next)) [[unlikely]]
            return false;
        std::memcpy(next, data.data(), Count);
        next += Count;
        return true;
    }

    // Appends a number or a text as it is stored.
    template <class T>
    CByteChain& Write(const T& value)
    {
        if constexpr (std::is_arithmetic_v<T>)
            return BinaryEncoding::WriteNumber(*this, value);
        else
            return BinaryEncoding::WriteText(*this, value.c_str());
    }

    // Appends all bytes of another chain, which is empty or good for Clear alone afterwards. A few are copied, and as
    // many as there is room for.
    void Take(CByteChain& other)
    {
        const std::uint32_t size = other.GetSize();
        if (size <= MaxCopied || size <= static_cast<std::size_t>(end - next))
        {
            other.settle();
            for (const SPiece* piece = other.head; piece != nullptr; piece = piece->next)
                Write(piece->GetBytes(), piece->used);
            return;
        }
        if (size > MaxSize - GetSize())
            throw std::bad_array_new_length();
        fitTail();
        other.settle();
        const std::uint32_t before = GetSize() + other.sizeBefore;
        SPiece** const link = endLink();
        *link = std::exchange(other.head, nullptr);
        setTail(*other.tailLink == nullptr ? link : other.tailLink, before);
        other.setTail(&other.head, 0);
    }

    // Hands all bytes to the stream, first to last. Memory goes back as soon as its bytes are out. A chain that isn't
    // larger than a piece goes out at once.
    template <class Stream>
    void PassOn(Stream& stream)
    {
        settle();
        nextCapacity = std::min(GetSize(), MaxCapacity);
        if (sizeBefore != 0 && GetSize() <= MaxCapacity)
            unite();
        while (head != nullptr)
        {
            stream.Write(head->GetBytes(), std::size_t{head->used});
            SPiece* const done = std::exchange(head, head->next);
            done->next = nullptr;
            freePieces(done);
        }
        setTail(&head, 0);
    }

    // Takes back what was appended after the first `size` bytes. There must be as many.
    void Truncate(std::uint32_t size) noexcept
    {
        settle();
        if (head == nullptr)
            return;
        std::uint32_t before = 0;
        SPiece** link = &head;
        for (; size - before > (*link)->used; link = &(*link)->next)
            before += (*link)->used;
        (*link)->used = size - before;
        freePieces(std::exchange((*link)->next, nullptr));
        setTail(link, before);
    }

    // Empties the chain. A little memory is kept for what comes next.
    void Clear() noexcept
    {
        nextCapacity = std::min(GetSize(), MaxCopied);
        if (tailLink == &head && head != nullptr && head->capacity <= MaxCopied)
            return Truncate(0);
        freePieces(std::exchange(head, nullptr));
        setTail(&head, 0);
    }

private:
    struct SPiece
    {
        SPiece* next;
        std::uint32_t used; // bytes; not kept up to date for the last piece
        std::uint32_t capacity;

        unsigned char* GetBytes() { return reinterpret_cast<unsigned char*>(this + 1); }
        const unsigned char* GetBytes() const { return reinterpret_cast<const unsigned char*>(this + 1); }
    };

    static constexpr std::uint32_t MinCapacity = 0x40;
    static constexpr std::uint32_t MaxCapacity = 0x10000;
    static constexpr std::uint32_t MaxCopied = 0x400;

    static SPiece* makePiece(std::uint32_t capacity)
    {
        return new (::operator new(sizeof(SPiece) + capacity)) SPiece{nullptr, 0, capacity};
    }
    static void freePieces(SPiece* piece) noexcept
    {
        while (piece != nullptr)
            ::operator delete(std::exchange(piece, piece->next));
    }

    SPiece* tail() const { return *tailLink; }
    std::uint32_t used() const { return tail() == nullptr ? 0 : static_cast<std::uint32_t>(next - tail()->GetBytes()); }

    // Where the next piece is to be hung up.
    SPiece** endLink() { return tail() == nullptr ? &head : &tail()->next; }

    void settle()
    {
        if (tail() != nullptr)
            tail()->used = used();
    }

    void setTail(SPiece** link, std::uint32_t before)
    {
        SPiece* const piece = *link;
        tailLink = link;
        sizeBefore = before;
        next = piece == nullptr ? nullptr : piece->GetBytes() + piece->used;
        end = piece == nullptr ? nullptr : piece->GetBytes() + piece->capacity;
    }

    // The rare case, kept out of the callers' code: fills the last piece and makes another.
    VELLUM_NOINLINE void writeGrowing(const unsigned char* data, std::size_t count)
    {
        const std::uint32_t size = GetSize();
        if (count > MaxSize - size)
            throw std::bad_array_new_length();
        const std::size_t room = static_cast<std::size_t>(end - next);
        const auto left = static_cast<std::uint32_t>(count - room);
        const std::uint32_t usual = std::clamp(std::max(size, nextCapacity), MinCapacity, MaxCapacity);
        SPiece* const piece = makePiece(std::min(std::max(usual, left), MaxSize - size));
        if (room != 0)
            std::memcpy(next, data, room);
        std::memcpy(piece->GetBytes(), data + room, left);
        piece->used = left;
        next = end;
        settle();
        SPiece** const link = endLink();
        *link = piece;
        setTail(link, size + static_cast<std::uint32_t>(room));
    }

    // Makes one piece of all.
    void unite()
    {
        SPiece* const whole = makePiece(GetSize());
        for (const SPiece* piece = head; piece != nullptr; piece = piece->next)
        {
            std::memcpy(whole->GetBytes() + whole->used, piece->GetBytes(), piece->used);
            whole->used += piece->used;
        }
        freePieces(std::exchange(head, whole));
        setTail(&head, 0);
    }

    // Before a piece becomes one of many it gets a size that fits, unless half of it is in use.
    void fitTail()
    {
        settle();
        if (tail() == nullptr || used() >= tail()->capacity / 2)
            return;
        SPiece* const fitting = makePiece(used());
        std::memcpy(fitting->GetBytes(), tail()->GetBytes(), used());
        fitting->used = used();
        ::operator delete(std::exchange(*tailLink, fitting));
        setTail(tailLink, sizeBefore);
    }

    SPiece* head = nullptr;
    SPiece** tailLink = &head;     // what points to the last piece
    unsigned char* next = nullptr; // where the last piece has room
    unsigned char* end = nullptr;
    std::uint32_t sizeBefore = 0;   // bytes in all pieces but the last
    std::uint32_t nextCapacity = 0; // what is expected of a chain that has been used before
};

} // namespace Vellum
