#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "../Platform/Compiler.h"

/// CbArray: growable array with 32-bit sizes, in one zero-filled block of memory.
///
/// - **Growth** Add and Append double the capacity, from 0 to 1, 2, 4, 8 ..., or add `growBy` elements to it when that
///   isn't 0. SetSize and Reserve give exactly what they are asked for. The capacity never shrinks.
/// - **Memory** The array owns its elements and frees them front to back. Pointers into it are good until it grows.
///   What lies between size and capacity is never constructed: zero bytes in a new block, and what the last element
///   there left behind after SetSize has made the array smaller.
/// - **Errors** std::bad_array_new_length for a size or capacity beyond 32 bits, otherwise std::bad_alloc; elements may
///   raise their own. An operation that raises leaves the array as it was, unless moving an element raised.
/// - **Threads** An array belongs to one thread at a time.
///
/// Arguments may refer to elements of the array itself.
template <class T>
class CbArray
{
public:
    /// Empty; obtains no memory.
    CbArray() noexcept = default;

    /// `count` new elements, as SetSize makes them.
    explicit CbArray(std::uint64_t count) { SetSize(count); }

    /// The copy's capacity is the other array's size.
    CbArray(const CbArray& other) : CbArray() // made by then: what is obtained below is freed if an element raises
    {
        growBy = other.growBy;
        Reserve(other.size);
        Append(other.data, other.size);
    }

    /// The other array is empty afterwards and has no memory.
    CbArray(CbArray&& other) noexcept { swap(other); }

    /// Becomes a copy, made before the old elements go.
    CbArray& operator=(const CbArray& other)
    {
        CbArray(other).swap(*this);
        return *this;
    }

    /// The other array is empty afterwards and has no memory.
    CbArray& operator=(CbArray&& other) noexcept
    {
        CbArray(std::move(other)).swap(*this);
        return *this;
    }

    ~CbArray()
    {
        if (data == nullptr)
            return;
        std::destroy_n(data, std::exchange(size, 0));
        dataEnd = nullptr;
        capacity = 0;
        SRelease()(std::exchange(data, nullptr));
    }

    /// @name GetData
    /// The first element; null when the array has never held memory.
    /// @{
    T* GetData() noexcept { return data; }
    const T* GetData() const noexcept { return data; }
    /// @}

    /// @name GetEnd
    /// One past the last element; null when the array is empty.
    /// @{
    T* GetEnd() noexcept { return dataEnd; }
    const T* GetEnd() const noexcept { return dataEnd; }
    /// @}

    /// How many elements there are.
    std::uint32_t GetSize() const noexcept { return size; }

    /// How many elements the array can hold before it obtains memory.
    std::uint32_t GetCapacity() const noexcept { return capacity; }

    /// @name operator[]
    /// The element at an index below GetSize, which isn't tested.
    /// @{
    T& operator[](std::size_t index) noexcept { return data[index]; }
    const T& operator[](std::size_t index) const noexcept { return data[index]; }
    /// @}

    /// @name Add
    /// Appends one element and returns it where it lies now: good until the array grows.
    /// @{
    T& Add(const T& element) { return add(element); }
    T& Add(T&& element) { return add(std::move(element)); }
    /// @}

    /// Appends copies of `count` elements. The capacity becomes what it would be if they were added one by one. With a
    /// count of 0, `elements` may be null.
    void Append(const T* elements, std::uint64_t count)
    {
        if (count > capacity - size) [[unlikely]]
            appendGrowing(elements, count);
        else if (count != 0)
            copyElements(data + size, elements, static_cast<std::size_t>(count));
        setSize(size + static_cast<std::uint32_t>(count));
    }

    /// Elements beyond the new size are destroyed, front to back. New ones are empty texts, arrays and so on; numbers
    /// and other plain data are left as the memory holds them: 0 where the array has just grown.
    void SetSize(std::uint64_t newSize)
    {
        const auto construct = [&](T* to) { constructElements(to, static_cast<std::size_t>(newSize - size)); };
        if (newSize > capacity)
            grow(newSize, newSize - size, construct);
        else if (newSize > size)
            construct(data + size);
        else
            std::destroy(data + newSize, data + size);
        setSize(static_cast<std::uint32_t>(newSize));
    }

    /// Makes the capacity at least `newCapacity`, and exactly that if the array has to grow.
    void Reserve(std::uint64_t newCapacity)
    {
        if (newCapacity > capacity)
            grow(newCapacity, 0, [](T*) {});
    }

    /// Like Reserve, for somebody who is about to fill the memory: what is new isn't zeroed.
    void ReserveUnfilled(std::uint64_t newCapacity)
    {
        if (newCapacity > capacity)
            grow(
                newCapacity, 0, [](T*) {}, false);
    }

    /// The capacity that Add and Append give the array when it has to hold `neededSize` elements, fewer than 2^33. A
    /// result beyond 32 bits is what they refuse.
    std::uint64_t GetGrownCapacity(std::uint64_t neededSize) const noexcept
    {
        std::uint64_t grown = capacity;
        if (growBy != 0 && grown < neededSize)
            return grown + (neededSize - grown + growBy - 1) / growBy * growBy;
        while (grown < neededSize)
            grown = std::max<std::uint64_t>(grown * 2, 1);
        return grown;
    }

    /// How many elements Add and Append add to the capacity at a time; 0, as in a new array, doubles it.
    void SetGrowBy(std::uint32_t count) noexcept { growBy = count; }

    /// Exchanges the contents and what SetGrowBy has set. Elements stay where they are.
    void swap(CbArray& other) noexcept
    {
        std::swap(data, other.data);
        std::swap(dataEnd, other.dataEnd);
        std::swap(size, other.size);
        std::swap(capacity, other.capacity);
        std::swap(growBy, other.growBy);
    }

    /// @name begin, end
    /// For `for (T& element : array)` and standard algorithms.
    /// @{
    T* begin() noexcept { return data; }
    const T* begin() const noexcept { return data; }
    T* end() noexcept { return data + size; }
    const T* end() const noexcept { return data + size; }
    /// @}

private:
    // Frees memory; the elements in it are gone by then.
    struct SRelease
    {
        void operator()(void* memory) const noexcept
        {
            if constexpr (alignof(T) > __STDCPP_DEFAULT_NEW_ALIGNMENT__)
                ::operator delete(memory, std::align_val_t(alignof(T)));
            else
                ::operator delete(memory);
        }
    };
    using Memory = std::unique_ptr<void, SRelease>;

    // The sum as a size that an array may have.
    static std::uint64_t checked(std::uint64_t count, std::uint64_t added)
    {
        constexpr std::uint64_t most = std::min<std::uint64_t>(std::numeric_limits<std::uint32_t>::max(),
                                                               std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T));
        if (count > most || added > most - count)
            throw std::bad_array_new_length();
        return count + added;
    }

    // Memory for `count` elements, zero from the element `used` on unless it is to be filled anyway.
    static Memory obtain(std::uint64_t count, std::uint32_t used, bool isZeroed)
    {
        const std::size_t bytes = static_cast<std::size_t>(checked(count, 0)) * sizeof(T);
        const std::size_t usedBytes = std::size_t{used} * sizeof(T);
        Memory memory;
        if constexpr (alignof(T) > __STDCPP_DEFAULT_NEW_ALIGNMENT__)
            memory.reset(::operator new(bytes, std::align_val_t(alignof(T))));
        else
            memory.reset(::operator new(bytes));
        if (isZeroed)
            std::memset(static_cast<char*>(memory.get()) + usedBytes, 0, bytes - usedBytes);
        return memory;
    }

    static void copyElements(T* to, const T* from, std::size_t count)
    {
        if constexpr (std::is_trivially_copyable_v<T>)
            std::memcpy(static_cast<void*>(to), from, count * sizeof(T));
        else
            std::uninitialized_copy_n(from, count, to);
    }

    static void constructElements([[maybe_unused]] T* to, [[maybe_unused]] std::size_t count)
    {
        if constexpr (!std::is_trivially_default_constructible_v<T>)
            std::uninitialized_value_construct_n(to, count);
    }

    // Moves the elements to their place in a new block. They stay where they are if one raises and can be copied.
    void moveElements(T* to)
    {
        if constexpr (std::is_trivially_copyable_v<T>)
        {
            if (size != 0)
                std::memcpy(static_cast<void*>(to), data, std::size_t{size} * sizeof(T));
        }
        else if constexpr (std::is_nothrow_move_constructible_v<T> || !std::is_copy_constructible_v<T>)
            std::uninitialized_move_n(data, size, to);
        else
            std::uninitialized_copy_n(data, size, to);
    }

    // Moves the array into a block of `newCapacity` elements, in which `construct` has made `added` new ones behind the
    // old. The new ones come first, since they may be copies of old ones. The size is left to the caller.
    template <class Construct>
    void grow(std::uint64_t newCapacity, std::uint64_t added, const Construct& construct, bool isZeroed = true)
    {
        Memory memory = obtain(newCapacity, size, isZeroed);
        T* const elements = static_cast<T*>(memory.get());
        construct(elements + size);
        try
        {
            moveElements(elements);
        }
        catch (...)
        {
            std::destroy_n(elements + size, added);
            throw;
        }
        std::destroy_n(data, size);
        SRelease()(std::exchange(data, static_cast<T*>(memory.release())));
        capacity = static_cast<std::uint32_t>(newCapacity);
        setSize(size);
    }

    template <class Element>
    T& add(Element&& element)
    {
        if (size == capacity) [[unlikely]]
            addGrowing(std::forward<Element>(element));
        else
            ::new (static_cast<void*>(data + size)) T(std::forward<Element>(element));
        setSize(size + 1);
        return data[size - 1];
    }

    // The rare halves of add and Append, kept out of the code of their callers. The size is left to these.
    template <class Element>
    VELLUM_NOINLINE void addGrowing(Element&& element)
    {
        grow(GetGrownCapacity(std::uint64_t{size} + 1), 1,
             [&](T* to) { ::new (static_cast<void*>(to)) T(std::forward<Element>(element)); });
    }
    VELLUM_NOINLINE void appendGrowing(const T* elements, std::uint64_t count)
    {
        grow(GetGrownCapacity(checked(size, count)), count,
             [&](T* to) { copyElements(to, elements, static_cast<std::size_t>(count)); });
    }

    void setSize(std::uint32_t newSize) noexcept
    {
        size = newSize;
        dataEnd = newSize == 0 ? nullptr : data + newSize;
    }

    T* data = nullptr;
    T* dataEnd = nullptr; // null while the array is empty
    std::uint32_t size = 0;
    std::uint32_t capacity = 0;
    std::uint32_t growBy = 0; // 0: double
};
