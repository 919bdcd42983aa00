#pragma once

namespace Vellum
{

// White space wherever text is read: what isspace answers for in the C locale, whichever locale the thread is in. Bytes
// from 0x80 up are none.
constexpr bool IsWhiteSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

} // namespace Vellum
