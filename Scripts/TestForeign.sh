#!/usr/bin/env bash
# Builds everything for another machine, and runs all tests.
#
#   Scripts/TestForeign.sh s390x      big-endian, char is unsigned
#   Scripts/TestForeign.sh i686       32 bits, floating point of the x87
#   Scripts/TestForeign.sh armhf      32 bits, char is unsigned
#   Scripts/TestForeign.sh aarch64    char is unsigned
#
# Debian's cross compiler is installed, and a small Debian of that processor goes into Build/foreign: its libraries,
# locales and code pages are those that the tests see. The kernel is told to run its programs under qemu until the next
# start. All of that needs root, and takes some ten minutes on two cores.
set -euo pipefail
cd "$(dirname "$0")/.."

case "${1:-}" in
    s390x) triple=s390x-linux-gnu debian=s390x compiler=g++-s390x-linux-gnu emulator=s390x ;;
    i686) triple=i686-linux-gnu debian=i386 compiler=g++-i686-linux-gnu emulator= ;; # runs on this processor
    armhf) triple=arm-linux-gnueabihf debian=armhf compiler=g++-arm-linux-gnueabihf emulator=arm ;;
    aarch64) triple=aarch64-linux-gnu debian=arm64 compiler=g++-aarch64-linux-gnu emulator=aarch64 ;;
    *) sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2; exit 2 ;;
esac
machine=$1
build=Build/foreign/$machine

install()
{
    local missing
    missing=$(dpkg-query --show --showformat='${binary:Package} ${Status}\n' "$@" 2>&1 | grep -v 'ok installed$' || true)
    [[ -z $missing ]] && return
    DEBIAN_FRONTEND=noninteractive apt-get -q -y install --no-install-recommends "$@"
}

# The kernel hands programs of that processor to qemu, with what the package says of them.
registerEmulator()
{
    local formats=/proc/sys/fs/binfmt_misc
    [[ -z $emulator || -e $formats/qemu-$emulator ]] && return
    [[ -e $formats/register ]] || mount -t binfmt_misc binfmt_misc "$formats"
    cat "/usr/lib/binfmt.d/qemu-$emulator.conf" >"$formats/register"
}

# Links from / would lead to this machine's files when the folder is looked at from outside.
makeLinksRelative()
{
    local links=$root.links
    find "$root/usr/lib" -xdev -type l -lname '/*' >"$links"
    while IFS= read -r link; do
        ln -sfnr "$root$(readlink "$link")" "$link"
    done <"$links"
    rm "$links"
}

makeRoot()
{
    root=$PWD/Build/foreign/$debian.root
    [[ -e $root/complete ]] && return
    rm -rf "$root"
    debootstrap --arch="$debian" --foreign --variant=minbase \
        --include=libc6-dev,libcli11-dev,libgtest-dev,libuchardet-dev,librapidcheck-dev,locales,tzdata \
        bookworm "$root"
    chroot "$root" /debootstrap/debootstrap --second-stage
    makeLinksRelative
    touch "$root/complete"
}

configureForeign()
{
    install "$compiler" qemu-user-static debootstrap
    registerEmulator
    makeRoot
    GCONV_PATH=$(echo "$root"/usr/lib/*/gconv) # where the tests' iconv finds its pages
    export GCONV_PATH
    cmake -S . -B "$build" -G Ninja --toolchain "$PWD/CMake/Foreign.cmake" -DVELLUM_FOREIGN="$triple" \
        -DVELLUM_FOREIGN_ROOT="$root" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 \
        -DVELLUM_WARNINGS=ON -DVELLUM_WARNINGS_AS_ERRORS=ON
}

Scripts/Setup.sh
configureForeign
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
