#pragma once

#include <concepts>
#include <cstddef>
#include <string>

#include "../Platform/Export.h"

/// Base64: bytes to text and back, with the alphabet and the fill character of the Base64 of RFC 4648, chapter 4. It is
/// the form of blobs in the text formats.
///
/// Decoding takes what it can use. TAB, LF, CR and blanks are skipped wherever they stand, groups need no fill, and a
/// byte outside the alphabet ends the text: a malformed text isn't reported as such.
///
/// - **Threads** Any thread; there is no state.
namespace Vellum::Base64
{

/// The text of `size` bytes. With lineBreaks, one LF follows each 72 characters that come from 54 whole bytes, at the
/// end of the text too; without, there is none. Raises CException, "Vellum::Base64::Encode", for more than 4294967295
/// bytes and when memory for the text can't be had.
VELLUM_API std::string Encode(const void* data, std::size_t size, bool lineBreaks);

/// The same for the bytes of `data`, NUL bytes included.
VELLUM_API std::string Encode(const std::string& data, bool lineBreaks);

/// @name Encode that is refused
/// A size without lineBreaks would be taken for them, and the bytes for a zero-terminated text.
/// @{
template <std::integral Size>
requires(!std::same_as<Size, bool>) std::string Encode(const void* data, Size size)
= delete;
template <std::integral Size>
requires(!std::same_as<Size, bool>) std::string Encode(const std::string& data, Size size)
= delete;
/// @}

/// How many bytes Decode stores for a zero-terminated text: three quarters of its characters up to the first byte that
/// is outside the alphabet, fills directly before that byte not counted. 0 for a text without data. The result keeps 32
/// bits.
VELLUM_API std::size_t GetDecodedSize(const char* text);

/// Decodes a zero-terminated text to `out` and returns GetDecodedSize of it. Decoding ends at the first fill; if that
/// isn't the end of the text, fewer bytes are decoded than the size says, and those behind them are 0. `out` may be the
/// memory of the text itself. Raises CException, "Vellum::Base64::Decode", with `out` not written, if the size is 0 or
/// above outSize.
VELLUM_API std::size_t Decode(const char* text, void* out, std::size_t outSize);

} // namespace Vellum::Base64
