#pragma once

#include <algorithm>
#include <cstddef>
#include <ios>
#include <streambuf>

#include "Platform/Compiler.h"

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
    // Whether nothing lies behind the place where the next byte goes, as does after a step back. Some libraries let
    // what there is be read to its end.
    static bool IsAtEnd(std::streambuf& buffer)
    {
        if (const char* const readable = (buffer.*&CPutArea::egptr)()) [[likely]]
            return readable <= GetBegin(buffer);
        return endsHere(buffer);
    }

    static char* GetBegin(const std::streambuf& buffer) { return (buffer.*&CPutArea::pptr)(); }

    // What was copied to the begin of the area is a part of what was written.
    static void Advance(std::streambuf& buffer, std::size_t size)
    {
        (buffer.*&CPutArea::pbump)(static_cast<int>(size));
    }

private:
    // Others keep their end to themselves, and tell it when they are sent there. Kept out of the callers' code.
    VELLUM_NOINLINE static bool endsHere(std::streambuf& buffer)
    {
        const std::streampos place = buffer.pubseekoff(0, std::ios_base::cur, std::ios_base::out);
        const std::streampos end = buffer.pubseekoff(0, std::ios_base::end, std::ios_base::out);
        return buffer.pubseekpos(place, std::ios_base::out) == end;
    }
};

} // namespace Vellum
