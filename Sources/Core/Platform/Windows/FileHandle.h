#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace Vellum::Platform
{

// What all that works with the system's handles of files has in common. A handle is kept as a number, so that headers
// need none of the system's; -1 is the one that stands for no file.

// Closes a handle at the end of a block, unless it is none.
struct SFileHandle
{
    explicit SFileHandle(void* file) noexcept;
    ~SFileHandle();
    SFileHandle(const SFileHandle&) = delete;
    SFileHandle& operator=(const SFileHandle&) = delete;

    bool IsOpen() const noexcept;

    void* file;
};

inline std::intptr_t ToNumber(void* file) noexcept { return reinterpret_cast<std::intptr_t>(file); }
inline void* ToHandle(std::intptr_t number) noexcept { return reinterpret_cast<void*>(number); }

// Fills `count` bytes and returns how many there were: fewer only at the end. Nothing if the system fails to read.
std::optional<std::size_t> ReadFromHandle(void* file, void* data, std::size_t count) noexcept;

// Writes all of the `count` bytes. False if that fails; any part of them may then have been written.
bool WriteToHandle(void* file, const void* data, std::size_t count) noexcept;

} // namespace Vellum::Platform
