#pragma once

/// @def VELLUM_NOINLINE
/// In front of a function that is seldom called from where speed matters: kept out of its callers, so that they stay
/// small enough to be inlined themselves. A compiler that has no word for it may inline what it likes.
#if defined(_MSC_VER)
#define VELLUM_NOINLINE __declspec(noinline)
#elif defined(__GNUC__)
#define VELLUM_NOINLINE [[gnu::noinline]]
#else
#define VELLUM_NOINLINE
#endif

/// @def VELLUM_SIGNATURE
/// The function that it stands in, with its template arguments, as g++ and clang++ spell them; empty where another
/// spelling would have to be understood.
#if defined(__GNUC__) || defined(__clang__)
#define VELLUM_SIGNATURE __PRETTY_FUNCTION__
#else
#define VELLUM_SIGNATURE ""
#endif
