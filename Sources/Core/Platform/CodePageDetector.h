#pragma once

#include <span>

namespace Vellum::Platform
{

// The code page that a text is most probably in, told from its bytes alone; the numbers are those of CodePages.h. 0 if
// that can't be told, as for an empty text, and always where the build has no detector. Pure ASCII is 20127; whoever
// has short texts asks IsUtf8 of Utf8.h first, since a detector takes them for anything. A text may be of any size, and
// the longer it is the better the guess. Only a failed allocation is raised.
//
// Threads  Any thread, without a lock.
unsigned int DetectCodePage(std::span<const unsigned char> text);

} // namespace Vellum::Platform
