# Linux on another processor, cross-compiled with Debian's compilers against a root folder of that processor, which
# Scripts/TestForeign.sh makes: -DVELLUM_FOREIGN=s390x-linux-gnu -DVELLUM_FOREIGN_ROOT=folder. What is built is loaded
# by that root's loader with its libraries, so that it runs outside of it wherever the kernel knows an emulator.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELLUM_FOREIGN VELLUM_FOREIGN_ROOT)
set(CMAKE_SYSTEM_NAME Linux)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${VELLUM_FOREIGN}")
set(CMAKE_C_COMPILER ${VELLUM_FOREIGN}-gcc)
set(CMAKE_CXX_COMPILER ${VELLUM_FOREIGN}-g++)
string(REPLACE "i686" "i386" libraries ${VELLUM_FOREIGN}) # as Debian calls the folder
set(CMAKE_LIBRARY_ARCHITECTURE ${libraries})

set(CMAKE_SYSROOT "${VELLUM_FOREIGN_ROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${VELLUM_FOREIGN_ROOT}/usr/lib/${libraries}/pkgconfig:${VELLUM_FOREIGN_ROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${VELLUM_FOREIGN_ROOT}")

file(GLOB loader "${VELLUM_FOREIGN_ROOT}/lib/ld*.so.[0-9]")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--dynamic-linker=${loader} -Wl,--disable-new-dtags,-rpath,${VELLUM_FOREIGN_ROOT}/usr/lib/${libraries}")
set(CMAKE_CROSSCOMPILING_EMULATOR env) # programs start as they are; the build asks for something that starts them
