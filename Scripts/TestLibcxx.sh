#!/usr/bin/env bash
# Builds everything with clang++ and its own standard library, libc++, and runs all tests. The packages are those of
# version 16, the first that has the algorithms over ranges; they and Debian's default versions can't be installed both.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=$PWD/Build/libcxx-packages # the preset's tests find GoogleTest there

Scripts/Setup.sh --libcxx
if [[ ! -e $packages/lib/libgtest.a ]]; then
    cmake -G Ninja -S /usr/src/googletest -B Build/libcxx-googletest -DCMAKE_CXX_COMPILER=clang++-16 \
        -DCMAKE_CXX_FLAGS=-stdlib=libc++ -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$packages" \
        -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_GMOCK=OFF >/dev/null
    cmake --build Build/libcxx-googletest
    cmake --install Build/libcxx-googletest >/dev/null
fi
cmake --preset libcxx
cmake --build --preset libcxx
ctest --preset libcxx -j "$(nproc)"
