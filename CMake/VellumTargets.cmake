# What each of the project's own targets has in common. Nothing here reaches a consumer.
function(vellum_compile_options target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        UNITY_BUILD OFF # helpers of different sources may have one name
        POSITION_INDEPENDENT_CODE ON)
    # __FILE__ reads Sources/Core/... wherever the checkout stands: exceptions carry it.
    target_compile_options(${target} PRIVATE "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    if(VELLUM_WARNINGS)
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion
            $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>)
    endif()
    if(VELLUM_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
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
