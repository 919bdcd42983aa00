#!/usr/bin/env bash
# Installs what is missing on a Debian 12 machine. Does nothing, and asks for no privilege, when nothing is missing.
#
#   Scripts/Setup.sh                what building, testing and the examples need
#   Scripts/Setup.sh --check        ... and what Scripts/Check.sh and Scripts/Fuzz.sh need: clang, clang-format, lintian
#   Scripts/Setup.sh --benchmarks   ... and what the benchmarks are built with and compared to
#   Scripts/Setup.sh --libcxx       ... and what Scripts/TestLibcxx.sh needs: clang 16 with libc++, GoogleTest's sources
#   Scripts/Setup.sh --docs         ... and what Scripts/Docs.sh needs: doxygen
#   Scripts/Setup.sh --windows      ... and what Scripts/TestWindows.sh needs: a cross compiler, GoogleTest's sources, Wine
set -euo pipefail

packages=(g++ cmake ninja-build pkg-config libuchardet-dev libcli11-dev libgtest-dev librapidcheck-dev locales tzdata iso-codes shared-mime-info)
for option in "$@"; do
    case "$option" in
        --check) packages+=(clang clang-format libclang-rt-14-dev dpkg-dev file lintian man-db) ;;
        --benchmarks)
            packages+=(libbenchmark-dev python3 util-linux)
            packages+=(libboost-serialization-dev libcereal-dev libflatbuffers-dev flatbuffers-compiler
                libmsgpack-cxx-dev libprotobuf-dev protobuf-compiler)
            packages+=(nlohmann-json3-dev rapidjson-dev libsimdjson-dev libpugixml-dev librapidxml-dev)
            ;;
        --docs) packages+=(doxygen) ;;
        --libcxx) packages+=(clang-16 libc++-16-dev libc++abi-16-dev googletest) ;;
        --windows) packages+=(g++-mingw-w64-x86-64-posix googletest wine wine64) ;;
        *) echo "Setup: unknown option $option (known: --check, --benchmarks, --docs, --libcxx, --windows)" >&2; exit 2 ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    echo "Setup: this is no Debian system. Please see to it that it has the like of: ${packages[*]}"
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query --show --showformat='${Status}' "$package" 2>/dev/null || true)
    [[ $status == "install ok installed" ]] || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
    echo "Setup: nothing is missing."
    exit 0
fi

echo "Setup: installing ${missing[*]}"
asRoot=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "Setup: this needs root, and there is no sudo. As root: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    asRoot=(sudo)
fi
aptGet=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y)
"${aptGet[@]}" update # the lists of a fresh machine may be empty or old
"${aptGet[@]}" install --no-install-recommends "${missing[@]}"
echo "Setup: done."
