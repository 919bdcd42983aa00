#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Groundwork/CbArray.h"

// The forms of the Base64 functions that spare readers and writers a copy. They behave like those and raise in their
// name.
namespace Vellum::Base64
{

// CBase64Text: what Encode gives, which raises in its name. A short text takes no memory from the heap.
class CBase64Text
{
public:
    CBase64Text(const void* data, std::size_t size, bool lineBreaks);
    CBase64Text(const CBase64Text&) = delete;
    CBase64Text& operator=(const CBase64Text&) = delete;

    std::string_view Get() const { return text; }

private:
    std::array<char, 512> shortText;
    std::string longText;
    std::string_view text; // one of them
};

// Like Decode, of a text that needs no terminator.
CbArray<unsigned char> DecodeText(std::string_view text);

} // namespace Vellum::Base64
