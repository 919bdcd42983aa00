#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace Support
{

// Takes the log's entries for as long as it lives, and keeps them off standard error. One at a time.
class CLogObserver
{
public:
    struct SEntry
    {
        std::wstring source;
        std::string file;
        int line;
        std::string function;
        std::wstring text;
    };

    CLogObserver();
    ~CLogObserver();

    std::vector<SEntry> GetEntries() const;

    // The function names of the entries, in order.
    std::vector<std::string> GetFunctions() const;

private:
    mutable std::mutex mutex;
    std::vector<SEntry> entries;
};

} // namespace Support
