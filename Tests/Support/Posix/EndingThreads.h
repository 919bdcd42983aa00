#pragma once

#include <features.h> // of the C library
#include <version>    // of the standard library

namespace Support
{

// Whether a thread that ends in the midst of its functions has their objects destroyed, through a `catch (...)` that
// raises again what it has caught. libc++abi ends the process there, since it looks for somebody else who catches that,
// and where its unwinder isn't that of the C library, already on the way; musl destroys nothing.
#if defined(__GLIBCXX__) && defined(__GLIBC__)
constexpr bool EndingThreadsUnwind = true;
#else
constexpr bool EndingThreadsUnwind = false;
#endif

} // namespace Support
