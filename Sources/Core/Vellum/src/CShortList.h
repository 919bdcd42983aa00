#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>

#include "Platform/Compiler.h"

namespace Vellum
{

// CShortList: a list of plain data that lies in the object itself as long as it has no more than `Few` elements.
//
// Memory   Doubles. What was obtained is kept for the next elements.
// Errors   std::bad_alloc; the list is as it was.
template <class T, std::size_t Few>
class CShortList
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    CShortList() = default;
    CShortList(const CShortList&) = delete;
    CShortList& operator=(const CShortList&) = delete;

    std::size_t GetSize() const { return size; }
    T& operator[](std::size_t index) { return elements[index]; }
    T* begin() { return elements; }
    T* end() { return elements + size; }

    // Afterwards as many elements can be added without a failure.
    void Reserve(std::size_t count)
    {
        if (count > capacity - size) [[unlikely]]
            grow(count);
    }
    void Add(const T& element)
    {
        Reserve(1);
        elements[size++] = element;
    }
    void RemoveLast() { --size; }
    void Clear() { size = 0; }

private:
    VELLUM_NOINLINE void grow(std::size_t count)
    {
        const std::size_t larger = std::max(2 * capacity, size + count);
        std::unique_ptr<T[]> memory(new T[larger]);
        std::copy(begin(), end(), memory.get());
        many = std::move(memory);
        elements = many.get();
        capacity = larger;
    }

    std::array<T, Few> few; // before what points to it
    T* elements = few.data();
    std::size_t size = 0;
    std::size_t capacity = Few;
    std::unique_ptr<T[]> many;
};

} // namespace Vellum
