# Everything beside the library itself is off when another project includes this one.
option(VELLUM_CODE_PAGE_DETECTOR "Let CTextFile guess the code page of texts without a mark; needs uchardet" ON)
option(VELLUM_INSTALL "Make the rules that install the library as a package" ${PROJECT_IS_TOP_LEVEL})
option(VELLUM_PACKAGES "Let cpack make Debian packages; see the preset \"deb\"" OFF)
option(VELLUM_BUILD_TESTS "Build the tests and the replay of the fuzz corpus" ${PROJECT_IS_TOP_LEVEL})
option(VELLUM_BUILD_TOOLS "Build the program vellum; needs CLI11" ${PROJECT_IS_TOP_LEVEL})
option(VELLUM_BUILD_EXAMPLES "Build the examples" ${PROJECT_IS_TOP_LEVEL})
option(VELLUM_BUILD_BENCHMARKS "Build the benchmarks" OFF)
option(VELLUM_BUILD_FUZZERS "Build the fuzz targets with libFuzzer (clang only)" OFF)
option(VELLUM_WARNINGS "Compile with the project's warnings" OFF)
option(VELLUM_WARNINGS_AS_ERRORS "... and treat them as errors" OFF)
set(VELLUM_SANITIZERS "" CACHE STRING "Sanitizers for everything that is built, for instance address,undefined")

# Its name belongs to all projects of a build. In another project's build that one alone decides, and where it says
# nothing the library is static, as CMake has it.
if(PROJECT_IS_TOP_LEVEL)
    option(BUILD_SHARED_LIBS "Build Vellum as a shared library" ON)
endif()
