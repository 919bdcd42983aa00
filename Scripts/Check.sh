#!/usr/bin/env bash
# What a change has to pass beside Scripts/Test.sh: format, layers, headers, the API pages, clang's warnings, the build
# as a static library and for Windows, what is installed and exported, and the sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."

step()
{
    printf '\n== %s (after %d s)\n' "$1" "$SECONDS"
}

Scripts/Setup.sh --check

step "Format"
Scripts/Format.sh --check

step "Layers"
Scripts/CheckLayers.sh

step "Each header alone"
Scripts/CheckHeaders.sh

step "API pages"
Scripts/Docs.sh

step "Build with clang++"
cmake --preset clang >/dev/null
cmake --build --preset clang

step "Build as a static library"
cmake --preset dev -B Build/static -DBUILD_SHARED_LIBS=OFF -DVELLUM_BUILD_TESTS=OFF >/dev/null
cmake --build Build/static
Build/static/Examples/Readme >/dev/null

step "Compile for Windows"
if command -v x86_64-w64-mingw32-g++-posix >/dev/null; then
    cmake --preset mingw -B Build/mingw-objects -DVELLUM_BUILD_TESTS=OFF -DVELLUM_BUILD_TOOLS=OFF -DVELLUM_BUILD_EXAMPLES=OFF >/dev/null
    cmake --build Build/mingw-objects --target VellumObjects VellumProgram
else
    echo "Left out: the cross compiler isn't there. Scripts/TestWindows.sh installs it."
fi

step "The library as a package, and in another project"
Scripts/CheckPackage.sh

step "The blocks and the recipes of the pages"
Scripts/CheckPages.sh

step "ThreadSanitizer"
cmake --preset tsan -DVELLUM_BUILD_EXAMPLES=OFF -DVELLUM_BUILD_TOOLS=OFF >/dev/null
cmake --build --preset tsan --target ApiTests
ctest --test-dir Build/tsan/Tests/Api --output-on-failure -j "$(nproc)" # sets where the locales are

step "AddressSanitizer and UndefinedBehaviorSanitizer"
cmake --preset asan >/dev/null
cmake --build --preset asan
ctest --preset asan -j "$(nproc)"

step "All checks passed"
