#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

// CShares: who has how much of a document, as a table with bars.
class CShares
{
public:
    // What the rows are: "Kinds".
    explicit CShares(const char* title) : title(title) {}

    void Add(std::string_view name, std::uint64_t count, std::uint64_t bytes);

    // Prints the rows, the largest first, with their percentage of so many bytes; one line for all beyond the first
    // few. Prints nothing if there are no rows.
    void Print(std::uint64_t size) const;

private:
    struct SShare
    {
        std::uint64_t count = 0;
        std::uint64_t bytes = 0;
    };

    const char* title;
    std::map<std::string, SShare, std::less<>> shares;
};
