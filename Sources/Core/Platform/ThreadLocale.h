#pragma once

#include <cstddef>
#include <string>

namespace Vellum::Platform
{

// The C library's locale of the calling thread. Other threads, and the locale of the process, are never touched. A C
// library that has one locale for all threads stays in it: what is here goes by the C locale all the same.

// Stands for whatever locale a thread was in: one of its own, or the one of the process.
using ThreadLocale = void*;

// Puts the calling thread into the C locale and returns the locale that it was in. Null if the system has no C
// locale to give, which leaves the thread as it was.
ThreadLocale EnterCLocale() noexcept;

// Puts the calling thread back where EnterCLocale found it. Null is accepted and does nothing.
void LeaveCLocale(ThreadLocale previous) noexcept;

// Whether the C library separates the decimals of a number with a point on the calling thread.
bool UsesDecimalPoint() noexcept;

// As std::strtod on the calling thread: the value, and how many bytes of the text it has taken, up to the first NUL.
// Raises nothing but a failed allocation.
double ScanReal(const std::string& text, std::size_t& size);

} // namespace Vellum::Platform
