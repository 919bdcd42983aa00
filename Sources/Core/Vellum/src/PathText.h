#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// How the way to a value is written: `lines[3].price`.
namespace Vellum
{

inline std::string ShowIndex(std::uint64_t index) { return '[' + std::to_string(index) + ']'; }

inline void AppendIndex(std::string& path, std::uint64_t index) { path += ShowIndex(index); }

inline void AppendKey(std::string& path, std::string_view key)
{
    if (!path.empty())
        path += '.';
    path += key;
}

} // namespace Vellum
