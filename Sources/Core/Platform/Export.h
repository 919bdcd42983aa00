#pragma once

// With an older language all that follows would fail in a hundred places. A file that isn't there is the end of it.
#if __cplusplus < 202002L && (!defined(_MSVC_LANG) || _MSVC_LANG < 202002L)
#error Vellum needs C++20: compile with -std=c++20 or later.
#include <vellum_needs_cxx20>
#endif

/// @def VELLUM_API
/// Marks what leaves the module; everything else is built with hidden visibility. It stands in the lowest
/// layer, since every layer above has something that clients use. VELLUM_STATIC is set by the build for a static
/// library and for whoever links one.
#if defined(VELLUM_STATIC)
#define VELLUM_API
#elif defined(_WIN32)
#if defined(VELLUM_EXPORTS)
#define VELLUM_API __declspec(dllexport)
#else
#define VELLUM_API __declspec(dllimport)
#endif
#else
#define VELLUM_API __attribute__((visibility("default")))
#endif
