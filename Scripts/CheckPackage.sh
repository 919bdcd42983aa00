#!/usr/bin/env bash
# Installs the library, shared and static, moves the tree, and builds programs against it with CMake and with
# pkg-config; does the same with the Debian packages; adds the repository to another project with add_subdirectory. All
# in Build/package, from Build/clang, Build/static and Build/deb, which are built if need be.
set -euo pipefail
cd "$(dirname "$0")/.."

fail()
{
    echo "CheckPackage: $*" >&2
    exit 1
}

# The output of Examples/Readme.cpp is the text that README.md shows below it.
readmeOutput=$(sed -n '/^{\t"title"/,/^}/p' README.md)
run()
{
    [[ $("$@") == "$readmeOutput" ]] || fail "$* doesn't print what README.md shows"
}

build()
{
    local output
    output=$(cmake --build "$@" 2>&1) || fail "$output"
}

install() # buildFolder tree
{
    rm -rf "$2" "$2.staged"
    DESTDIR="$PWD/$2.staged" cmake --install "$1" --prefix /usr/somewhere >/dev/null
    mv "$2.staged/usr/somewhere" "$2"
    rmdir "$2.staged/usr" "$2.staged" # nothing is outside the prefix
}

# The installed headers are those that <Vellum/Vellum.h> and <Describe/Describe.h> reach, no more and no less.
checkHeaders() # tree
{
    cd "$1/include/vellum-1"
    diff <(printf '#include <%s>\n' Vellum/Vellum.h Describe/Describe.h | g++ -std=c++20 -MM -I. -x c++ - | tr -s ' \\' '\n' | sed -n 's,^[A-Za-z]*/\.\./,,; /\.h$/p' | sort -u) \
        <(find . -type f | cut -c 3- | sort)
}

checkSharedLibrary() # tree
{
    local library
    library=$(realpath "$1/lib/libVellum.so")
    Scripts/CheckExports.sh "$library" "$1/include/vellum-1"
    readelf -d "$library" | grep -q 'SONAME.*\[libVellum\.so\.1\]' || fail "the SONAME isn't libVellum.so.1"
}

buildWithCMake() # tree buildFolder options...
{
    cmake --no-warn-unused-cli -G Ninja -S Tests/Package/Installed -B "$2" -DCMAKE_PREFIX_PATH="$PWD/$1" "${@:3}" >/dev/null
    build "$2"
    run "$2/Readme"
    "$2/Resource"
}

buildWithPkgConfig() # tree options...
{
    local flags
    flags=$(pkg-config --cflags --libs "${@:2}" 'vellum >= 1.0')
    eval "g++ -std=c++20 -o '$1.pkg-config' Examples/Readme.cpp $flags" # pkg-config quotes for the shell
    LD_LIBRARY_PATH="$1/lib" run "$1.pkg-config"
}

checkShared()
{
    local tree="Build/package/shared tree"
    cmake --preset clang >/dev/null
    build --preset clang --target Vellum VellumTool VellumMadePages
    install Build/clang "$tree"
    (checkHeaders "$tree")
    checkSharedLibrary "$tree"
    checkLanguage "$tree"
    # Neither pkg-config nor what the library is linked with is at hand.
    buildWithCMake "$tree" Build/package/shared -DCMAKE_DISABLE_FIND_PACKAGE_PkgConfig=ON
    PKG_CONFIG_LIBDIR="$tree/lib/pkgconfig" buildWithPkgConfig "$tree"
    "$tree/bin/vellum" --version >/dev/null || fail "vellum doesn't find its library"
}

checkStatic()
{
    local tree="Build/package/static tree"
    cmake --preset dev -B Build/static -DBUILD_SHARED_LIBS=OFF -DVELLUM_BUILD_TESTS=OFF >/dev/null
    build Build/static --target Vellum VellumTool VellumMadePages
    install Build/static "$tree"
    (checkHeaders "$tree")
    buildWithCMake "$tree" Build/package/static
    PKG_CONFIG_PATH="$tree/lib/pkgconfig" buildWithPkgConfig "$tree"
    PKG_CONFIG_PATH="$tree/lib/pkgconfig" buildWithPkgConfig "$tree" --static
}

# An older language ends the compiler's work in the first header.
checkLanguage() # tree
{
    local said
    said=$(echo '#include <Vellum/Vellum.h>' | g++ -std=c++17 -fsyntax-only -I"$1/include/vellum-1" -x c++ - 2>&1) && fail "C++17 passes"
    [[ $(grep -c 'error: #error' <<<"$said") == 1 && $(grep -c 'error:' <<<"$said") == 2 ]] || fail "$said"
}

# The packages are installed into a root of their own, on which the system's other packages seem to be.
installPackages() # root package...
{
    local root=$1
    rm -rf "$root"
    mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
    cp /var/lib/dpkg/status "$root/var/lib/dpkg"
    if ((EUID == 0)); then
        dpkg --root="$root" --force-script-chrootless -i "${@:2}" >"$root.log" 2>&1 || fail "$(cat "$root.log")"
    else # dependencies are not looked at then
        for package in "${@:2}"; do dpkg-deb -x "$package" "$root"; done
    fi
}

checkDebianPackages()
{
    local root=$PWD/Build/package/debian output
    cmake --preset deb >/dev/null
    build --preset deb
    rm -f Build/deb/*.deb
    output=$(cd Build/deb && cpack -G DEB 2>&1) || fail "$output"
    lintian --fail-on error Build/deb/*.deb
    installPackages "$root" Build/deb/{libvellum1,libvellum-dev,vellum-tools}_*.deb
    local libraries
    libraries=$(dirname "$root"/usr/lib/*/libVellum.so)
    buildWithCMake "${root#"$PWD"/}/usr" Build/package/debian-client -DCMAKE_DISABLE_FIND_PACKAGE_PkgConfig=ON
    LD_LIBRARY_PATH=$libraries "$root/usr/bin/vellum" dump Fuzz/Corpus/Binary/FourFields >/dev/null
    man --warnings -l "$root/usr/share/man/man1/vellum.1.gz" >/dev/null
    bash -n "$root/usr/share/bash-completion/completions/vellum"
}

checkAbsoluteFolders()
{
    cmake -G Ninja -S . -B Build/package/absolute -DVELLUM_BUILD_TESTS=OFF -DVELLUM_BUILD_EXAMPLES=OFF -DVELLUM_BUILD_TOOLS=OFF \
        -DCMAKE_INSTALL_PREFIX="/one place" -DCMAKE_INSTALL_LIBDIR=/another/lib >/dev/null
    local flags
    flags=$(PKG_CONFIG_LIBDIR=Build/package/absolute/Package pkg-config --cflags --libs vellum)
    [[ $flags == "-I/one\\ place/include/vellum-1 -L/another/lib -lVellum "* ]] || fail "vellum.pc has absolute folders wrong: $flags"
}

configureParent() # name options...
{
    local folder=Build/package/$1
    rm -f "$folder/CMakeCache.txt" # what the library leaves in it has to be seen
    cmake -G Ninja -S Tests/Package/Parent -B "$folder" "${@:2}" >/dev/null
    grep -oE '"command".* -o [^ ]*Bystander' "$folder/compile_commands.json" >"$folder/Bystander.txt"
}

checkParent()
{
    configureParent parent-alone -DPARENT_WITH_VELLUM=OFF
    configureParent parent-shared -DBUILD_SHARED_LIBS=ON
    configureParent parent
    for name in parent-shared parent; do
        diff Build/package/{parent-alone,$name}/Bystander.txt || fail "the parent's own target is compiled in another way"
    done
    build Build/package/parent
    run Build/package/parent/Out/ReadmeOfParent
    DESTDIR="$PWD/Build/package/parent/installed" cmake --install Build/package/parent >/dev/null
    [[ ! -e Build/package/parent/installed ]] || fail "the parent installs Vellum unasked"
}

checkShared
checkStatic
checkDebianPackages
checkAbsoluteFolders
checkParent
echo "CheckPackage: what is installed and what is included can be used."
