#pragma once

/// @file
/// VELLUM_LIFETIMEBOUND stands behind an argument that has to live as long as the object that is made of it: clang++
/// warns of one that doesn't. Other compilers see nothing.
#if __has_cpp_attribute(clang::lifetimebound)
#define VELLUM_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define VELLUM_LIFETIMEBOUND
#endif
