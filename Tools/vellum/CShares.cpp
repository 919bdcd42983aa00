#include "CShares.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <iostream>
#include <utility>
#include <vector>

#include "Text.h"

namespace
{

constexpr std::size_t MostRows = 20;
constexpr std::size_t NameWidth = 32; // code points
constexpr double BarWidth = 24;       // of all bytes

void PrintRow(const std::string& name, std::uint64_t count, std::uint64_t bytes, std::uint64_t size)
{
    const double share = size == 0 ? 0 : static_cast<double>(bytes) / static_cast<double>(size);
    const auto letters =
        static_cast<std::size_t>(std::ranges::count_if(name, [](char c) { return (c & 0xC0) != 0x80; }));
    std::string line("  ");
    line += name;
    line.append(NameWidth - std::min(NameWidth, letters), ' ');
    std::array<char, 80> numbers{};
    std::snprintf(numbers.data(), numbers.size(), "%10ju %12ju %5.1f %%", static_cast<std::uintmax_t>(count),
                  static_cast<std::uintmax_t>(bytes), share * 100);
    line += numbers.data();
    const std::string bar(static_cast<std::size_t>(share * BarWidth + 0.5), '#');
    std::cout << line << (bar.empty() ? "" : " ") << bar << '\n';
}

} // namespace

void CShares::Add(std::string_view name, std::uint64_t count, std::uint64_t bytes)
{
    auto found = shares.find(name);
    if (found == shares.end())
        found = shares.emplace(name, SShare()).first;
    found->second.count += count;
    found->second.bytes += bytes;
}

void CShares::Print(std::uint64_t size) const
{
    if (shares.empty())
        return;
    std::vector<std::pair<std::string_view, SShare>> rows(shares.begin(), shares.end());
    std::ranges::stable_sort(rows, std::greater(), [](const auto& row) { return row.second.bytes; });
    std::printf("\n%-*s%10s %12s %7s\n", static_cast<int>(NameWidth + 2), title, "count", "bytes", "share");
    SShare others;
    for (std::size_t at = 0; at < rows.size(); ++at)
    {
        const auto& [name, share] = rows[at];
        if (at < MostRows)
            PrintRow(ShowText(name, NameWidth - 3), share.count, share.bytes, size);
        others.count += at < MostRows ? 0 : share.count;
        others.bytes += at < MostRows ? 0 : share.bytes;
    }
    if (rows.size() > MostRows)
        PrintRow('(' + std::to_string(rows.size() - MostRows) + " others)", others.count, others.bytes, size);
}
