#pragma once

#include <algorithm>
#include <cstddef>
#include <streambuf>

namespace Vellum
{

// CPutArea: the part of a stream's buffer in memory that is free, into which the buffer's own operations would copy
// what is written. Those to get at it are protected, which is how the standard names them for other buffers; a derived
// class may point at them.
class CPutArea : private std::streambuf
{
public:
    // At most what Advance can take.
    static std::size_t GetSize(const std::streambuf& buffer)
    {
        constexpr std::ptrdiff_t Most = 1 << 30;
        return static_cast<std::size_t>(std::min(Most, (buffer.*&CPutArea::epptr)() - GetBegin(buffer)));
    }
    // Whether nothing lies behind the place where the next byte goes, as does after a step back.
    static bool IsAtEnd(const std::streambuf& buffer)
    {
        const char* const readable = (buffer.*&CPutArea::egptr)();
        return readable == nullptr || readable <= GetBegin(buffer);
    }

    static char* GetBegin(const std::streambuf& buffer) { return (buffer.*&CPutArea::pptr)(); }

    // What was copied to the begin of the area is a part of what was written.
    static void Advance(std::streambuf& buffer, std::size_t size)
    {
        (buffer.*&CPutArea::pbump)(static_cast<int>(size));
    }
};

} // namespace Vellum
