# Windows on x86-64, cross-compiled with Debian's package g++-mingw-w64-x86-64-posix. What is built runs under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(toolchain x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER ${toolchain}-g++-posix)
set(CMAKE_C_COMPILER ${toolchain}-gcc-posix)
set(CMAKE_RC_COMPILER ${toolchain}-windres)

# Only what is made for the target: what the caller names, its own folder, and what Scripts/TestWindows.sh builds.
list(APPEND CMAKE_FIND_ROOT_PATH /usr/${toolchain} "${CMAKE_CURRENT_LIST_DIR}/../Build/mingw-packages")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} /usr/${toolchain}/lib/pkgconfig)

# Tests and tools of the build run there.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../Scripts/Wine.sh")
