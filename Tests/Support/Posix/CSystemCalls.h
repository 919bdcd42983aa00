#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <limits>

namespace Support
{

// CSystemCalls: for as long as it lives, what the library's objects call the system for on the calling thread meets the
// fates that it is told. Tests that are linked with VellumTestSupport have those calls wrapped by the linker. One at a
// time for each thread.
class CSystemCalls
{
public:
    enum ECall
    {
        Open,
        Settings, // fcntl
        Status,
        Lock,
        Truncate,
        Read,
        ReadAt,
        Write,
        Close, // is made in any case
        OpenLocale,
        OpenConverter,
        Count
    };

    // A call isn't made if it has an error, and it moves no more than `most` bytes.
    struct SFate
    {
        int error = 0;
        std::size_t most = std::numeric_limits<std::size_t>::max();
    };
    using Fates = std::deque<SFate>; // of the next calls; those that follow are made as they are

    CSystemCalls();
    ~CSystemCalls();
    CSystemCalls(const CSystemCalls&) = delete;
    CSystemCalls& operator=(const CSystemCalls&) = delete;

    std::array<Fates, Count> fates;
    std::array<int, Count> made = {}; // how many calls, whether they failed or not
    std::size_t mostAsked = 0;        // bytes, of a read or write
    int openFlags = 0;                // of the last file
};

} // namespace Support
