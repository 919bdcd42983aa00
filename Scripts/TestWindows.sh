#!/usr/bin/env bash
# Builds everything for Windows with the cross compiler of MinGW-w64 and runs all tests in Wine, with a shared and with
# a static library; then a program that is built against what is installed. Takes some twenty minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

step()
{
    printf '\n== %s (after %d s)\n' "$1" "$SECONDS"
}

fail()
{
    echo "TestWindows: $*" >&2
    exit 1
}

compiler=x86_64-w64-mingw32-g++-posix
packages=$PWD/Build/mingw-packages

step "What is needed"
Scripts/Setup.sh --windows
mkdir -p "$packages/bin" Build/wine
for library in libstdc++-6 libgcc_s_seh-1 libwinpthread-1; do
    cp "$($compiler -print-file-name=$library.dll)" "$packages/bin"
done
if [[ ! -e $packages/lib/libgtest.a ]]; then
    cmake -G Ninja -S /usr/src/googletest -B Build/mingw-googletest --toolchain "$PWD/CMake/MinGW.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$packages" -DBUILD_GMOCK=OFF >/dev/null
    cmake --build Build/mingw-googletest
    cmake --install Build/mingw-googletest >/dev/null
fi
mkdir -p "$packages/include" "$packages/share/cmake"
cp -r /usr/include/CLI "$packages/include" # headers alone, for any system
cp -r /usr/share/cmake/CLI11 "$packages/share/cmake"
[[ -e Build/wine/system.reg ]] || Scripts/Wine.sh wineboot -i
export WINEPREFIX=$PWD/Build/wine # one server for all programs: to start it takes longer than most tests
wineserver -k || true
wineserver -p
trap 'wineserver -k' EXIT
# Its services come with the first program and keep that one's output open, for which the build would wait.
Scripts/Wine.sh cmd /c exit </dev/null >/dev/null 2>&1

testTree() # name options...
{
    local build=Build/mingw-$1
    step "Build with a $1 library"
    cmake --preset mingw -B "$build" -DCMAKE_RUNTIME_OUTPUT_DIRECTORY="$PWD/$build/Programs" \
        -DCMAKE_CXX_FLAGS_DEBUG=-O1 "${@:2}" >/dev/null # an eighth of the size: debuggers get nothing
    cmake --build "$build"
    step "Test with a $1 library"
    ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
}

testInstalled() # name options...
{
    step "A program built against the installed $1 library"
    local tree=$PWD/Build/mingw-$1/installed client=Build/mingw-$1/client
    rm -rf "$tree"
    cmake --install "Build/mingw-$1" --prefix "$tree" >/dev/null
    cmake --no-warn-unused-cli -G Ninja -S Tests/Package/Installed -B "$client" --toolchain "$PWD/CMake/MinGW.cmake" \
        -DCMAKE_FIND_ROOT_PATH="$tree" -DCMAKE_RUNTIME_OUTPUT_DIRECTORY="$tree/bin" >/dev/null
    cmake --build "$client"
    [[ $(Scripts/Wine.sh "$tree/bin/Readme.exe" | tr -d '\r') == "$(sed -n '/^{\t"title"/,/^}/p' README.md)" ]] ||
        fail "Readme doesn't print what README.md shows"
    Scripts/Wine.sh "$tree/bin/Resource.exe"
    Scripts/Wine.sh "$tree/bin/vellum.exe" check Fuzz/Corpus/Binary/FourFields
}

testTree shared
testTree static -DBUILD_SHARED_LIBS=OFF
testInstalled shared
testInstalled static
step "What the shared library exports"
Scripts/CheckExports.sh Build/mingw-shared/installed/bin/libVellum.dll Build/mingw-shared/installed/include/vellum-1
step "All passed"
