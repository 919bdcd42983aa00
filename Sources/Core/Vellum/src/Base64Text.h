#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Groundwork/CbArray.h"

// The forms of the Base64 functions that spare readers and writers a copy. They behave like those and raise in their
// name.
namespace Vellum::Base64
{

// Like Encode, behind what the text has. If it raises, the text is as it was.
void AppendBase64(std::string& text, const void* data, std::size_t size, bool lineBreaks);

// Like Decode, of a text that needs no terminator.
CbArray<unsigned char> DecodeText(std::string_view text);

} // namespace Vellum::Base64
