#include "Vellum/src/SXmlName.h"

#include <cstring>
#include <new>

#include "Platform/TextCompare.h"

#include "Vellum/src/CXmlMemory.h"

namespace Vellum
{
namespace
{

// "/", "?" and quotes can make something else of the tag. What "<!" opens a section with is no name.
bool BeginsPlain(char byte) { return byte != '/' && byte != '?' && byte != '"' && byte != '\''; }

// A "/" at the end would close the element together with the ">", and the tags <PRE> and <Script> open clear sections.
// All else ends a name wherever it stands, or never.
bool IsPlain(std::string_view name)
{
    return BeginsPlain(name.front()) && name.back() != '/' && !AreSameXmlNames(name, "pre") &&
           !AreSameXmlNames(name, "script");
}

// Up to eight bytes of a name, with upper case made lower and some other bytes made one another.
template <std::size_t Count>
std::uint64_t LoadFolded(const char* at)
{
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, at, Count);
    return bytes | 0x2020202020202020u;
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t bytes)
{
    hash = (hash ^ bytes) * 0x9E3779B97F4A7C15u; // the golden ratio: odd, and without a pattern
    return hash ^ (hash >> 32);
}

} // namespace

const SXmlName* MakeXmlName(std::string_view name, std::uint32_t hash, std::size_t readable, CXmlMemory& memory)
{
    const char* const text = memory.CopyText(name.data(), name.size(), readable);
    if (text == nullptr)
        return nullptr;
    return new (memory.Allocate<SXmlName>())
        SXmlName{text, static_cast<std::uint32_t>(name.size()), hash, !name.empty() && IsPlain(name)};
}

bool AreSameXmlNames(std::string_view name, std::string_view other) noexcept
{
    return name.size() == other.size() && (std::memcmp(name.data(), other.data(), name.size()) == 0 ||
                                           Platform::CompareWithoutCase(name.data(), other.data(), name.size()) == 0);
}

bool HasName(const SXmlName& name, std::string_view other) noexcept
{
    return AreSameXmlNames({name.text, name.length}, other);
}

// Pieces of eight bytes, the last of which may overlap the one in front of it. What is shorter than that is taken from
// both its ends.
std::uint32_t HashXmlName(std::string_view name) noexcept
{
    const char* const at = name.data();
    const std::size_t length = name.size();
    std::uint64_t hash = length;
    if (length >= 8)
    {
        for (std::size_t done = 0; done < length - 8; done += 8)
            hash = Mix(hash, LoadFolded<8>(at + done));
        hash = Mix(hash, LoadFolded<8>(at + length - 8));
    }
    else if (length >= 4)
        hash = Mix(hash, LoadFolded<4>(at) ^ (LoadFolded<4>(at + length - 4) << 32));
    else if (length != 0)
        hash = Mix(hash,
                   LoadFolded<1>(at) ^ (LoadFolded<1>(at + length / 2) << 8) ^ (LoadFolded<1>(at + length - 1) << 16));
    return static_cast<std::uint32_t>(Mix(hash, 0)); // so that the low bits depend on all bytes
}

} // namespace Vellum
