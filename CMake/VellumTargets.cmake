# The words for what the sources are compiled with, by the family of the compiler.
if(MSVC) # or clang-cl, which takes the same words
    # Sources are UTF-8, and __cplusplus tells the truth. clang-cl alone can make __FILE__ read as it does elsewhere.
    set(VELLUM_OPTIONS /utf-8 /permissive- /Zc:__cplusplus
        "$<$<CXX_COMPILER_ID:Clang>:/clang:-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=>")
    set(VELLUM_WARNING_OPTIONS /W4 /wd4251 /wd4275) # but for members and bases of exported classes that aren't exported
    set(VELLUM_ERROR_OPTIONS /WX)
else()
    # __FILE__ reads Sources/Core/... wherever the checkout stands: exceptions carry it.
    set(VELLUM_OPTIONS "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    set(VELLUM_WARNING_OPTIONS -Wall -Wextra -Wpedantic -Wconversion $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>)
    set(VELLUM_ERROR_OPTIONS -Werror)
endif()

# What each of the project's own targets has in common. Nothing here reaches a consumer.
function(vellum_compile_options target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        UNITY_BUILD OFF # helpers of different sources may have one name
        POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE ${VELLUM_OPTIONS})
    if(VELLUM_WARNINGS)
        target_compile_options(${target} PRIVATE ${VELLUM_WARNING_OPTIONS})
    endif()
    if(VELLUM_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE ${VELLUM_ERROR_OPTIONS})
    endif()
    # Coverage that libFuzzer steers by; its main program is linked into the fuzz targets alone (Fuzz/CMakeLists.txt).
    if(VELLUM_BUILD_FUZZERS)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(VELLUM_SANITIZERS)
        target_compile_options(${target} PRIVATE "-fsanitize=${VELLUM_SANITIZERS}" -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE "-fsanitize=${VELLUM_SANITIZERS}")
    endif()
endfunction()

# A program of tests that sees the library's objects, private ones included: vellum_test(NAME source...)
function(vellum_test name)
    add_executable(${name} ${ARGN})
    vellum_compile_options(${name})
    target_link_libraries(${name} PRIVATE VellumObjects VellumTestSupport)
    vellum_discover_tests(${name})
endfunction()

# Each test of a program, and all of them once more where clocks and numbers are written otherwise. The locales that
# tests need are generated into the build folder (Tests/CMakeLists.txt).
function(vellum_discover_tests name)
    set(leaks "suppressions=${PROJECT_SOURCE_DIR}/Tests/Support/LeakSuppressions.txt:print_suppressions=0")
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120
        PROPERTIES ENVIRONMENT "LOCPATH=${VELLUM_TEST_LOCALES}" ENVIRONMENT_MODIFICATION "LSAN_OPTIONS=set:${leaks}")
    add_test(NAME ${name}.InBerlin COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name}.InBerlin PROPERTIES
        ENVIRONMENT "LOCPATH=${VELLUM_TEST_LOCALES};TZ=Europe/Berlin;LC_ALL=de_DE.UTF-8;VELLUM_TEST_LOCALE=de_DE.UTF-8"
        ENVIRONMENT_MODIFICATION "LSAN_OPTIONS=set:${leaks}")
endfunction()
