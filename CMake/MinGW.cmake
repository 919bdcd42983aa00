# Windows on x86-64, cross-compiled with Debian's package g++-mingw-w64-x86-64-posix. What is built runs under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(toolchain x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER ${toolchain}-g++-posix)
set(CMAKE_C_COMPILER ${toolchain}-gcc-posix)
set(CMAKE_RC_COMPILER ${toolchain}-windres)

# Headers that are for every system may be this machine's: the toolchain's folder has none of them.
set(CMAKE_FIND_ROOT_PATH /usr/${toolchain})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} /usr/${toolchain}/lib/pkgconfig)

# The programs need no library of the compiler beside them.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

find_program(CMAKE_CROSSCOMPILING_EMULATOR NAMES wine)
