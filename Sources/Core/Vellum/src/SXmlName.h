#pragma once

#include <cstdint>
#include <string_view>

namespace Vellum
{

class CXmlMemory;

// SXmlName: the name of an element as it stands in the document, with what is worth knowing once for all elements that
// have it.
//
// Memory   that of the tree. The text is zero-terminated, and may be read to the next multiple of eight bytes.
struct SXmlName
{
    const char* text;
    std::uint32_t length;
    std::uint32_t hash; // see HashXmlName
    bool isPlain;       // whether "<" or "</", this text and ">" can be nothing but a tag of this name
};

// A copy of a name, from which `readable` bytes may be read, and its hash. Null if there is no memory for its text;
// std::bad_alloc if there is none for the rest.
const SXmlName* MakeXmlName(std::string_view name, std::uint32_t hash, std::size_t readable, CXmlMemory& memory);

// Without regard to case.
bool AreSameXmlNames(std::string_view name, std::string_view other) noexcept;

// Whether it is this name without regard to case.
bool HasName(const SXmlName& name, std::string_view other) noexcept;

// The same for names that differ in case alone, and for few others unless they were chosen for it.
std::uint32_t HashXmlName(std::string_view name) noexcept;

} // namespace Vellum
